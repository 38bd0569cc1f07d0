#include "TarnCore/files/TagAttribute.h"

#include <charconv>
#include <utility>

#include "TarnCore/base/PropertyList.h"
#include "TarnCore/base/Text.h"

namespace tarn::TagAttribute {
namespace {

/// A decimal integer, with an optional sign, that is one of the eight colours.
bool isColourNumber(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() && number >= 0 && number <= 7;
}

}  // namespace

std::optional<std::vector<std::string>> decode(std::string_view bytes) {
    return PropertyList::stringArray(bytes);
}

std::string name(std::string_view stored) {
    const std::size_t feed = stored.find('\n');
    if (feed == stored.npos || !isColourNumber(stored.substr(feed + 1))) return std::string(stored);
    return std::string(stored.substr(0, feed));
}

std::vector<std::string> mirrorNames(std::string_view value) {
    std::vector<std::string> names;
    for (const std::string_view piece : Text::split(value, ','))
        if (const auto name = Text::trimmed(piece); !name.empty()) names.emplace_back(name);
    return names;
}

std::vector<std::string> names(const std::optional<std::string>& value,
                               const std::optional<std::string>& mirror) {
    if (value) {
        if (auto stored = decode(*value)) {
            for (std::string& tag : *stored) tag = name(tag);
            return std::move(*stored);
        }
    }
    return mirror ? mirrorNames(*mirror) : std::vector<std::string>{};
}

}  // namespace tarn::TagAttribute
