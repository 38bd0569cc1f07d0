#include "TarnCore/platform/linux/FileBatch.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <sys/stat.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/platform/linux/FolderPath.h"
#include "TarnCore/platform/linux/TreeRemover.h"

namespace tarn {
namespace {

constexpr std::size_t threads = 2;
/// For fewer, waking the other thread costs more than it does.
constexpr std::size_t worthAnotherThread = 8;

}  // namespace

/// Where one thread copies from and to.
class FileBatch::Place {
public:
    Place(CopyContext& context, int targetFolder, std::string name)
        : context_(context), targetFolder_(targetFolder), name_(std::move(name)) {}
    ~Place() {
        if (temporary_.target && unlinkat(targetFolder_, name_.c_str(), AT_REMOVEDIR) != 0)
            TreeRemover::removeOwn(targetFolder_, name_.c_str());
    }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    /// Returns 0 or the errno.
    int copy(const FileCopy::FileOrder& file, ItemCopier& copier) {
        if (const int errnum = open(file.from.parent())) return errnum;
        const std::string source(file.from.name());
        const char* name = file.name.c_str();
        const int temporary = temporary_.target.get();
        if (const int errnum = copier.copy({source_.get(), source.c_str(), DT_REG, temporary, name,
                                            temporary_.isPlain, pair_, nullptr, &file.from}))
            return errnum;
        const int errnum = renameNoReplace(temporary, name, targetFolder_, name);
        if (errnum != 0) unlinkat(temporary, name, 0);
        return errnum;
    }

private:
    int open(const URL& folder) {
        if (source_ && folder == sourceURL_) return 0;
        source_.close();
        struct statx facts;
        try {
            source_ = openFolderPath(folder);
        } catch (const std::system_error& error) {
            return error.code().value();
        }
        if (statx(source_.get(), "", AT_EMPTY_PATH, STATX_BASIC_STATS, &facts) != 0) return errno;
        if (!temporary_.target) {
            if (const int errnum = makeTemporary()) return errnum;
        }
        pair_ = &context_.record.pair(FileID::of(facts).device, temporary_.targetID.device);
        sourceURL_ = folder;
        return 0;
    }
    int makeTemporary() {
        if (const int errnum =
                temporary_.makeTarget(targetFolder_, name_.c_str(), false, context_.self))
            return errnum;
        // Where new files get the group of the folder they also get it on this way.
        struct statx around;
        if (statx(targetFolder_, "", AT_EMPTY_PATH, STATX_MODE, &around) != 0) return errno;
        if ((around.stx_mode & S_ISGID) != 0) {
            temporary_.isPlain = false;
            fchmod(temporary_.target.get(), CopiedFolder::madeWith | S_ISGID);
        }
        return 0;
    }

    CopyContext& context_;
    const int targetFolder_;
    const std::string name_;
    CopiedFolder temporary_;
    URL sourceURL_;
    FileDescriptor source_;
    CopyPair* pair_ = nullptr;
};

void FileBatch::run(std::span<FileCopy::FileOrder> files, TaskPool& helpers) {
    if (context_.watch.reportsEachItem || files.size() < worthAnotherThread) return work(files, 0);
    helpers.forEach(threads, [&](std::size_t worker) { work(files, worker); });
}

void FileBatch::work(std::span<FileCopy::FileOrder> files, std::size_t worker) {
    ItemCopier copier(context_);
    Place place(context_, targetFolder_, temporaryName_ + "-" + std::to_string(worker));
    while (!context_.isOver()) {
        const std::size_t at = next_.fetch_add(1, std::memory_order_relaxed);
        if (at >= files.size()) break;
        files[at].errnum = place.copy(files[at], copier);
    }
    copier.ticker().flush();
}

}  // namespace tarn
