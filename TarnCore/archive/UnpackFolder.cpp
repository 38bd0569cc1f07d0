#include "TarnCore/archive/UnpackFolder.h"

#include <algorithm>
#include <system_error>

#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

FileSystem& files() { return *Platform::current().files; }

URL moveToFree(const URL& from, const URL& wanted) {
    for (;;) {
        const URL free = FileOps::uniqueURL(wanted);
        try {
            files().move(from, free);
            return free;
        } catch (const std::system_error& error) {
            // Another program was faster.
            if (error.code() != std::errc::file_exists) throw;
        }
    }
}

}  // namespace

UnpackFolder::UnpackFolder(const URL& parent) {
    const std::string name = ChangeJournal::temporaryName(".tarn-unpack-");
    url_ = parent.appending(name);
    try {
        journal_ = ChangeJournal::ofLeftovers(name);
        journal_->addFolder(parent);
    } catch (const std::system_error&) {
        // Without the note a crash leaves the folder behind, which costs no one a file.
    }
    files().createFolder(url_);
}

UnpackFolder::~UnpackFolder() {
    if (isMoved_) return;
    try {
        TreeRemoval how;
        how.unlocksFolders = true;
        if (files().removeTree(url_, how).kept > 0 && journal_) journal_->leaveToRepair();
    } catch (const std::system_error&) {
        // Gone already.
    }
}

std::vector<std::string> UnpackFolder::names() const {
    std::vector<std::string> names;
    const auto reader = files().openFolder(url_);
    for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
        for (const FolderEntry& entry : batch) names.emplace_back(entry.view());
    std::ranges::sort(names);
    return names;
}

void UnpackFolder::clear() {
    TreeRemoval how;
    how.unlocksFolders = true;
    for (const std::string& name : names()) files().removeTree(url_.appending(name), how);
}

URL UnpackFolder::moveOut(std::string_view path, const URL& wanted) {
    return moveToFree(url_.appending(path), wanted);
}

URL UnpackFolder::moveWhole(const URL& wanted) {
    URL moved = moveToFree(url_, wanted);
    isMoved_ = true;
    return moved;
}

}  // namespace tarn
