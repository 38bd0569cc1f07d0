#include "TarnCore/platform/linux/DirectorySizes.h"

#include <charconv>

#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"

namespace tarn {
namespace {

/// Takes a number and the blank behind it off the front.
bool take(std::string_view& line, std::int64_t& value) {
    const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), value);
    if (error != std::errc() || end == line.data() + line.size() || *end != ' ' || value < 0)
        return false;
    line.remove_prefix(static_cast<std::size_t>(end - line.data()) + 1);
    return true;
}

}  // namespace

DirectorySizes DirectorySizes::parse(std::string_view text) {
    DirectorySizes sizes;
    for (std::string_view line : Text::split(text, '\n')) {
        Entry entry;
        if (!take(line, entry.bytes) || !take(line, entry.infoModified)) continue;
        const auto url = URL::parse("file:///" + std::string(line));
        if (url && !url->isRoot() && url->parent().isRoot())
            sizes.entries_[std::string(url->name())] = entry;
    }
    return sizes;
}

std::string DirectorySizes::text() const {
    constexpr std::string_view root = "file:///";
    std::string out;
    for (const auto& [name, entry] : entries_)
        out += std::to_string(entry.bytes) + " " + std::to_string(entry.infoModified) + " " +
               URL().appending(name).string().substr(root.size()) + "\n";
    return out;
}

std::optional<std::int64_t> DirectorySizes::size(const std::string& name,
                                                 std::int64_t infoModified) const {
    const auto found = entries_.find(name);
    if (found == entries_.end() || found->second.infoModified != infoModified) return std::nullopt;
    return found->second.bytes;
}

}  // namespace tarn
