#include "TarnCore/platform/linux/TreeCopy.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace tarn {
namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;
constexpr unsigned factsMask = STATX_BASIC_STATS;
/// Folders above the present one that stay open.
constexpr std::size_t openLevels = 32;
constexpr std::size_t threads = 2;
/// A thread without work still hears of a pause or a cancel, and shows progress of the other.
constexpr std::chrono::milliseconds patience{50};

/// Trees that a kernel makes up, in which files have no end and no meaning elsewhere.
bool isMadeUp(int folder) {
    struct statfs facts;
    if (fstatfs(folder, &facts) != 0) return false;
    switch (facts.f_type) {
        case PROC_SUPER_MAGIC:
        case SYSFS_MAGIC:
        case DEBUGFS_MAGIC:
        case TRACEFS_MAGIC:
        case SECURITYFS_MAGIC:
        case CGROUP_SUPER_MAGIC:
        case CGROUP2_SUPER_MAGIC:
        case DEVPTS_SUPER_MAGIC:
        case BPF_FS_MAGIC:
            return true;
        default:
            return false;
    }
}

int statusOf(int descriptor, struct statx& facts) {
    return statx(descriptor, "", AT_EMPTY_PATH, factsMask, &facts) == 0 ? 0 : errno;
}

struct alignas(8) EntryBuffer : std::array<char, 32 * 1024> {};

}  // namespace

int TreeCopy::run(int sourceFolder, const char* name, int targetFolder, const char* targetName) {
    ItemCopier copier(context_);
    auto top = std::make_shared<CopiedFolder>();
    if (const int errnum = open(*top, sourceFolder, name, targetFolder, targetName, false))
        return errnum;
    context_.topID = top->targetID;
    if (const int errnum = copyEntries(*top, copier)) return errnum;
    if (top->children.empty()) {
        finish(std::move(top), copier);
        copier.ticker().flush();
        return 0;
    }
    stack_.push_back(top);
    finish(std::move(top), copier);
    if (context_.watch.reportsEachItem) {
        work(copier, true);
    } else {
        helpers_.forEach(threads, [&](std::size_t index) {
            if (index == 0) return work(copier, true);
            ItemCopier other(context_);
            work(other, false);
        });
    }
    return 0;
}

void TreeCopy::work(ItemCopier& copier, bool isCaller) {
    while (auto task = take(copier, isCaller)) {
        copyChild(std::move(*task), copier);
        const std::lock_guard lock(mutex_);
        --active_;
        wake_.notify_all();
    }
    copier.ticker().flush();
}

/// The next folder to copy; absent when all are done or the copy is over.
std::optional<TreeCopy::Task> TreeCopy::take(ItemCopier& copier, bool isCaller) {
    std::unique_lock lock(mutex_);
    for (;;) {
        if (context_.isOver()) {
            wake_.notify_all();
            return std::nullopt;
        }
        // A folder that is closed waits for one below it, which opens it again.
        for (auto at = stack_.rbegin(); at != stack_.rend(); ++at) {
            CopiedFolder& folder = **at;
            if (!folder.source && !folder.isLost) continue;
            Task task{*at, folder.children.c_str() + folder.next};
            folder.next += task.name.size() + 1;
            ++folder.users;
            if (folder.next >= folder.children.size()) stack_.erase(std::next(at).base());
            ++active_;
            return task;
        }
        if (active_ == 0) {
            wake_.notify_all();
            return std::nullopt;
        }
        if (!isCaller) {
            wake_.wait_for(lock, patience);
        } else if (wake_.wait_for(lock, patience) == std::cv_status::timeout) {
            lock.unlock();
            copier.ticker().flush();
            lock.lock();
        }
    }
}

void TreeCopy::copyChild(Task task, ItemCopier& copier) {
    auto folder = std::make_shared<CopiedFolder>();
    folder->name = std::move(task.name);
    folder->depth = task.parent->depth + 1;
    CopiedFolder& parent = *task.parent;
    int errnum = FileCopy::changedMeanwhile;
    if (!parent.isLost) {
        errnum = open(*folder, parent.source.get(), folder->name.c_str(), parent.target.get(),
                      folder->name.c_str(), parent.isPlain);
    }
    {
        const std::lock_guard lock(mutex_);
        --parent.users;
    }
    folder->parent = std::move(task.parent);
    if (errnum == 0) {
        closeAncestor(*folder);
        errnum = copyEntries(*folder, copier);
    }
    if (errnum != 0 && errnum != ECANCELED) context_.fail(folder->path(), errnum);
    if (!folder->children.empty() && !context_.isOver()) {
        const std::lock_guard lock(mutex_);
        stack_.push_back(folder);
        wake_.notify_all();
    }
    finish(std::move(folder), copier);
}

