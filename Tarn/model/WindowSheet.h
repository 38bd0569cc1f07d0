#pragma once

#include <vector>

#include "TarnCore/base/URL.h"

namespace tarn {

/// The one question that a window puts before everything else in it.
struct WindowSheet {
    enum class Which { batchRename, newTag };
    Which which = Which::batchRename;
    std::vector<URL> urls;  ///< The files that it concerns, in the order they are shown.
    bool operator==(const WindowSheet&) const = default;
};

}  // namespace tarn
