#pragma once

#include <string>

#include "Tarn/model/records/ViewMode.h"

namespace tarn {

class PaneModel;

/// A search that finds the same again, wherever it is run from.
struct SavedSearch {
    std::string text;
    SearchScopeSetting scope = SearchScopeSetting::home;  ///< Never the current folder.

    /// What a pane searches for now: without the words whose chips were taken away, and with the
    /// folder that is searched as a place in the text. Words that cannot be told apart stay.
    static SavedSearch of(const PaneModel& pane);

    bool operator==(const SavedSearch&) const = default;
};

}  // namespace tarn
