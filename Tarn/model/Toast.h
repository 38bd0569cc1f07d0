#pragma once

#include <optional>
#include <string>

#include <QtCore/QString>

#include "TarnCore/base/UUID.h"

namespace tarn {

/// A message that a window shows for a while, and perhaps a way to take back what it tells of.
struct Toast {
    UUID id = UUID::random();
    QString message;
    std::string symbol;  ///< Name of its icon.
    bool isError = false;
    bool undoable = false;       ///< With a button “Undo”.
    std::optional<UUID> undoID;  ///< The entry of the history that the button takes back.
};

}  // namespace tarn
