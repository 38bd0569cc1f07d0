#pragma once

#include <string>
#include <string_view>

namespace tarn {

/// One name of a folder, with what the folder itself tells about it.
struct ListedName {
    std::string name;          ///< Any bytes.
    bool isDirectory = false;  ///< As in FileItem: a folder to enter, through a link or not.
    bool operator==(const ListedName&) const = default;
};

/// The same, of a name that something else keeps.
struct ListedNameView {
    std::string_view name;
    bool isDirectory = false;
};

}  // namespace tarn
