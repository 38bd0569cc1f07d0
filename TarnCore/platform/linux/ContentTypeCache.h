#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "TarnCore/base/URL.h"

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

/// What was once learned from the MIME database, so that the next start need not load it.
///
/// Stored as lines of fields separated by tabs. The first line is "tarn content types 1" and the
/// key that it holds for (language of the user, times of the database's files). Then "E", an
/// extension and a type, empty when nothing is known about the extension; and "T", a type, its
/// description and the identifiers of the declared types that it conforms to, separated by spaces.
struct ContentTypeCache {
    struct Type {
        std::string description;
        std::vector<std::string> lineage;
        bool operator==(const Type&) const = default;
    };
    StringMap<std::optional<std::string>> extensions;
    StringMap<Type> types;

    bool operator==(const ContentTypeCache&) const = default;

    /// Extensions beyond this many are not remembered: a folder of random names must not fill the
    /// memory. Their answers stay right, only slower.
    static constexpr std::size_t capacity = 20'000;

    /// Absent when the text is not such a cache, whatever it is, or has another key.
    static std::optional<ContentTypeCache> parse(std::string_view text, std::string_view key);
    std::string print(std::string_view key) const;

    /// Absent when there is none, it is broken, or it has another key.
    static std::optional<ContentTypeCache> load(const URL& file, std::string_view key);
    /// Replaces the file in one step, making its folder when there is none. A disk that refuses
    /// costs nothing but the time of the next start.
    void save(const URL& file, std::string_view key) const;
};

}  // namespace tarn
