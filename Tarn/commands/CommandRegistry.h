#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Tarn/commands/TarnCommand.h"
#include "Tarn/model/records/Shortcut.h"

namespace tarn {

struct AppSettings;

/// Every command there is, in the order of the menus. Main thread only.
namespace CommandRegistry {

const std::vector<TarnCommand>& all();
const TarnCommand* command(std::string_view id);
/// False without a window, or where something the command needs is missing.
bool isEnabled(const TarnCommand& command, const WindowModel* window);

/// The shortcuts before the user changes any, by command id.
const std::map<std::string, Shortcut, std::less<>>& defaults();
/// Further keys that people on this desktop expect, as Qt writes them ("Alt+Left"); they cannot be
/// changed.
std::vector<std::string_view> desktopKeys(std::string_view id);

/// The keys of a command, the user's changes applied; absent for none.
std::optional<Shortcut> shortcut(std::string_view id, const AppSettings& settings);
/// As Qt writes keys: "Ctrl+Shift+H".
std::string portableText(const Shortcut& shortcut);

}  // namespace CommandRegistry

}  // namespace tarn
