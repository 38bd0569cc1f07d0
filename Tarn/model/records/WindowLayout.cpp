#include "Tarn/model/records/WindowLayout.h"

#include "TarnCore/base/JSONFields.h"

namespace tarn {

void to_json(JSON& json, const WindowLayout& layout) {
    json = JSON{{"width", layout.width},
                {"height", layout.height},
                {"isMaximized", layout.isMaximized},
                {"sidebarWidth", layout.sidebarWidth},
                {"inspectorWidth", layout.inspectorWidth},
                {"currentTab", layout.currentTab},
                {"foldedSections", layout.foldedSections}};
}

void from_json(const JSON& json, WindowLayout& layout) {
    JSONFields::read(json, "width", layout.width);
    JSONFields::read(json, "height", layout.height);
    JSONFields::read(json, "isMaximized", layout.isMaximized);
    JSONFields::read(json, "sidebarWidth", layout.sidebarWidth);
    JSONFields::read(json, "inspectorWidth", layout.inspectorWidth);
    JSONFields::read(json, "currentTab", layout.currentTab);
    JSONFields::read(json, "foldedSections", layout.foldedSections);
}

}  // namespace tarn
