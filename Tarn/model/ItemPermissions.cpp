#include "Tarn/model/ItemPermissions.h"

#include <optional>

#include "Tarn/model/DisplayText.h"
#include "TarnCore/ops/Permissions.h"
#include "TarnCore/platform/FileMode.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

QString accessText(const FileMode::Access& access, bool isFolder) {
    // Names that cannot be gone to are of no use.
    if (isFolder && !access.runs) return ItemPermissions::tr("No access");
    if (access.reads && access.writes && access.runs && !isFolder)
        return ItemPermissions::tr("Read, write and run");
    if (access.reads && access.writes) return ItemPermissions::tr("Read and write");
    if (access.reads && access.runs && !isFolder) return ItemPermissions::tr("Read and run");
    if (access.reads) return ItemPermissions::tr("Read only");
    if (access.writes) return ItemPermissions::tr("Write only");
    if (access.runs && !isFolder) return ItemPermissions::tr("Run only");
    return ItemPermissions::tr("No access");
}

}  // namespace

ItemPermissions ItemPermissions::read(const std::vector<URL>& urls) {
    ItemPermissions found;
    found.all = ~0U;
    found.canChange = true;
    std::optional<std::uint32_t> owner;
    std::optional<std::uint32_t> group;
    bool hasOwners = false;
    bool hasGroups = false;
    for (const URL& url : urls) {
        const auto item = Platform::current().files->attributes(url, Links::follow);
        if (!item) continue;
        const bool isFolder = item->type == FileType::directory;
        ++found.count;
        found.all &= item->mode;
        found.any |= item->mode;
        (isFolder ? found.hasFolders : found.hasFiles) = true;
        found.canChange &= FileMode::canSet(*item);
        hasOwners |= owner.value_or(item->owner) != item->owner;
        hasGroups |= group.value_or(item->group) != item->group;
        owner = item->owner;
        group = item->group;
        if (urls.size() == 1) found.access = accessText(FileMode::access(url), isFolder);
    }
    if (found.count == 0) return {};
    if (!hasOwners) found.owner = displayText(FileMode::userName(*owner));
    if (!hasGroups) found.group = displayText(FileMode::groupName(*group));
    return found;
}

QString ItemPermissions::bits() const {
    const std::string common = Permissions::text(all);
    std::string text = Permissions::text(any);
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != common[i]) text[i] = '?';
    return QString::fromStdString(text);
}

}  // namespace tarn
