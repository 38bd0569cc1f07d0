#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>

#include "Tarn/model/records/Shortcut.h"

namespace tarn {

/// What is known of a command without running it.
struct CommandRecord {
    std::string_view id;  ///< Stable: stored with shortcuts that the user changed.
    std::string_view title;
    std::string_view group;   ///< "Go", "View", "File" or "Window": the menu it is in.
    std::string_view symbol;  ///< Name of its icon.
    bool needsSelection = false;
    bool needsFolder = false;  ///< Only where the active pane shows a real folder.
    Shortcut shortcut;         ///< Before the user changes it; an empty key for none.
};

/// Every command there is. Any thread.
namespace CommandList {

/// In the order of the menus and of the palette.
std::span<const CommandRecord> all();
/// Null when there is no such command.
const CommandRecord* find(std::string_view id);

/// Keys of another kind that a person may choose, by command id; an empty key takes one away.
const std::map<std::string, Shortcut, std::less<>>& finderPreset();

/// Counts the changes that were made to the shortcuts of all().
inline constexpr int defaultsVersion = 2;

}  // namespace CommandList

}  // namespace tarn
