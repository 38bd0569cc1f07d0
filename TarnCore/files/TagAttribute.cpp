#include "TarnCore/files/TagAttribute.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "TarnCore/base/PropertyList.h"
#include "TarnCore/base/Text.h"

namespace tarn::TagAttribute {
namespace {

constexpr int mostColor = 7;

/// A decimal integer, with an optional sign, that is one of the eight colours.
std::optional<int> colorNumber(std::string_view text) {
    if (text.starts_with("+-")) return std::nullopt;
    if (text.starts_with('+')) text.remove_prefix(1);
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isColor = error == std::errc{} && end == text.data() + text.size() && number >= 0 &&
                         number <= mostColor;
    return isColor ? std::optional(number) : std::nullopt;
}

bool contains(const std::vector<std::string>& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

/// The names of stored strings as a mirror gives them back.
std::vector<std::string> mirrored(const std::vector<std::string>& stored) {
    std::vector<std::string> names;
    for (const std::string& tag : stored) {
        // As it is read back: the attribute itself holds no broken UTF-8.
        std::string name(Text::trimmed(Text::sanitized(TagAttribute::name(tag))));
        const bool fits = !name.empty() && name.find(',') == name.npos;
        if (fits && !contains(names, name)) names.push_back(std::move(name));
    }
    return names;
}

}  // namespace

std::optional<std::vector<std::string>> decode(std::string_view bytes) {
    return PropertyList::stringArray(bytes);
}

std::string encode(const std::vector<std::string>& stored) { return PropertyList::encode(stored); }

std::string name(std::string_view stored) {
    return std::string(color(stored) ? stored.substr(0, stored.find('\n')) : stored);
}

std::optional<int> color(std::string_view stored) {
    const std::size_t feed = stored.find('\n');
    return feed == stored.npos ? std::nullopt : colorNumber(stored.substr(feed + 1));
}

std::string mirror(const std::vector<std::string>& stored, const std::vector<std::string>& before,
                   std::string_view oldMirror) {
    std::vector<std::string> names = mirrored(stored);
    const std::vector<std::string> known = mirrored(before);
    for (std::string& name : mirrorNames(oldMirror)) {
        const std::string shown = Text::sanitized(name);
        if (!contains(known, shown) && !contains(names, shown)) names.push_back(std::move(name));
    }
    return Text::join(names, ",");
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
