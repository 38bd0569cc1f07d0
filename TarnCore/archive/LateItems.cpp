#include "TarnCore/archive/LateItems.h"

#include <cerrno>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/ArchiveError.h"

namespace tarn {

const LateItems::Link* LateItems::link(const std::string& path) const {
    const auto found = links_.find(path);
    return found == links_.end() ? nullptr : &found->second;
}

void LateItems::make(TreeWriter& writer) const {
    for (const auto& [path, facts] : folders_) {
        try {
            writer.createFolder(path);
        } catch (const std::system_error& error) {
            rethrow(error, path);
        }
    }
    for (const auto& [path, link] : links_) {
        try {
            writer.createLink(path, link.target, link.modified);
        } catch (const std::system_error& error) {
            rethrow(error, path);
        }
    }
    // A folder's path is the beginning of those in it, so backwards is inside out.
    for (auto folder = folders_.rbegin(); folder != folders_.rend(); ++folder)
        writer.finishFolder(folder->first, folder->second);
}

void LateItems::rethrow(const std::system_error& error, std::string_view path) {
    switch (error.code().value()) {
        case EEXIST:
        case EISDIR:
        case ENOTDIR:
        case ELOOP:
            throw ArchiveError::unreadable("It holds two different items called " +
                                           Text::quoted(Text::sanitized(path)) + ".");
        case EXDEV:
            throw ArchiveError::leadsOut(path);
        default:
            throw error;
    }
}

}  // namespace tarn
