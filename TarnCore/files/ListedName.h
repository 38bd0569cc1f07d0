#pragma once

#include <string>

namespace tarn {

/// One name of a folder, with what the folder itself tells about it.
struct ListedName {
    std::string name;          ///< Any bytes.
    bool isDirectory = false;  ///< As in FileItem: a folder to enter, through a link or not.
    bool operator==(const ListedName&) const = default;
};

}  // namespace tarn
