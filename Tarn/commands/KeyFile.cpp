#include "Tarn/commands/KeyFile.h"

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

struct Line {
    std::size_t begin = 0;
    std::size_t end = 0;  ///< Behind its line feed.
    std::string_view text;
};

/// The next line from `at` on; false at the end.
bool read(std::string_view text, std::size_t at, Line& line) {
    if (at >= text.size()) return false;
    const std::size_t feed = text.find('\n', at);
    line.begin = at;
    line.end = feed == text.npos ? text.size() : feed + 1;
    line.text = Text::trimmed(text.substr(at, line.end - at));
    return true;
}

bool isGroup(std::string_view line) { return line.starts_with('['); }

bool isGroup(std::string_view line, std::string_view name) {
    return isGroup(line) && line.size() > 2 && line.substr(1, line.size() - 2) == name;
}

}  // namespace

KeyFile::Group KeyFile::group(std::string_view text, std::string_view name) {
    Group keys;
    bool isInside = false;
    Line line;
    for (std::size_t at = 0; read(text, at, line); at = line.end) {
        if (isGroup(line.text)) {
            isInside = isGroup(line.text, name);
        } else if (isInside && !line.text.starts_with('#')) {
            const std::size_t equals = line.text.find('=');
            if (equals == line.text.npos) continue;
            keys.emplace(Text::trimmed(line.text.substr(0, equals)),
                         Text::trimmed(line.text.substr(equals + 1)));
        }
    }
    return keys;
}

std::string KeyFile::value(const Group& keys, std::string_view key) {
    const auto found = keys.find(key);
    return found == keys.end() ? std::string() : found->second;
}

std::string KeyFile::with(std::string_view text, std::string_view group, std::string_view key,
                          const std::optional<std::string>& value) {
    std::string entry;
    if (value) entry = std::string(key) + "=" + *value + "\n";
    const auto replaced = [text](std::size_t begin, std::size_t end, std::string_view by) {
        return std::string(text.substr(0, begin)) + std::string(by) + std::string(text.substr(end));
    };
    bool isInside = false;
    std::optional<std::size_t> behind;  // The last line of the group that says something.
    Line line;
    for (std::size_t at = 0; read(text, at, line); at = line.end) {
        if (isGroup(line.text)) {
            if (behind && isInside) break;
            isInside = isGroup(line.text, group);
        }
        if (!isInside) continue;
        if (!line.text.empty()) behind = line.end;
        if (isGroup(line.text) || line.text.starts_with('#')) continue;
        const std::size_t equals = line.text.find('=');
        if (equals != line.text.npos && Text::trimmed(line.text.substr(0, equals)) == key)
            return replaced(line.begin, line.end, entry);
    }
    if (!value) return std::string(text);
    if (behind) {
        // Its last line may be the end of the file.
        const bool isEnded = text[*behind - 1] == '\n';
        return replaced(*behind, *behind, (isEnded ? "" : "\n") + entry);
    }
    std::string out(text);
    if (!out.empty() && !out.ends_with('\n')) out += '\n';
    if (!out.empty() && !out.ends_with("\n\n")) out += '\n';
    return out + "[" + std::string(group) + "]\n" + entry;
}

}  // namespace tarn
