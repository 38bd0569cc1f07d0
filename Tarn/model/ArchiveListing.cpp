#include "Tarn/model/ArchiveListing.h"

#include <algorithm>

#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/platform/Platform.h"

namespace tarn::ArchiveListing {
namespace {

FileItem item(const URL& archive, const ArchiveEntry& entry) {
    ResourceValues values;
    values.name = std::string(entry.name());
    values.isDirectory = entry.isDirectory;
    values.fileSize = entry.size;
    values.modified = entry.modified;
    values.contentType = entry.isDirectory ? std::string(ContentType::folder)
                                           : Platform::current().types->typeForName(entry.name());
    return FileItem::make(url(archive, entry.path), std::move(values));
}

/// What no folder can hold: it would name another place.
bool isNoName(std::string_view name) { return name.empty() || name == "." || name == ".."; }

}  // namespace

SharedRows rows(const URL& archive, const std::string& inside,
                const std::vector<ArchiveEntry>& entries, bool includeHidden,
                const SortOrder& sort) {
    std::vector<FileItem> items;
    for (const ArchiveEntry& entry : ArchiveReader::children(inside, entries)) {
        if (isNoName(entry.name())) continue;
        FileItem made = item(archive, entry);
        if (!made.isHidden || includeHidden) items.push_back(std::move(made));
    }
    return std::make_shared<const PaneRows>(sort.sort(std::move(items)));
}

bool hasFolder(std::string_view inside, const std::vector<ArchiveEntry>& entries) {
    return inside.empty() ||
           std::any_of(entries.begin(), entries.end(), [inside](const ArchiveEntry& entry) {
               return entry.isDirectory && entry.path == inside;
           });
}

URL url(const URL& archive, const std::string& member) { return archive.appending(member); }

std::optional<std::string> member(const URL& archive, const URL& row) {
    if (row == archive || !row.isInside(archive)) return std::nullopt;
    return row.path().substr(archive.path().size() + 1);
}

}  // namespace tarn::ArchiveListing
