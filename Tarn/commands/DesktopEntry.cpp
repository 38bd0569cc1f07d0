#include "Tarn/commands/DesktopEntry.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include <unistd.h>

#include "TarnCore/base/Collation.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

namespace fs = std::filesystem;

using Group = std::map<std::string, std::string, std::less<>>;

/// The largest file that is taken for a desktop entry or a list of defaults, in bytes.
constexpr std::uintmax_t largestFile = 1 << 20;

std::string contents(const fs::path& file) {
    std::error_code error;
    if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > largestFile) return {};
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// The keys of one group of a file in the form of desktop entries.
Group group(std::string_view text, std::string_view name) {
    Group keys;
    bool isInside = false;
    for (const std::string_view piece : Text::split(text, '\n')) {
        const std::string_view line = Text::trimmed(piece);
        if (line.starts_with('[')) {
            isInside = line.size() > 2 && line.substr(1, line.size() - 2) == name;
        } else if (isInside && !line.starts_with('#')) {
            const std::size_t equals = line.find('=');
            if (equals == line.npos) continue;
            keys.emplace(Text::trimmed(line.substr(0, equals)),
                         Text::trimmed(line.substr(equals + 1)));
        }
    }
    return keys;
}

std::string value(const Group& keys, std::string_view key) {
    const auto found = keys.find(key);
    return found == keys.end() ? std::string() : found->second;
}

/// The value for the user's language: that of language and country, of the language, of none.
std::string localized(const Group& keys, const std::string& key) {
    std::string_view locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (const char* set = std::getenv(name); locale.empty() && set) locale = set;
    locale = locale.substr(0, locale.find_first_of(".@"));
    for (const std::string_view one : {locale, locale.substr(0, locale.find('_'))})
        if (const auto found = keys.find(key + "[" + std::string(one) + "]"); found != keys.end())
            return found->second;
    return value(keys, key);
}

/// What \s, \n, \t, \r and \\ stand for in a value.
std::string unescaped(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        switch (const char next = text[++i]) {
            case 's':
                out += ' ';
                break;
            case 'n':
                out += '\n';
                break;
            case 't':
                out += '\t';
                break;
            case 'r':
                out += '\r';
                break;
            case '\\':
                out += '\\';
                break;
            default:
                out += {'\\', next};
        }
    }
    return out;
}

/// The words of Exec: blanks separate, double quotes join, a backslash in these takes `"`, '`', '$'
/// and '\' as they are.
std::vector<std::string> words(std::string_view text) {
    std::vector<std::string> all;
    std::string word;
    bool isQuoted = false;
    bool hasWord = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char byte = text[i];
        if (isQuoted && byte == '\\' && i + 1 < text.size()) {
            word += text[++i];
        } else if (byte == '"') {
            isQuoted = !isQuoted;
            hasWord = true;
        } else if (!isQuoted && (byte == ' ' || byte == '\t')) {
            if (hasWord) all.push_back(std::exchange(word, {}));
            hasWord = false;
        } else {
            word += byte;
            hasWord = true;
        }
    }
    if (hasWord) all.push_back(word);
    return all;
}

std::vector<fs::path> folders(const char* variable, std::string_view fallback) {
    const char* set = std::getenv(variable);
    std::vector<fs::path> all;
    for (const std::string_view piece : Text::split(set && *set ? set : fallback, ':'))
        if (piece.starts_with('/')) all.emplace_back(piece);
    return all;
}

/// Where entries are installed, the user's own first.
std::vector<fs::path> entryFolders() {
    std::vector<fs::path> all = {fs::path(Paths::dataHome().path()) / "applications"};
    for (const fs::path& folder : folders("XDG_DATA_DIRS", "/usr/local/share:/usr/share"))
        all.push_back(folder / "applications");
    return all;
}

/// Where the defaults are listed, the user's own first.
std::vector<fs::path> defaultLists() {
    std::vector<fs::path> all;
    const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
    const auto add = [&](const fs::path& folder) {
        for (const std::string_view piece : Text::split(desktop ? desktop : "", ':'))
            if (!piece.empty())
                all.push_back(folder / (Text::lowercased(piece) + "-mimeapps.list"));
        all.push_back(folder / "mimeapps.list");
    };
    add(Paths::configHome().path());
    for (const fs::path& folder : folders("XDG_CONFIG_DIRS", "/etc/xdg")) add(folder);
    for (const fs::path& folder : entryFolders()) add(folder);
    return all;
}

/// An id may name a subfolder: "kde-konsole.desktop" is "kde/konsole.desktop".
std::optional<fs::path> entryFile(const fs::path& folder, std::string id) {
    std::error_code error;
    for (;;) {
        if (fs::is_regular_file(folder / id, error)) return folder / id;
        const std::size_t dash = id.find('-', id.rfind('/') + 1);
        if (dash == id.npos) return std::nullopt;
        id[dash] = '/';
    }
}

/// In their order; each once.
std::set<std::string> installedIDs() {
    std::set<std::string> ids;
    for (const fs::path& folder : entryFolders()) {
        std::error_code error;
        for (fs::recursive_directory_iterator files(folder, error), end; !error && files != end;
             files.increment(error)) {
            if (files->path().extension() != ".desktop") continue;
            std::string id = files->path().lexically_relative(folder).string();
            std::ranges::replace(id, '/', '-');
            ids.insert(std::move(id));
        }
    }
    return ids;
}

