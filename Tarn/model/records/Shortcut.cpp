#include "Tarn/model/records/Shortcut.h"

#include "TarnCore/base/JSONFields.h"

namespace tarn {

void to_json(JSON& json, const Shortcut& shortcut) {
    json = JSON{{"key", shortcut.key},
                {"command", shortcut.command},
                {"shift", shortcut.shift},
                {"option", shortcut.option},
                {"control", shortcut.control}};
}

void from_json(const JSON& json, Shortcut& shortcut) {
    JSONFields::read(json, "key", shortcut.key);
    JSONFields::read(json, "command", shortcut.command);
    JSONFields::read(json, "shift", shortcut.shift);
    JSONFields::read(json, "option", shortcut.option);
    JSONFields::read(json, "control", shortcut.control);
}

}  // namespace tarn
