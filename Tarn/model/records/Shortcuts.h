#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tarn/model/records/Shortcut.h"

namespace tarn {

struct AppSettings;

/// Which keys run which command, and what the user changed about that.
///
/// Only changes are stored, in AppSettings::shortcutOverrides: an entry with an empty key takes the
/// keys from a command. Whatever is done here, no two commands have the same keys: those given last
/// are taken from the command that had them. Values; any thread.
namespace Shortcuts {

using Overrides = std::map<std::string, Shortcut>;
using ByCommand = std::map<std::string, Shortcut, std::less<>>;

/// The keys of every command that has some. Where a file that was written by hand gives the same
/// keys twice, what the user chose goes before the defaults, and then the first in the list.
ByCommand effective(const Overrides& overrides);
/// Of one command; absent for none.
std::optional<Shortcut> effective(const Overrides& overrides, std::string_view id);
/// The id of the command that these keys run; empty when there is none.
std::string_view owner(const Overrides& overrides, const Shortcut& shortcut);

// Changes. Those that may take keys from other commands return the ids of these.

std::vector<std::string_view> set(Overrides& overrides, std::string_view id,
                                  const Shortcut& shortcut);
/// Leaves the command without keys.
void clear(Overrides& overrides, std::string_view id);
/// Back to what it has by default.
std::vector<std::string_view> reset(Overrides& overrides, std::string_view id);
/// Takes CommandList::finderPreset over as changes of the user.
std::vector<std::string_view> applyFinderPreset(Overrides& overrides);

/// Settings that were stored with an older list of defaults: changes that say what is the default
/// by now are none any more. Call it on what was read, and store it with the next change.
void reconcile(AppSettings& settings);

/// "Command+Shift+d", as text() writes it; upper and lower case are the same. Throws tarn::Error
/// with a sentence for anything else, and for keys that would keep a person from typing.
Shortcut parse(std::string_view text);
/// Empty for no keys.
std::string text(const Shortcut& shortcut);

/// One printable character or one of the named keys.
bool isKey(std::string_view key);
/// "up", "down", "left", "right" or "delete".
bool isNamedKey(std::string_view key);
/// With Command, Option or Control held, so that it stands in nobody's way while typing.
bool isUsable(const Shortcut& shortcut);

}  // namespace Shortcuts

}  // namespace tarn