std::optional<DesktopEntry> firstOf(std::string_view ids) {
    for (const std::string_view id : Text::split(ids, ';')) {
        if (id.empty()) continue;
        if (auto entry = DesktopEntries::find(id)) return entry;
    }
    return std::nullopt;
}

}  // namespace

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text, std::string id) {
    const Group keys = group(text, "Desktop Entry");
    if (value(keys, "Type") != "Application" || value(keys, "Hidden") == "true")
        return std::nullopt;
    DesktopEntry entry;
    entry.id = std::move(id);
    entry.name = unescaped(localized(keys, "Name"));
    entry.icon = unescaped(value(keys, "Icon"));
    entry.exec = words(unescaped(value(keys, "Exec")));
    entry.needsTerminal = value(keys, "Terminal") == "true";
    const std::string categories = value(keys, "Categories");
    const auto all = Text::split(categories, ';');
    const auto isOf = [&all](std::string_view category) {
        return std::ranges::find(all, category) != all.end();
    };
    entry.isTerminal = isOf("TerminalEmulator");
    entry.isEditor = isOf("TextEditor") || isOf("IDE");
    entry.isShown = value(keys, "NoDisplay") != "true";
    if (entry.exec.empty() || !DesktopEntries::executable(entry.exec.front())) return std::nullopt;
    const std::string tried = unescaped(value(keys, "TryExec"));
    if (!tried.empty() && !DesktopEntries::executable(tried)) return std::nullopt;
    return entry;
}

std::vector<std::string> DesktopEntry::command(const std::vector<URL>& files) const {
    std::vector<std::string> out;
    for (const std::string& word : exec) {
        if (word == "%F" || word == "%U") {
            for (const URL& file : files) out.push_back(word == "%F" ? file.path() : file.string());
            continue;
        }
        // The other codes stand for one thing or nothing, also inside a word.
        std::string built;
        bool isEmptyCode = false;
        for (std::size_t i = 0; i < word.size(); ++i) {
            if (word[i] != '%' || i + 1 == word.size()) {
                built += word[i];
                continue;
            }
            switch (word[++i]) {
                case '%':
                    built += '%';
                    break;
                case 'f':
                    if (!files.empty()) built += files.front().path();
                    isEmptyCode = files.empty();
                    break;
                case 'u':
                    if (!files.empty()) built += files.front().string();
                    isEmptyCode = files.empty();
                    break;
                case 'c':
                    built += name;
                    break;
                default:  // Icons, and codes of the past.
                    isEmptyCode = true;
            }
        }
        if (!built.empty() || !isEmptyCode) out.push_back(std::move(built));
    }
    return out;
}

std::optional<DesktopEntry> DesktopEntries::find(std::string_view id) {
    if (id.empty() || id.find('/') != id.npos) return std::nullopt;
    std::string file(id);
    if (!file.ends_with(".desktop")) file += ".desktop";
    for (const fs::path& folder : entryFolders()) {
        // The first of that name counts, also when it hides the program.
        if (const auto found = entryFile(folder, file))
            return DesktopEntry::parse(contents(*found), file);
    }
    return std::nullopt;
}

std::optional<DesktopEntry> DesktopEntries::anyTerminal() {
    for (const std::string& id : installedIDs()) {
        auto entry = find(id);
        if (entry && entry->isTerminal && !entry->needsTerminal) return entry;
    }
    return std::nullopt;
}

std::vector<DesktopEntry> DesktopEntries::all() {
    std::vector<DesktopEntry> entries;
    for (const std::string& id : installedIDs())
        if (auto entry = find(id); entry && entry->isShown) entries.push_back(*std::move(entry));
    std::ranges::stable_sort(entries, [](const DesktopEntry& a, const DesktopEntry& b) {
        return Collation::compare(a.name, b.name) < 0;
    });
    return entries;
}

std::optional<DesktopEntry> DesktopEntries::defaultFor(std::string_view mimeType) {
    for (const fs::path& list : defaultLists()) {
        const Group chosen = group(contents(list), "Default Applications");
        if (auto entry = firstOf(value(chosen, mimeType))) return entry;
    }
    for (const fs::path& folder : entryFolders()) {
        const Group all = group(contents(folder / "mimeinfo.cache"), "MIME Cache");
        if (auto entry = firstOf(value(all, mimeType))) return entry;
    }
    return std::nullopt;
}

std::optional<std::string> DesktopEntries::executable(std::string_view name) {
    const auto isProgram = [](const std::string& path) {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
               ::access(path.c_str(), X_OK) == 0;
    };
    if (name.starts_with('/')) {
        std::string path(name);
        if (isProgram(path)) return path;
        return std::nullopt;
    }
    if (name.empty() || name.find('/') != name.npos) return std::nullopt;
    for (const fs::path& folder : folders("PATH", "/usr/local/bin:/usr/bin:/bin")) {
        std::string path = (folder / name).string();
        if (isProgram(path)) return path;
    }
    return std::nullopt;
}

}  // namespace tarn
