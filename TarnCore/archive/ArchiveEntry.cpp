#include "TarnCore/archive/ArchiveEntry.h"

#include "TarnCore/base/JSONFields.h"

namespace tarn {

std::string_view ArchiveEntry::name() const {
    return std::string_view(path).substr(path.rfind('/') + 1);
}

std::string_view ArchiveEntry::parent() const {
    const std::size_t slash = path.rfind('/');
    return slash == path.npos ? std::string_view() : std::string_view(path).substr(0, slash);
}

void to_json(JSON& json, const ArchiveEntry& entry) {
    json = {{"path", entry.path}, {"isDirectory", entry.isDirectory}, {"size", entry.size}};
    JSONFields::write(json, "modified", entry.modified);
}

}  // namespace tarn
