#pragma once

#include <optional>
#include <vector>

#include "Tarn/model/records/Location.h"
#include "Tarn/model/records/ViewMode.h"
#include "TarnCore/base/JSON.h"

namespace tarn {

struct PaneSnapshot {
    Location location;
    std::optional<ViewMode> viewMode;
    bool operator==(const PaneSnapshot&) const = default;
};

/// What a window shows, frozen.
struct WindowSnapshot {
    std::vector<PaneSnapshot> panes;
    int activePane = 0;
    bool showSidebar = true;
    bool showInspector = false;

    /// One pane, shown as the place is by default.
    static WindowSnapshot of(Location location, bool showSidebar = true);
    bool operator==(const WindowSnapshot&) const = default;
};

/// "session.json": every open window, each a list of tabs in their order.
struct SessionState {
    std::vector<std::vector<WindowSnapshot>> windows;
    bool operator==(const SessionState&) const = default;
};

void to_json(JSON& json, const PaneSnapshot& pane);
void from_json(const JSON& json, PaneSnapshot& pane);
void to_json(JSON& json, const WindowSnapshot& window);
void from_json(const JSON& json, WindowSnapshot& window);
void to_json(JSON& json, const SessionState& session);
void from_json(const JSON& json, SessionState& session);

}  // namespace tarn
