#pragma once

#include <string>

#include "TarnCore/base/JSON.h"

namespace tarn {

/// The keys that run a command.
struct Shortcut {
    /// One character in lower case, or "up", "down", "left", "right", "delete"; empty for none.
    std::string key;
    bool command = false;
    bool shift = false;
    bool option = false;
    bool control = false;
    bool operator==(const Shortcut&) const = default;
};

void to_json(JSON& json, const Shortcut& shortcut);
void from_json(const JSON& json, Shortcut& shortcut);

}  // namespace tarn