/// Opens the folder and makes its copy.
int TreeCopy::open(CopiedFolder& folder, int sourceFolder, const char* name, int targetFolder,
                   const char* targetName, bool targetIsPlain) {
    folder.source = FileDescriptor(openat(sourceFolder, name, folderFlags));
    if (!folder.source) {
        const bool isOther = errno == ENOTDIR || errno == ELOOP;
        return isOther ? FileCopy::changedMeanwhile : errno;
    }
    if (const int errnum = statusOf(folder.source.get(), folder.facts)) return errnum;
    const FileID sourceID = FileID::of(folder.facts);
    // The copy lies in what is being copied, by a way that the paths do not show.
    if (sourceID == context_.topID) return ELOOP;
    if (isMadeUp(folder.source.get())) return FileCopy::notCopyable;

    if (const int errnum =
            folder.makeTarget(targetFolder, targetName, targetIsPlain, context_.self))
        return errnum;
    folder.pair = &context_.record.pair(sourceID.device, folder.targetID.device);
    return 0;
}

/// Copies what is in the folder, and takes down the folders in it.
int TreeCopy::copyEntries(CopiedFolder& folder, ItemCopier& copier) {
    const std::unique_ptr<EntryBuffer> buffer(new EntryBuffer);
    std::size_t folders = 0;
    int errnum = 0;
    for (;;) {
        const long bytes =
            syscall(SYS_getdents64, folder.source.get(), buffer->data(), buffer->size());
        if (bytes < 0 && errno == EINTR) continue;
        if (bytes < 0) errnum = errno;
        if (bytes <= 0) break;
        for (long at = 0; at < bytes;) {
            if (context_.isOver()) return ECANCELED;
            const auto* entry = reinterpret_cast<const dirent64*>(buffer->data() + at);
            at += entry->d_reclen;
            const char* name = entry->d_name;
            if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
                continue;
            unsigned char type = entry->d_type;
            if (type == DT_UNKNOWN) {
                struct statx facts;
                if (statx(folder.source.get(), name, AT_SYMLINK_NOFOLLOW, STATX_TYPE, &facts) == 0)
                    type = static_cast<unsigned char>(IFTODT(facts.stx_mode));
            }
            if (type == DT_DIR) {
                folder.children += name;
                folder.children += '\0';
                ++folders;
                continue;
            }
            const int failure = copier.copy({folder.source.get(), name, type, folder.target.get(),
                                             name, folder.isPlain, folder.pair, &folder});
            if (failure != 0 && failure != ECANCELED) context_.fail(folder.pathOf(name), failure);
        }
    }
    folder.unfinished += folders;
    return errnum;
}

/// One part of the folder is done. When it was the last, the folder gets what is kept about it, and
/// so may those around it.
void TreeCopy::finish(FolderRef folder, ItemCopier& copier) {
    while (folder) {
        {
            const std::lock_guard lock(mutex_);
            if (--folder->unfinished > 0) return;
        }
        if (folder->target && folder->source && !context_.isOver()) {
            copier.facts().read(folder->source.get(), *folder->pair);
            if (!copier.facts().apply(
                    folder->source.get(), folder->facts,
                    {folder->target.get(), folder->isPlain, CopiedFolder::madeWith}, *folder->pair))
                context_.loseAttributes(context_.url(folder->path()));
            context_.record.remember(folder->facts);
        }
        const FolderRef parent = folder->parent;
        if (parent) {
            const std::lock_guard lock(mutex_);
            if (!parent->source && !parent->isLost) reopen(*parent, *folder);
        }
        folder->source.close();
        folder->target.close();
        folder = parent;
    }
}

/// With the mutex held.
void TreeCopy::reopen(CopiedFolder& parent, const CopiedFolder& child) const {
    parent.isLost = true;
    struct statx facts;
    parent.source = FileDescriptor(openat(child.source.get(), "..", folderFlags));
    if (!parent.source || statusOf(parent.source.get(), facts) != 0 ||
        FileID::of(facts) != FileID::of(parent.facts))
        return parent.source.close();
    parent.target = FileDescriptor(openat(child.target.get(), "..", folderFlags));
    if (!parent.target || statusOf(parent.target.get(), facts) != 0 ||
        FileID::of(facts) != parent.targetID) {
        parent.source.close();
        return parent.target.close();
    }
    parent.isLost = false;
}

void TreeCopy::closeAncestor(CopiedFolder& folder) {
    if (folder.depth <= openLevels) return;
    CopiedFolder* above = &folder;
    for (std::size_t i = 0; i < openLevels; ++i) above = above->parent.get();
    const std::lock_guard lock(mutex_);
    if (above->users > 0 || above->depth == 0) return;
    above->source.close();
    above->target.close();
}

}  // namespace tarn
