#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/files/FileKind.h"

namespace tarn {

class TextLookup;
class TextReader;

/// What files say, for a search: from the index of texts where it knows the file as it is now, else
/// from the file itself. Callable from any thread.
///
/// Pictures are not read here: recognising text takes a second for each, so only an index knows it.
class FileTexts {
public:
    /// The text of a file that is no plain text, `size` bytes long; absent when it has none. Any
    /// thread; returns soon after the token was set.
    using ReadDocument = std::function<std::optional<std::string>(const URL& url, std::int64_t size,
                                                                  const CancelToken& token)>;

    /// Without `index` everything is read; without `readDocument`, plain text only.
    explicit FileTexts(std::shared_ptr<const TextLookup> index = nullptr,
                       ReadDocument readDocument = nullptr);

    /// That of a reader, which lives as long as the function.
    static ReadDocument reading(std::shared_ptr<TextReader> reader);

    enum class Way {
        none,      ///< No text that we could read.
        plain,     ///< The bytes are the text: read here, in microseconds.
        document,  ///< Read by `readDocument`, which takes milliseconds or seconds.
    };
    /// By the name alone.
    Way way(std::string_view name) const;
    /// Of a name whose way is not `none`; cheaper.
    Way wayOfReadable(std::string_view name) const;
    Way way(std::string_view name, const std::optional<std::string>& type, FileKind kind) const;

    using Test = std::function<bool(std::string_view text)>;
    /// Whether the text of the file passes the test, which is called with UTF-8 that may have
    /// broken parts, and again with the same text decoded when it had them. False when nothing can
    /// be read, and for files larger than `TextExtractor::sizeLimit`. The index is not asked.
    /// `size` is the file's, as far as the caller knows it.
    bool passes(const URL& url, Way way, std::optional<std::int64_t> size, const Test& test,
                const CancelToken& token) const;

    std::optional<std::string> indexed(const URL& url) const;
    /// The whole text, from the index or the file.
    std::optional<std::string> read(const URL& url, Way way, const CancelToken& token) const;

private:
    std::shared_ptr<const TextLookup> index_;
    ReadDocument readDocument_;
};

}  // namespace tarn
