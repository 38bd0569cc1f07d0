#include "TarnCore/tags/FinderTag.h"

#include <algorithm>

#include "TarnCore/files/TagAttribute.h"

namespace tarn {
namespace {

constexpr std::array allColors = {TagColor::none,   TagColor::gray,  TagColor::green,
                                  TagColor::purple, TagColor::blue,  TagColor::yellow,
                                  TagColor::red,    TagColor::orange};

/// In the order of the enumeration.
constexpr std::array<std::string_view, allColors.size()> titles = {
    "No Colour", "Grey", "Green", "Purple", "Blue", "Yellow", "Red", "Orange"};

}  // namespace

std::string_view title(TagColor color) { return titles[static_cast<std::size_t>(color)]; }

std::span<const TagColor> allTagColors() { return allColors; }

std::span<const FinderTag> FinderTag::standard() {
    static const std::array<FinderTag, 7> tags = {{{"Red", TagColor::red},
                                                   {"Orange", TagColor::orange},
                                                   {"Yellow", TagColor::yellow},
                                                   {"Green", TagColor::green},
                                                   {"Blue", TagColor::blue},
                                                   {"Purple", TagColor::purple},
                                                   {"Gray", TagColor::gray}}};
    return tags;
}

FinderTag FinderTag::parse(std::string_view stored) {
    FinderTag tag{TagAttribute::name(stored), TagColor::none};
    if (const auto color = TagAttribute::color(stored)) {
        tag.color = static_cast<TagColor>(*color);
    } else if (const auto known = std::ranges::find(standard(), tag.name, &FinderTag::name);
               known != standard().end()) {
        tag.color = known->color;
    }
    return tag;
}

std::string FinderTag::stored() const {
    return name + "\n" + std::to_string(static_cast<int>(color));
}

}  // namespace tarn
