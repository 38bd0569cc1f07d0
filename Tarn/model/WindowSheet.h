#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Tarn/model/DriveService.h"
#include "Tarn/model/records/Favorite.h"
#include "Tarn/model/records/SmartFolder.h"
#include "Tarn/model/records/ViewMode.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// The one question that a window puts before everything else in it.
struct WindowSheet {
    enum class Which {
        batchRename,
        eject,
        newSmartFolder,
        newTag,
        imageAction,
        renameFavorite,
        connectServer,
        saveWorkspace,
        permissions,
        feedback,
        goToFolder
    };
    Which which = Which::batchRename;
    std::vector<URL> urls;  ///< The files that it concerns, in the order they are shown.
    /// The query of `newSmartFolder`, the action of `imageAction`, the address of `connectServer`.
    std::string text = {};
    SearchScopeSetting scope = SearchScopeSetting::home;  ///< Of `newSmartFolder`.
    std::optional<Favorite> favorite = std::nullopt;      ///< Of `renameFavorite`.
    /// Of `newSmartFolder`, which changes it then.
    std::optional<SmartFolder> smartFolder = std::nullopt;
    std::optional<Volume> volume = std::nullopt;  ///< Of `eject`.
    std::vector<BlockingProcess> processes = {};  ///< What keeps `volume` busy.
    std::string message = {};                     ///< Why it could not be ejected.
    bool operator==(const WindowSheet&) const = default;
};

}  // namespace tarn
