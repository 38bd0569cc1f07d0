#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tarn {

/// The numbers are stored with files and shared with other systems.
enum class TagColor : std::uint8_t { none, gray, green, purple, blue, yellow, red, orange };

std::string_view title(TagColor color);  ///< "Grey"
std::span<const TagColor> allTagColors();

/// A tag: its name, which is also its identity to the user, and its colour.
struct FinderTag {
    std::string name;
    TagColor color = TagColor::none;
    bool operator==(const FinderTag&) const = default;

    /// The seven that are always there.
    static std::span<const FinderTag> standard();
    /// From the form in which it is stored with a file ("Work\n4").
    static FinderTag parse(std::string_view stored);
    std::string stored() const;
};

}  // namespace tarn
