#pragma once

#include <functional>
#include <string_view>

namespace tarn {

class WindowModel;

/// One thing the user can do, reached through a menu, the palette or a shortcut.
struct TarnCommand {
    std::string_view id;  ///< Stable: stored with shortcuts that the user changed.
    std::string_view title;
    std::string_view symbol;  ///< Name of its icon.
    std::string_view group;   ///< "Go", "View", "File" or "Window": the menu it is in.
    bool needsSelection = false;
    bool needsFolder = false;               ///< Only where the active pane shows a real folder.
    std::function<void(WindowModel&)> run;  ///< Main thread; empty while it is unavailable.
    /// Why it cannot be run anywhere yet, as a finished sentence before translation; empty for one
    /// that can.
    std::string_view unavailable;
};

}  // namespace tarn
