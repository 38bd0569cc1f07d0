#pragma once

#include <optional>
#include <string>
#include <vector>

#include <QtCore/QString>

#include "TarnCore/base/URL.h"

class QDropEvent;

namespace tarn {

class WindowOperations;

/// What dropping files on a folder would do.
///
/// On one disk they are moved, to another disk copied, into the Trash trashed; Ctrl copies and
/// Shift moves, wherever.
struct FileDrop {
    enum class Verb { copy, move, trash };

    std::vector<URL> urls;
    URL folder;
    Verb verb = Verb::copy;

    /// Absent when the drag carries no files, or when dropping them here makes no sense: on
    /// themselves, inside themselves, or where they are already. Touches no disk.
    static std::optional<FileDrop> of(const QDropEvent& event, const URL& folder);

    /// Tells the source what will happen.
    void accept(QDropEvent& event) const;
    /// “Move to “Documents””.
    QString label() const;
    std::string symbol() const;
    void perform(WindowOperations& operations) const;
};

}  // namespace tarn
