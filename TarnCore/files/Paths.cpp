#include "TarnCore/files/Paths.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <system_error>

#include <pwd.h>
#include <unistd.h>

#include "TarnCore/base/Collation.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/files/SortOrder.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/files/UserDirs.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::Paths {
namespace {

/// An environment variable that holds an absolute path; others are to be ignored.
std::optional<URL> folderVariable(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr || value[0] != '/') return std::nullopt;
    return URL::fromPath(value);
}

URL accountHome() {
    if (auto home = folderVariable("HOME")) return *home;
    std::array<char, 4096> buffer;
    passwd entry;
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 &&
        found != nullptr && found->pw_dir != nullptr)
        return URL::fromPath(found->pw_dir);
    return URL();
}

/// What the environment says, read once.
struct Environment {
    std::optional<URL> isolatedRoot;
    URL home;
    URL dataHome;
    URL configHome;
    URL cacheHome;
    /// Read from the disk when first asked for.
    std::optional<UserDirs> userDirs;

    Environment() {
        const char* root = std::getenv("TARN_ISOLATED_ROOT");
        if (root != nullptr && *root != '\0') isolatedRoot = absolute(root);
        home = isolatedRoot ? isolatedRoot->appending("Home") : accountHome();
        dataHome = folder("XDG_DATA_HOME", ".local/share");
        configHome = folder("XDG_CONFIG_HOME", ".config");
        cacheHome = folder("XDG_CACHE_HOME", ".cache");
    }

    /// In isolated mode nothing outside the scratch tree is touched, whatever the variables say.
    URL folder(const char* variable, std::string_view inHome) const {
        if (!isolatedRoot)
            if (auto url = folderVariable(variable)) return *url;
        return home.appending(inHome);
    }

    static URL absolute(const char* path) {
        std::array<char, 4096> current;
        if (*path != '/' && getcwd(current.data(), current.size()) != nullptr)
            return URL::fromPath(path, URL::fromPath(current.data()));
        return URL::fromPath(path);
    }
};

Guarded<Environment>& environment() {
    static Guarded<Environment> instance;
    return instance;
}

URL userFolder(std::string_view key, std::string_view designName) {
    const auto state = environment().lock();
    if (state->isolatedRoot) return state->home.appending(designName);
    if (!state->userDirs) {
        std::string text;
        try {
            constexpr std::size_t limit = 1 << 20;
            text = Platform::current().files->readFile(
                state->configHome.appending("user-dirs.dirs"), limit);
        } catch (const std::system_error&) {
            // Not every desktop has the file.
        }
        state->userDirs = UserDirs::parse(text, state->home);
    }
    const auto found = state->userDirs->folders.find(std::string(key));
    // A folder that the user switched off is written as the home folder itself.
    if (found == state->userDirs->folders.end() || found->second == state->home)
        return state->home.appending(designName);
    return found->second;
}

/// Isolated runs and automated checks leave the desktop's Trash alone.
std::optional<URL> privateTrash() {
    if (isIsolated()) return home().appending(".Trash");
    if (SupportDirectory::isTestFolder()) return SupportDirectory::location().appending("Trash");
    return std::nullopt;
}

bool isStrictlyInside(const URL& url, const URL& folder) {
    return url.isInside(folder) && url != folder;
}

/// ".Trash" and ".Trash-1000".
bool isTrashName(std::string_view name) {
    if (!name.starts_with(".Trash")) return false;
    name.remove_prefix(6);
    if (name.empty()) return true;
    if (name[0] != '-' || name.size() == 1) return false;
    return name.find_first_not_of("0123456789", 1) == name.npos;
}

/// True when `path` is `folder` or below it; `folder` has no slash at its end.
bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

/// Below /run lie the runtime files of services, and beside them the disks that people plug in and
/// the shares that they open.
bool isRuntimePath(std::string_view path) {
    if (!isAtOrBelow(path, "/run")) return false;
    if (isAtOrBelow(path, "/run/media")) return false;
    if (!isAtOrBelow(path, "/run/user")) return true;
    const std::size_t user = path.find('/', std::string_view("/run/user/").size());
    return user == path.npos || !isAtOrBelow(path.substr(user), "/gvfs");
}

