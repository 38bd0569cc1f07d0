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

    /// Is given UTF-8 that may have broken parts, and again the same text decoded when it had them:
    /// `isUTF8` is true before, and becomes false when the test fails and there are some.
    using Test = std::function<bool(std::string_view text, bool& isUTF8)>;
    enum class Answer {
        no,  ///< Also when nothing can be read.
        yes,
        tooLarge,  ///< Larger than `TextExtractor::sizeLimit`, though it has a text.
    };
    /// Whether the text of the file passes the test. The index is not asked. `size` is the file's,
    /// in bytes.
    Answer test(const URL& url, Way way, std::int64_t size, const Test& test,
                const CancelToken& token) const;
    /// The same for the first `plainBytes` bytes of a file whose way is `plain`.
    static Answer test(std::string_view bytes, const Test& test);
    /// Bytes of such a file that need to be read.
    static std::size_t plainBytes();
    /// The file has more bytes than are read.
    static bool isTooLarge(std::string_view name, Way way, std::int64_t size);

    std::optional<std::string> indexed(const URL& url) const;
    /// The whole text, from the index or the file.
    std::optional<std::string> read(const URL& url, Way way, const CancelToken& token) const;

private:
    std::shared_ptr<const TextLookup> index_;
    ReadDocument readDocument_;
};

}  // namespace tarn
