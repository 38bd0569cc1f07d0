#include "TarnCore/files/UserDirs.h"

#include <optional>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

/// The text between double quotes, its escapes undone. Absent without a closing quote.
std::optional<std::string> quotedValue(std::string_view text) {
    if (!text.starts_with('"')) return std::nullopt;
    std::string value;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"') return value;
        if (text[i] == '\\' && i + 1 < text.size()) ++i;
        value += text[i];
    }
    return std::nullopt;
}

std::optional<URL> folder(const std::string& value, const URL& home) {
    constexpr std::string_view homeVariable = "$HOME";
    if (value.starts_with('/')) return URL::fromPath(value);
    if (value == homeVariable) return home;
    if (value.starts_with("$HOME/")) return home.appending(value.substr(homeVariable.size() + 1));
    return std::nullopt;
}

}  // namespace

UserDirs UserDirs::parse(std::string_view text, const URL& home) {
    constexpr std::string_view prefix = "XDG_";
    constexpr std::string_view suffix = "_DIR";
    UserDirs result;
    for (std::string_view line : Text::split(text, '\n')) {
        line = Text::trimmed(line);
        const std::size_t equals = line.find('=');
        if (equals == line.npos) continue;
        std::string_view key = Text::trimmed(line.substr(0, equals));
        if (key.size() <= prefix.size() + suffix.size() || !key.starts_with(prefix) ||
            !key.ends_with(suffix))
            continue;
        key.remove_prefix(prefix.size());
        key.remove_suffix(suffix.size());
        const auto value = quotedValue(Text::trimmed(line.substr(equals + 1)));
        if (!value) continue;
        if (auto url = folder(*value, home))
            result.folders.insert_or_assign(std::string(key), std::move(*url));
    }
    return result;
}

}  // namespace tarn
