#include "TarnCore/ops/MoveAcrossDisks.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <vector>

#include "TarnCore/base/Text.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

[[noreturn]] void fail(int errnum) {
    throw std::system_error(errnum, std::generic_category(), "move");
}

FileSystem& files() { return *Platform::current().files; }

/// The path of something below a root; "" for the root.
std::string relative(const URL& url, const URL& root) {
    return url.path().substr(root.isRoot() ? 0 : root.path().size());
}

}  // namespace

TreeSnapshot::TreeSnapshot(const URL& root) : root_(root) { read(root); }

TreeSnapshot::Entry TreeSnapshot::entry(const URL& url, const FileAttributes& attributes) {
    Entry entry{attributes.type,    attributes.size,  attributes.modified,
                attributes.changed, attributes.inode, {}};
    if (attributes.type == FileType::symlink) entry.target = files().linkTarget(url);
    return entry;
}

void TreeSnapshot::read(const URL& root) {
    std::vector<URL> folders;
    const auto add = [&](const URL& url, const FileAttributes& attributes) {
        entries_.emplace(relative(url, root), entry(url, attributes));
        if (attributes.type == FileType::directory) folders.push_back(url);
    };
    add(root, files().requireAttributes(root, Links::keep));
    while (!folders.empty()) {
        const URL folder = std::move(folders.back());
        folders.pop_back();
        const auto reader = files().openFolder(folder);
        for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
            for (const FolderEntry& child : batch) {
                const auto attributes = reader->attributes(child.name, Links::keep);
                if (!attributes) fail(ENOENT);
                add(folder.appending(child.view()), *attributes);
            }
    }
}

bool TreeSnapshot::isCurrent() const {
    try {
        return TreeSnapshot(root_).entries_ == entries_;
    } catch (const std::system_error&) {
        return false;
    }
}

bool TreeSnapshot::isCopiedTo(const URL& copy) const {
    try {
        const TreeSnapshot other(copy);
        return other.entries_.size() == entries_.size() &&
               std::ranges::all_of(entries_, [&](const auto& pair) {
                   const auto found = other.entries_.find(pair.first);
                   if (found == other.entries_.end()) return false;
                   const Entry& ours = pair.second;
                   const Entry& theirs = found->second;
                   if (ours.type != theirs.type || ours.target != theirs.target) return false;
                   return ours.type != FileType::file || ours.size == theirs.size;
               });
    } catch (const std::system_error&) {
        return false;
    }
}

TreeRemoved TreeSnapshot::removeUnchanged() const {
    TreeRemoval how;
    how.mayRemove = [this](const URL& url, const FileAttributes& attributes) {
        const auto found = entries_.find(relative(url, root_));
        if (found == entries_.end()) return false;
        // Taking something out of a folder changes it, so for folders being empty is the test; and
        // a file changes, but for its date, when another name of it goes.
        if (attributes.type == FileType::directory) return found->second.type == attributes.type;
        return found->second.type == attributes.type && found->second.size == attributes.size &&
               found->second.modified == attributes.modified &&
               found->second.inode == attributes.inode;
    };
    return files().removeTree(root_, how);
}

void moveAcrossDisks(const URL& from, const URL& to) {
    const auto& copying = Platform::current().copying;
    if (!copying) fail(EXDEV);
    const TreeSnapshot source(from);
    int firstFailure = 0;
    const FileCopy::Watch watch{[](std::int64_t, std::int64_t) { return true; },
                                [&](const URL&, int errnum) {
                                    if (firstFailure == 0) firstFailure = errnum;
                                }};
    const FileCopy::Outcome outcome = copying->copy(from, to, watch);
    int problem = 0;
    if (outcome != FileCopy::Outcome::complete)
        problem = firstFailure ? firstFailure : EIO;
    else if (!source.isCurrent())
        problem = EBUSY;  // Someone works on it, so the copy may be of a moment in between.
    else if (!source.isCopiedTo(to) || !copying->flush(to))
        problem = EIO;
    if (problem == 0) {
        const TreeRemoved removed = source.removeUnchanged();
        if (removed.kept == 0) return;
        problem = removed.errnum ? removed.errnum : EBUSY;
        if (removed.removed > 0)
            throw FileOpError::failed("Copied " + Text::quoted(from.name()) +
                                      " but couldn’t remove the original. " +
                                      FileOps::friendly(problem, "remove it"));
    }
    files().removeTree(to);
    fail(problem);
}

}  // namespace tarn
