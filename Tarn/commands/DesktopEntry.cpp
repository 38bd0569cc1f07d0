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

#include "Tarn/commands/DesktopFiles.h"
#include "Tarn/commands/KeyFile.h"
#include "Tarn/commands/MimeApps.h"
#include "TarnCore/base/Collation.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

namespace fs = std::filesystem;

using Group = KeyFile::Group;
using KeyFile::value;

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

/// OnlyShowIn and NotShowIn; where no desktop says that it is there, all programs are for it.
bool isForThisDesktop(const Group& keys) {
    const char* set = std::getenv("XDG_CURRENT_DESKTOP");
    const auto names = [&](const char* key) {
        const std::string list = value(keys, key);
        const auto listed = Text::split(list, ';');
        const auto here = Text::split(set ? set : "", ':');
        return std::ranges::any_of(here, [&listed](std::string_view desktop) {
            return !desktop.empty() && std::ranges::find(listed, desktop) != listed.end();
        });
    };
    if (!set || !*set) return true;
    return !names("NotShowIn") && (value(keys, "OnlyShowIn").empty() || names("OnlyShowIn"));
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
    for (const fs::path& folder : DesktopFiles::entryFolders()) {
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

}  // namespace

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text, std::string id,
                                                std::optional<URL> file) {
    const Group keys = KeyFile::group(text, "Desktop Entry");
    if (value(keys, "Type") != "Application" || value(keys, "Hidden") == "true")
        return std::nullopt;
    DesktopEntry entry;
    entry.id = std::move(id);
    entry.source = std::move(file);
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
    entry.isShown = value(keys, "NoDisplay") != "true" && isForThisDesktop(keys);
    if (const std::string start = unescaped(value(keys, "Path")); start.starts_with('/'))
        entry.folder = URL::fromPath(start);
    entry.windowClass = unescaped(value(keys, "StartupWMClass"));
    entry.tellsWhenStarted = value(keys, "StartupNotify") == "true";
    entry.isActivatable = value(keys, "DBusActivatable") == "true";
    const bool hasProgram = !entry.exec.empty() && DesktopEntries::executable(entry.exec.front());
    if (entry.exec.empty() ? !entry.isActivatable : !hasProgram) return std::nullopt;
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
        if (word == "%i") {
            if (!icon.empty()) out.insert(out.end(), {"--icon", icon});
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
                case 'k':
                    if (source) built += source->path();
                    isEmptyCode = !source;
                    break;
                default:  // Codes of the past.
                    isEmptyCode = true;
            }
        }
        if (!built.empty() || !isEmptyCode) out.push_back(std::move(built));
    }
    return out;
}

std::vector<std::vector<std::string>> DesktopEntry::commands(const std::vector<URL>& files) const {
    const auto takesOne = [](const std::string& word) {
        return word.find("%f") != word.npos || word.find("%u") != word.npos;
    };
    if (files.size() < 2 || !std::ranges::any_of(exec, takesOne)) return {command(files)};
    std::vector<std::vector<std::string>> all;
    for (const URL& file : files) all.push_back(command({file}));
    return all;
}

std::optional<DesktopEntry> DesktopEntries::find(std::string_view id) {
    if (id.empty() || id.find('/') != id.npos) return std::nullopt;
    std::string file(id);
    if (!file.ends_with(".desktop")) file += ".desktop";
    for (const fs::path& folder : DesktopFiles::entryFolders()) {
        // The first of that name counts, also when it hides the program.
        if (const auto found = entryFile(folder, file))
            return DesktopEntry::parse(DesktopFiles::contents(*found), file,
                                       URL::fromPath(found->string()));
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
    for (const std::string& id : MimeApps::defaults(mimeType))
        if (auto entry = find(id)) return entry;
    for (const std::string& id : MimeApps::openers(mimeType))
        if (auto entry = find(id)) return entry;
    return std::nullopt;
}

std::vector<DesktopEntry> DesktopEntries::openers(const std::vector<std::string>& mimeTypes) {
    std::vector<DesktopEntry> entries;
    const auto add = [&entries](const std::vector<std::string>& ids) {
        for (const std::string& id : ids) {
            const auto isSame = [&id](const DesktopEntry& one) { return one.id == id; };
            if (std::ranges::any_of(entries, isSame)) continue;
            if (auto entry = find(id)) entries.push_back(*std::move(entry));
        }
    };
    for (const std::string& type : mimeTypes) {
        add(MimeApps::defaults(type));
        add(MimeApps::openers(type));
    }
    return entries;
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
    for (const fs::path& folder : DesktopFiles::folders("PATH", "/usr/local/bin:/usr/bin:/bin")) {
        std::string path = (folder / name).string();
        if (isProgram(path)) return path;
    }
    return std::nullopt;
}

}  // namespace tarn
