#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QtCore/QString>

#include "Tarn/commands/TarnCommand.h"
#include "Tarn/model/records/Shortcut.h"

namespace tarn {

struct AppSettings;

/// Every command there is, in the order of the menus and of the palette. Main thread only.
namespace CommandRegistry {

const std::vector<TarnCommand>& all();
const TarnCommand* command(std::string_view id);

/// In the language of the window.
QString title(const TarnCommand& command);
/// The name of a group; "Go" and its like, translated.
QString groupTitle(std::string_view group);

/// False without a window, or where something the command needs is missing.
bool isEnabled(const TarnCommand& command, const WindowModel* window);
/// Why it is not enabled, as a finished sentence; empty when it is.
QString obstacle(const TarnCommand& command, const WindowModel* window);
/// Runs it if it is enabled. False when it is not.
bool run(const TarnCommand& command, WindowModel& window);

/// The shortcuts before the user changes any, by command id.
const std::map<std::string, Shortcut, std::less<>>& defaults();
/// A second set that a person may take over in the settings; an empty key takes one away.
const std::map<std::string, Shortcut, std::less<>>& finderPreset();
/// Further keys that people on this desktop expect, as Qt writes them ("Alt+Left"). They are not
/// changed by the user, but give way to the shortcut of another command.
std::vector<std::string_view> desktopKeys(std::string_view id);

/// The keys of a command, the user's changes applied; absent for none.
std::optional<Shortcut> shortcut(std::string_view id, const AppSettings& settings);
/// What runs each command, as Qt writes keys: its shortcut first, then its desktop keys. No key is
/// there twice.
std::map<std::string, std::vector<std::string>, std::less<>> keys(const AppSettings& settings);

/// As Qt writes keys: "Ctrl+Shift+H". Command is Ctrl on this desktop, Option is Alt and Control is
/// the key that Qt calls Meta. Empty for no key.
std::string portableText(const Shortcut& shortcut);
/// All keys that a shortcut stands for: "delete" is both Backspace, as it is called where the
/// table comes from, and Delete.
std::vector<std::string> portableTexts(const Shortcut& shortcut);

}  // namespace CommandRegistry

}  // namespace tarn
