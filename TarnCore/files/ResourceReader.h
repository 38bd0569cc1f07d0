#pragma once

#include <memory>
#include <optional>
#include <string>

#include "TarnCore/files/FileItem.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// Which values to read; each beyond `base` costs system calls per item.
struct ResourceKeys {
    bool tags = false;
    bool cloud = false;
    bool operator==(const ResourceKeys&) const = default;
};

/// Reads what FileItem::make needs for the children of one folder. Knows the folder's `.hidden`
/// list. Callable from several threads at once, as long as the FolderReader given is not shared.
class ResourceReader {
public:
    explicit ResourceReader(const URL& folder);
    ~ResourceReader();

    /// The values of a child whose attributes were already read from the folder. `isLinkToFolder`
    /// as in ResourceValues.
    ResourceValues values(const URL& child, std::string_view name, const FileAttributes& attributes,
                          std::optional<bool> linkTargetIsDirectory, ResourceKeys keys) const;

    bool isHidden(std::string_view name) const;

    /// The values of any path. Absent when it cannot be looked at.
    static std::optional<ResourceValues> read(const URL& url, ResourceKeys keys);

    /// Directory names that end in a bundle extension (".app", ".photoslibrary", …).
    static bool isPackageName(std::string_view name);

private:
    struct Hidden;
    std::shared_ptr<const Hidden> hidden_;
};

/// The names in a folder's `.hidden` file: one a line; blank lines do not count. Any bytes.
std::vector<std::string> parseHiddenList(std::string_view text);

}  // namespace tarn
