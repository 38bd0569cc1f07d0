#include "Tarn/model/records/FolderViewPrefs.h"

#include "TarnCore/base/JSONFields.h"

namespace tarn {

void to_json(JSON& json, const FolderViewPrefs& prefs) {
    json = JSON{{"viewMode", prefs.viewMode}, {"sort", prefs.sort}, {"iconSize", prefs.iconSize}};
    if (prefs.groupBy) json["groupBy"] = std::string(FileGrouping::rawValue(*prefs.groupBy));
}

void from_json(const JSON& json, FolderViewPrefs& prefs) {
    JSONFields::read(json, "viewMode", prefs.viewMode);
    JSONFields::read(json, "sort", prefs.sort);
    JSONFields::read(json, "iconSize", prefs.iconSize);
    std::optional<std::string> raw;
    JSONFields::read(json, "groupBy", raw);
    if (raw) prefs.groupBy = FileGrouping::fromRawValue(*raw);
}

}  // namespace tarn
