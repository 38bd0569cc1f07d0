#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/URL.h"
#include "TarnCore/base/UUID.h"

namespace tarn {

/// What a start of the program, or another program, asks of the one that runs. A value.
struct AppRequest {
    /// A window for each: on a folder, or on the folder of a file with it selected.
    std::vector<URL> paths = {};
    /// Folders to show; a tab that shows one already comes to the front.
    std::vector<URL> folders = {};
    /// To be shown selected in the folders that hold them, folders too.
    std::vector<URL> items = {};
    /// The same, with all that is known of them.
    std::vector<URL> properties = {};
    std::optional<UUID> workspace = {};
    bool wantsWindow = false;       ///< A new one, on the home.
    bool wantsQuickSearch = false;  ///< The panel.
    /// The bus has started the program; what it shall do comes through the bus.
    bool isService = false;
    /// By which the desktop lets a window come to the front (xdg-activation); may be empty.
    std::string activationToken = {};

    /// Nothing is asked for but that the program be there.
    bool isPlain() const;

    bool operator==(const AppRequest&) const = default;

    /// What the words behind the name of the program ask for; relative paths are taken from `here`.
    /// Throws tarn::Error for an option that there is not.
    static AppRequest parse(const std::vector<std::string>& words, const URL& here);

    /// The place that another program means: a "file:" URI, an absolute path, or "trash:///", which
    /// is the folder of the Trash. Absent for anything else.
    static std::optional<URL> place(std::string_view uri);
};

}  // namespace tarn
