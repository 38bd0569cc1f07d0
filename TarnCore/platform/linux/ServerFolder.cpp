#include "TarnCore/platform/linux/ServerFolder.h"

#include <map>

#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"

namespace tarn {
namespace {

std::optional<std::string> unescaped(std::string_view value) {
    if (value.empty()) return std::string();
    // The rules of percent escapes are those of any URL.
    const auto url = URL::parse("file:///" + Text::replacing(value, "/", "%2F"));
    return url ? std::optional(url->path().substr(1)) : std::nullopt;
}

}  // namespace

std::optional<std::string> serverTitle(std::string_view folderName) {
    const std::size_t colon = folderName.find(':');
    if (colon == folderName.npos || colon == 0) return std::nullopt;
    std::map<std::string, std::string, std::less<>> facts;
    for (const std::string_view field : Text::split(folderName.substr(colon + 1), ',')) {
        const std::size_t equals = field.find('=');
        if (equals == field.npos) return std::nullopt;
        const auto value = unescaped(field.substr(equals + 1));
        if (!value) return std::nullopt;
        facts.emplace(field.substr(0, equals), *value);
    }
    const auto fact = [&facts](std::string_view key) {
        const auto found = facts.find(key);
        return found == facts.end() ? std::string() : found->second;
    };
    const std::string server = facts.contains("server") ? fact("server") : fact("host");
    if (server.empty()) return std::nullopt;
    const std::string share = facts.contains("share") ? fact("share") : fact("volume");
    return share.empty() ? server : share + " on " + server;
}

}  // namespace tarn
