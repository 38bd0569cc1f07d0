#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/base/FileDescriptor.h"

namespace tarn {

/// Lets a map with std::string keys be searched by a view.
struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
        return std::hash<std::string_view>{}(text);
    }
};
template <class Value>
using StringMap = std::unordered_map<std::string, Value, StringHash, std::equal_to<>>;

/// What was once learned from the MIME database.
struct ContentTypeCache {
    struct Type {
        std::string description;
        std::vector<std::string> lineage;  ///< The declared types that it conforms to.
        bool operator==(const Type&) const = default;
    };
    /// The type of an extension; absent when the database knows nothing about it.
    StringMap<std::optional<std::string>> extensions;
    StringMap<Type> types;

    bool operator==(const ContentTypeCache&) const = default;

    /// Extensions beyond this many are not remembered: a folder of random names must not fill the
    /// memory, nor make the next start slow. Their answers stay right, only slower.
    static constexpr std::size_t capacity = 4000;

    /// Absent when the text is no such cache or has another key. Lines that are not understood
    /// are skipped, and so is a last one that was cut off.
    static std::optional<ContentTypeCache> parse(std::string_view text, std::string_view key);
    std::string print(std::string_view key) const;

    /// The single lines of the file, with their line feeds.
    static std::string header(std::string_view key);
    static std::string line(std::string_view extension, const std::optional<std::string>& type);
    static std::string line(std::string_view identifier, const Type& type);
};

/// The file that carries a ContentTypeCache from one run to the next. Every line is written when
/// it is learned, so that nothing is lost with a process that ends in the middle, and processes
/// that run side by side add to the same file. Not for several threads at once.
///
/// It is text of lines with fields separated by tabs. The first line is "tarn content types 1" and
/// the key that it holds for (language of the user, times of the database's files). Then "E", an
/// extension and a type, empty when nothing is known about the extension; and "T", a type, its
/// description, and the identifiers of its lineage, separated by spaces. What was said first holds.
class ContentTypeCacheFile {
public:
    ContentTypeCacheFile(URL file, std::string key)
        : file_(std::move(file)), key_(std::move(key)) {}

    /// Empty when there is no file, or none with this key.
    ContentTypeCache load();
    /// Makes the file and its folder when there is none; one with another key is replaced in one
    /// step. A disk that refuses costs nothing but the time of the next start.
    void append(std::string_view lines);

private:
    void create();

    URL file_;
    std::string key_;
    FileDescriptor fd_;
    bool hasFailed_ = false;
};

}  // namespace tarn
