#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/files/FileItem.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// Which values to read; each beyond `base` costs system calls per item.
struct ResourceKeys {
    /// What lies in attributes: the tags, and the date of arrival where one was kept; the creation
    /// time stands for it otherwise.
    bool tags = false;
    bool cloud = false;  ///< No file system here has a cloud state to tell, so it adds nothing.
    bool operator==(const ResourceKeys&) const = default;
};

/// Reads what FileItem::make needs for the children of one folder. Knows the folder's `.hidden`
/// list. Callable from several threads at once.
class ResourceReader {
public:
    explicit ResourceReader(const URL& folder);
    /// For who has seen all names of the folder: without a `.hidden` among them, none is looked
    /// for.
    ResourceReader(const URL& folder, bool hasHiddenList);
    ~ResourceReader();

    /// The values of a child whose attributes (of a link itself) were already read from the folder.
    /// `linkTargetIsDirectory` as in ResourceValues.
    ResourceValues values(const URL& child, std::string_view name, const FileAttributes& attributes,
                          std::optional<bool> linkTargetIsDirectory, ResourceKeys keys) const;

    /// The values of a child that nothing was read of yet. Absent when it cannot be looked at.
    std::optional<ResourceValues> values(const URL& child, ResourceKeys keys) const;

    /// A dot name, or one that the folder's `.hidden` file lists.
    bool isHidden(std::string_view name) const;

    /// The values of any path. Absent when it cannot be looked at.
    static std::optional<ResourceValues> read(const URL& url, ResourceKeys keys);

    /// Directory names that end in a bundle extension (".app", ".photoslibrary", …).
    static bool isPackageName(std::string_view name);

    /// The names of the tags of a file; none when it cannot be looked at.
    static std::vector<std::string> tags(const URL& url);

    /// Attribute in which we keep when an item came into its folder: seconds since 2001 in decimal.
    static constexpr std::string_view addedAttribute = "tarn.added";

    /// Longest `.hidden` file that is read, in bytes; what follows is not looked at.
    static constexpr std::size_t longestHiddenList = 4 << 20;

private:
    struct Hidden;
    std::shared_ptr<const Hidden> hidden_;
    /// Set once the disk has said that it keeps no attributes, so that the others are not asked.
    mutable std::atomic<bool> hasNoAttributes_ = false;
};

/// The names in a folder's `.hidden` file: one a line; blank lines do not count. Any bytes.
std::vector<std::string> parseHiddenList(std::string_view text);

}  // namespace tarn
