#include "Tarn/model/records/SessionState.h"

#include <utility>

#include "TarnCore/base/JSONFields.h"

namespace tarn {

WindowSnapshot WindowSnapshot::of(Location location, bool showSidebar) {
    WindowSnapshot snapshot;
    snapshot.panes.push_back({std::move(location), std::nullopt});
    snapshot.showSidebar = showSidebar;
    return snapshot;
}

void to_json(JSON& json, const PaneSnapshot& pane) {
    json = JSON{{"location", pane.location}};
    JSONFields::write(json, "viewMode", pane.viewMode);
}

void from_json(const JSON& json, PaneSnapshot& pane) {
    JSONFields::read(json, "location", pane.location);
    JSONFields::read(json, "viewMode", pane.viewMode);
}

void to_json(JSON& json, const WindowSnapshot& window) {
    json = JSON{{"panes", window.panes},
                {"activePane", window.activePane},
                {"showSidebar", window.showSidebar},
                {"showInspector", window.showInspector}};
}

void from_json(const JSON& json, WindowSnapshot& window) {
    JSONFields::read(json, "panes", window.panes);
    JSONFields::read(json, "activePane", window.activePane);
    JSONFields::read(json, "showSidebar", window.showSidebar);
    JSONFields::read(json, "showInspector", window.showInspector);
}

void to_json(JSON& json, const SessionState& session) { json = JSON{{"windows", session.windows}}; }

void from_json(const JSON& json, SessionState& session) {
    JSONFields::read(json, "windows", session.windows);
}

}  // namespace tarn
