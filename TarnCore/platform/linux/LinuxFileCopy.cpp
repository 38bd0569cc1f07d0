#include "TarnCore/platform/linux/LinuxFileCopy.h"

#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/UUID.h"
#include "TarnCore/platform/linux/CopyContext.h"
#include "TarnCore/platform/linux/CopyRecord.h"
#include "TarnCore/platform/linux/FileBatch.h"
#include "TarnCore/platform/linux/FolderPath.h"
#include "TarnCore/platform/linux/ItemCopier.h"
#include "TarnCore/platform/linux/TreeCopy.h"
#include "TarnCore/platform/linux/TreeRemover.h"

namespace tarn {
namespace {

[[noreturn]] void fail(int errnum, const char* what) {
    throw std::system_error(errnum, std::generic_category(), what);
}

std::string nameOf(const URL& url) { return std::string(url.name()); }

bool exists(int folder, const std::string& name) {
    struct stat facts;
    return fstatat(folder, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
}

std::string temporaryName(const FileCopy::Watch& watch) {
    if (!watch.temporaryName.empty()) return watch.temporaryName;
    return std::string(FileCopy::temporaryPrefix) + UUID::random().string();
}

/// Below, a folder more costs more than the files.
constexpr std::size_t worthATemporaryFolder = 4;

/// A copy that is gone again unless it is kept.
class TemporaryCopy {
public:
    TemporaryCopy(std::shared_ptr<CopyTop> top, CopyRecord& record)
        : top_(std::move(top)), record_(record) {}
    ~TemporaryCopy() {
        if (isKept_) return;
        record_.forget(*top_);
        TreeRemover::removeOwn(top_->folder->get(), top_->name.c_str());
    }
    TemporaryCopy(const TemporaryCopy&) = delete;
    TemporaryCopy& operator=(const TemporaryCopy&) = delete;

    /// Gives it the name, or the next that is asked for.
    void publish(URL to, const FileCopy::Watch& watch) {
        const int folder = top_->folder->get();
        for (;;) {
            const std::string name = nameOf(to);
            const int errnum = renameNoReplace(folder, top_->name.c_str(), folder, name.c_str());
            if (errnum == 0) {
                record_.rename(*top_, name);
                isKept_ = true;
                return;
            }
            if (errnum != EEXIST || !watch.nextName) fail(errnum, "rename");
            to = watch.nextName(to);
        }
    }

private:
    const std::shared_ptr<CopyTop> top_;
    CopyRecord& record_;
    bool isKept_ = false;
};

}  // namespace

std::shared_ptr<FileCopy::Record> LinuxFileCopy::makeRecord(Purpose purpose) const {
    return std::make_shared<CopyRecord>(purpose);
}

FileCopy::Outcome LinuxFileCopy::copy(const URL& from, const URL& to, const Watch& watch) {
    if (from.isRoot()) fail(EBUSY, "copy");
    CopyRecord own(Purpose::copy);
    CopyRecord& record = watch.record ? static_cast<CopyRecord&>(*watch.record) : own;
    const FileDescriptor sourceFolder = openFolderPath(from.parent());
    const auto targetFolder = std::make_shared<const FileDescriptor>(openFolderPath(to.parent()));
    const std::string name = nameOf(from);
    struct statx facts;
    if (statx(sourceFolder.get(), name.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
              STATX_BASIC_STATS, &facts) != 0)
        fail(errno, "statx");
    if (!watch.nextName && exists(targetFolder->get(), nameOf(to))) fail(EEXIST, "copy");

    auto top = std::make_shared<CopyTop>();
    top->folder = targetFolder;
    top->name = temporaryName(watch);
    const std::string madeAs = top->name;
    TemporaryCopy copy(top, record);
    int ownFailure = 0;
    // What fails is the item itself, which is thrown, or something below it.
    Watch inner = watch;
    inner.failed = [&](const URL& source, int errnum) {
        if (source == from) {
            ownFailure = errnum;
        } else if (watch.failed) {
            watch.failed(source, errnum);
        }
    };
    CopyContext context(inner, record, top, from);
    if (S_ISDIR(facts.stx_mode)) {
        TreeCopy tree(context, helpers_);
        const int errnum =
            tree.run(sourceFolder.get(), name.c_str(), targetFolder->get(), madeAs.c_str());
        if (errnum != 0 && errnum != ECANCELED) context.fail({}, errnum);
    } else {
        ItemCopier copier(context);
        struct statx folderFacts;
        if (statx(targetFolder->get(), "", AT_EMPTY_PATH, STATX_BASIC_STATS, &folderFacts) != 0)
            fail(errno, "statx");
        const int errnum = copier.copy(
            {sourceFolder.get(), name.c_str(), static_cast<unsigned char>(IFTODT(facts.stx_mode)),
             targetFolder->get(), madeAs.c_str(), false,
             &record.pair(FileID::of(facts).device, FileID::of(folderFacts).device), nullptr});
        if (errnum != 0 && errnum != ECANCELED) context.fail({}, errnum);
        copier.ticker().flush();
    }
    if (const int fatal = context.fatal()) fail(fatal, "copy");
    if (ownFailure != 0) fail(ownFailure, "copy");
    if (context.isOver()) return Outcome::stopped;
    copy.publish(to, watch);
    return context.hasFailures() ? Outcome::partial : Outcome::complete;
}

FileCopy::Outcome LinuxFileCopy::copyFiles(std::span<FileOrder> files, const URL& folder,
                                           const Watch& watch) {
    if (files.size() < worthATemporaryFolder) return FileCopy::copyFiles(files, folder, watch);
    CopyRecord own(Purpose::copy);
    CopyRecord& record = watch.record ? static_cast<CopyRecord&>(*watch.record) : own;
    const FileDescriptor target = openFolderPath(folder);
    CopyContext context(watch, record);
    FileBatch(context, target.get(), temporaryName(watch)).run(files, helpers_);
    return context.isOver() ? Outcome::stopped : Outcome::complete;
}

bool LinuxFileCopy::flush(const URL& folder) {
    try {
        const FileDescriptor place = openFolderPath(folder);
        const FileDescriptor opened(openat(place.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        return opened && syncfs(opened.get()) == 0;
    } catch (const std::system_error&) {
        return false;
    }
}

void LinuxFileCopy::removeCopied(const URL& from, const Record& record) {
    const auto& copied = static_cast<const CopyRecord&>(record);
    const FileDescriptor folder = openFolderPath(from.parent());
    const TreeRemoval how;
    TreeRemover remover(
        how, [&](const struct statx& facts) { return copied.isCopied(facts); }, changedMeanwhile);
    try {
        const int errnum = remover.remove(folder.get(), nameOf(from).c_str()).errnum;
        if (errnum != 0) fail(errnum, "remove");
    } catch (const std::system_error& error) {
        if (error.code() != std::errc::no_such_file_or_directory) throw;  // Gone by itself.
    }
}

void LinuxFileCopy::remove(const URL& url) {
    const FileDescriptor folder = openFolderPath(url.parent());
    if (const int errnum = TreeRemover::removeOwn(folder.get(), nameOf(url).c_str()))
        fail(errnum, "remove");
}

}  // namespace tarn