bool exists(const URL& url) {
    return Platform::current().files->attributes(url, Links::keep).has_value();
}

URL typedURL(std::string_view typed, const URL& base) {
    if (auto url = URL::parse(typed)) return *url;
    if (typed == "~") return home();
    if (typed.starts_with("~/")) return home().appending(typed.substr(2));
    return URL::fromPath(typed, base);
}

/// The names of folders inside `folder`, in display order. None when it cannot be read.
std::vector<std::string> folderNames(const URL& folder, bool includeHidden) {
    std::vector<ListedName> names;
    try {
        names = DirectoryLister::names(folder, includeHidden);
    } catch (const ListingError&) {
        return {};
    }
    std::erase_if(names, [](const ListedName& name) { return !name.isDirectory; });
    SortOrder{}.sort(names);
    std::vector<std::string> result;
    result.reserve(names.size());
    for (ListedName& name : names) result.push_back(std::move(name.name));
    return result;
}

/// Length in bytes of the longest beginning of `a` that `b` shares but for case.
std::size_t sharedLength(std::string_view a, std::string_view b) {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        std::size_t nextI = i;
        std::size_t nextJ = j;
        Text::nextCharacter(a, nextI);
        Text::nextCharacter(b, nextJ);
        const std::string_view left = a.substr(i, nextI - i);
        const std::string_view right = b.substr(j, nextJ - j);
        if (left != right && Text::lowercased(left) != Text::lowercased(right)) break;
        i = nextI;
        j = nextJ;
    }
    return i;
}

}  // namespace

bool isIsolated() { return environment().lock()->isolatedRoot.has_value(); }
URL isolatedRoot() { return environment().lock()->isolatedRoot.value_or(URL()); }
URL home() { return environment().lock()->home; }
URL dataHome() { return environment().lock()->dataHome; }
URL configHome() { return environment().lock()->configHome; }
URL cacheHome() { return environment().lock()->cacheHome; }
void reload() { *environment().lock() = Environment(); }

URL homeFolder(std::string_view name) { return home().appending(name); }
URL desktop() { return userFolder("DESKTOP", "Desktop"); }
URL documents() { return userFolder("DOCUMENTS", "Documents"); }
URL downloads() { return userFolder("DOWNLOAD", "Downloads"); }
URL pictures() { return userFolder("PICTURES", "Pictures"); }
URL movies() { return userFolder("VIDEOS", "Movies"); }
URL music() { return userFolder("MUSIC", "Music"); }
URL trash() { return privateTrash().value_or(dataHome().appending("Trash/files")); }
URL applications() { return URL::fromPath("/usr/share/applications"); }
URL iCloudDrive() { return homeFolder("Library/Mobile Documents/com~apple~CloudDocs"); }

bool isInTrash(const URL& url) {
    const std::string_view path = url.path();
    // Nearly every path answers here.
    if (path.find("Trash") == path.npos) return false;
    if (isStrictlyInside(url, dataHome().appending("Trash"))) return true;
    if (const auto own = privateTrash(); own && url.isInside(*own)) return true;
    const auto names = Text::split(path, '/');
    return names.size() > 1 && std::any_of(names.begin(), names.end() - 1, isTrashName);
}

bool isVolumeRoot(const URL& url) {
    if (url.isRoot()) return true;
    const auto mount = Platform::current().volumes->mountHolding(url);
    return mount && mount->mountPoint == url;
}

bool isAppData(const URL& url, const URL& home) {
    const std::string_view path = url.path();
    for (const std::string_view folder :
         {"/proc", "/sys", "/dev", "/private", "/Library", "/System"})
        if (isAtOrBelow(path, folder)) return true;
    if (isRuntimePath(path)) return true;
    if (!url.isInside(home)) return false;
    const std::string_view inHome = path.substr(home.isRoot() ? 0 : home.path().size());
    if (isAtOrBelow(inHome, "/.local/share"))
        return !isAtOrBelow(inHome, "/.local/share/Trash") && inHome != "/.local/share";
    if (isAtOrBelow(inHome, "/Library")) return !FileItem::isCloudPath(url);
    for (const std::string_view folder : {"/.cache", "/.config", "/.local/state", "/.var", "/snap"})
        if (isAtOrBelow(inHome, folder)) return true;
    return false;
}

