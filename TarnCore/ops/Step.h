#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// The unit of a change to files, and all that is needed to take it back.
///
/// Stored as an object with one key, the case, which holds an object of the fields:
/// {"move": {"from": …, "to": …}}, {"create": {"url": …, "trashedAt": …}},
/// {"tags": {"url": …, "old": […], "new": […]}}, {"permissions": {"url": …, "old": …, "new": …}}.
struct Step {
    /// An item got another place or name; for a trashed one `to` is its place in the Trash.
    struct Move {
        URL from;
        URL to;
        bool operator==(const Move&) const = default;
    };
    /// An item was made. After an undo, `trashedAt` is where it lies in the Trash.
    struct Create {
        URL url;
        std::optional<URL> trashedAt;
        bool operator==(const Create&) const = default;
    };
    /// The tags of an item were changed; stored strings with name and colour.
    struct Tags {
        URL url;
        std::vector<std::string> before;  ///< Key "old".
        std::vector<std::string> after;   ///< Key "new".
        bool operator==(const Tags&) const = default;
    };

    /// The permission bits of an item were changed.
    struct Permissions {
        URL url;
        std::uint32_t before = 0;  ///< Key "old".
        std::uint32_t after = 0;   ///< Key "new".
        bool operator==(const Permissions&) const = default;
    };

    std::variant<Move, Create, Tags, Permissions> change;

    static Step move(URL from, URL to) { return {Move{std::move(from), std::move(to)}}; }
    static Step create(URL url, std::optional<URL> trashedAt = std::nullopt) {
        return {Create{std::move(url), std::move(trashedAt)}};
    }
    static Step tags(URL url, std::vector<std::string> before, std::vector<std::string> after) {
        return {Tags{std::move(url), std::move(before), std::move(after)}};
    }

    static Step permissions(URL url, std::uint32_t before, std::uint32_t after) {
        return {Permissions{std::move(url), before, after}};
    }

    bool operator==(const Step&) const = default;
};

void to_json(JSON& json, const Step& step);
/// Throws tarn::Error ("Invalid number of keys found, expected one.") for an object that does not
/// have exactly one key.
void from_json(const JSON& json, Step& step);

}  // namespace tarn

template <>
struct std::hash<tarn::Step> {
    std::size_t operator()(const tarn::Step& step) const noexcept;
};
