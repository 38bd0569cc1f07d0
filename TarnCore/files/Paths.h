#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

enum class CopyPathFormat { full, tilde, quoted, fileURL };

/// The user's folders, and questions that a path answers by itself. The environment
/// (TARN_ISOLATED_ROOT, HOME, XDG_*) is read once.
namespace Paths {

bool isIsolated();
URL isolatedRoot();  ///< Only when isIsolated().
URL home();
/// Where programs keep the user's data, settings and caches: $XDG_DATA_HOME ("~/.local/share"),
/// $XDG_CONFIG_HOME ("~/.config"), $XDG_CACHE_HOME ("~/.cache"); below home() in isolated mode.
URL dataHome();
URL configHome();
URL cacheHome();
/// The user's well-known folder; xdg-user-dirs names it, except in isolated mode.
URL desktop();
URL documents();
URL downloads();
URL pictures();
URL movies();
URL music();
URL homeFolder(std::string_view name);
URL trash();         ///< "files" of the home trash; in isolated mode ".Trash" in home().
URL applications();  ///< The desktop entries of programs installed for everyone.
URL iCloudDrive();

/// Below the home trash, a ".Trash-UID" or ".Trash/UID" folder of a volume, or a ".Trash".
bool isInTrash(const URL& url);
bool isVolumeRoot(const URL& url);
/// Caches, settings and data of programs, and pseudo file systems: nothing a person put there.
/// By the path alone. `home` is the user's home folder.
bool isAppData(const URL& url, const URL& home);
/// A folder whose content belongs to a program: its lower-cased name is one of appDataFolders or,
/// with `includingPackages`, it has a bundle extension.
bool isAppDataFolder(const URL& folder, bool includingPackages);
/// The 30 lower-case names of build, package and cache folders that scans skip.
const std::unordered_set<std::string>& appDataFolders();

/// "~/Documents" for what lies in the home folder.
std::string abbreviate(const URL& url);
/// For a POSIX shell: single quotes where needed.
std::string shellQuote(std::string_view text);
std::string format(const URL& url, CopyPathFormat format);
/// What typed text means in `base`: "~", "~/x", relative, absolute, file://. Blanks around it count
/// only when there is something of that name. Absent when nothing exists there.
std::optional<URL> resolve(std::string_view typed, const URL& base);

struct Completions {
    std::vector<std::string> names;  ///< Folder names, in display order.
    /// The typed text, continued as far as all of them agree; the typed text itself without any.
    std::string commonPrefix;
};
/// Folders that the typed text may go on to: those below its last "/" whose names begin with the
/// rest, whatever the case. Hidden ones also come when that rest begins with a dot.
Completions completions(std::string_view typed, const URL& base, bool includeHidden,
                        std::size_t limit);

/// From the first folder shown (home, the home trash or "/") down to the folder itself.
std::vector<URL> breadcrumb(const URL& url);
/// The folder's own name, of the home folder too; "Computer" for "/", "Trash" for the home trash.
std::string displayName(const URL& url);
/// The folders of the same parent, the folder itself among them, in display order. None for "/".
std::vector<URL> siblingFolders(const URL& url, bool includeHidden);

/// Reads the environment again; for tests.
void reload();

}  // namespace Paths

}  // namespace tarn
