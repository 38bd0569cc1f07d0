#pragma once

#include <string>
#include <vector>

#include "TarnCore/base/JSON.h"

namespace tarn {

/// How large a window and its parts are, in logical pixels, and which tab is in front; 0 where
/// nothing was remembered. One for each window of the session, in its order: "window-layouts.json".
struct WindowLayout {
    int width = 0;
    int height = 0;
    bool isMaximized = false;
    int sidebarWidth = 0;
    int inspectorWidth = 0;
    int currentTab = 0;
    std::vector<std::string> foldedSections = {};  ///< Of the sidebar, by their names.
    bool operator==(const WindowLayout&) const = default;
};

void to_json(JSON& json, const WindowLayout& layout);
void from_json(const JSON& json, WindowLayout& layout);

}  // namespace tarn