const std::unordered_set<std::string>& appDataFolders() {
    static const std::unordered_set<std::string> names = {
        // Repositories' own data
        ".git", ".hg", ".svn", ".bzr",
        // Packages that build tools fetched
        "node_modules", "bower_components", ".npm", ".yarn", ".pnpm-store", ".gradle", ".m2",
        ".cargo", ".rustup", ".bundle", "pods", "carthage", "site-packages", ".venv", "venv",
        // What they made, and their caches
        "deriveddata", "cmakefiles", "__pycache__", ".pytest_cache", ".mypy_cache", ".ruff_cache",
        ".tox", ".next", ".terraform", ".cache", ".ccache"};
    return names;
}

bool isAppDataFolder(const URL& folder, bool includingPackages) {
    return appDataFolders().contains(Text::lowercased(folder.name())) ||
           (includingPackages && ResourceReader::isPackageName(folder.name()));
}

std::string abbreviate(const URL& url) {
    const URL house = home();
    if (house.isRoot() || !url.isInside(house)) return url.path();
    return "~" + url.path().substr(house.path().size());
}

std::string shellQuote(std::string_view text) {
    static constexpr std::string_view plain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-./:,+@%";
    if (!text.empty() && text.find_first_not_of(plain) == text.npos) return std::string(text);
    return "'" + Text::replacing(text, "'", R"('\'')") + "'";
}

std::string format(const URL& url, CopyPathFormat format) {
    switch (format) {
        case CopyPathFormat::full:
            return url.path();
        case CopyPathFormat::tilde:
            return abbreviate(url);
        case CopyPathFormat::quoted:
            return shellQuote(url.path());
        case CopyPathFormat::fileURL:
            return url.string();
    }
    return url.path();
}

std::optional<URL> resolve(std::string_view typed, const URL& base) {
    const std::string_view trimmed = Text::trimmed(typed);
    if (trimmed.empty()) return std::nullopt;
    for (const std::string_view text : {typed, trimmed})
        if (URL url = typedURL(text, base); exists(url)) return url;
    return std::nullopt;
}

Completions completions(std::string_view typed, const URL& base, bool includeHidden,
                        std::size_t limit) {
    Completions result;
    result.commonPrefix = typed;
    if (typed == "~") return result;
    const std::size_t slash = typed.rfind('/');
    const std::string_view folder = slash == typed.npos ? "" : typed.substr(0, slash + 1);
    const std::string_view start = typed.substr(folder.size());
    const URL parent = folder.empty() ? base : typedURL(folder, base);

    std::vector<std::string> names = folderNames(parent, includeHidden || start.starts_with('.'));
    std::erase_if(
        names, [&](const std::string& name) { return sharedLength(start, name) != start.size(); });
    if (names.empty()) return result;
    std::size_t shared = names[0].size();
    for (const std::string& name : names) shared = std::min(shared, sharedLength(names[0], name));
    result.commonPrefix = std::string(folder) + names[0].substr(0, shared);
    if (names.size() > limit) names.resize(limit);
    result.names = std::move(names);
    return result;
}

std::vector<URL> breadcrumb(const URL& url) {
    std::vector<URL> chain = {url};
    const URL house = home();
    const URL bin = trash();
    while (chain.back() != house && chain.back() != bin && !chain.back().isRoot())
        chain.push_back(chain.back().parent());
    std::reverse(chain.begin(), chain.end());
    return chain;
}

std::string displayName(const URL& url) {
    return url == trash() ? "Trash" : DirectoryLister::displayName(url);
}

std::vector<URL> siblingFolders(const URL& url, bool includeHidden) {
    if (url.isRoot()) return {};
    const URL parent = url.parent();
    std::vector<URL> folders;
    for (const std::string& name : folderNames(parent, includeHidden))
        folders.push_back(parent.appending(name));
    return folders;
}

}  // namespace tarn::Paths
