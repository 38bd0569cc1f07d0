#include "TarnCore/platform/linux/ItemCopier.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <string>
#include <utility>

#include <linux/fs.h>
#include <sys/ioctl.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "TarnCore/base/FileIO.h"

namespace tarn {
namespace {

constexpr int readFlags = O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
constexpr int createFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
constexpr unsigned factsMask = STATX_BASIC_STATS;
/// A progress and cancel point every few milliseconds.
constexpr std::int64_t chunk = 8 << 20;
/// A file that changes while it is read is read again, if that takes no time.
constexpr std::int64_t quicklyReadAgain = 8 << 20;
constexpr int mostAttempts = 3;

int statusOf(int descriptor, struct statx& facts) {
    return statx(descriptor, "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC, factsMask, &facts) == 0
               ? 0
               : errno;
}

bool isSameVersion(const struct statx& a, const struct statx& b) {
    return a.stx_size == b.stx_size && a.stx_mtime.tv_sec == b.stx_mtime.tv_sec &&
           a.stx_mtime.tv_nsec == b.stx_mtime.tv_nsec;
}

std::int64_t sizeOf(const struct statx& facts) { return static_cast<std::int64_t>(facts.stx_size); }

/// It may have holes, or is compressed.
bool isSparse(const struct statx& facts) {
    return static_cast<std::int64_t>(facts.stx_blocks) * 512 < sizeOf(facts);
}

/// Files that a kernel makes up say that they are empty.
bool saysItIsEmpty(const struct statx& facts) {
    return facts.stx_size == 0 && facts.stx_blocks == 0;
}

/// Bytes read; -1 with errno. Fewer than `enough` only at the end of the file, which is not looked
/// for behind that.
ssize_t readFully(int file, char* to, std::size_t count, std::size_t enough, std::int64_t at) {
    std::size_t done = 0;
    while (done < enough) {
        const ssize_t got = pread(file, to + done, count - done, at + static_cast<off_t>(done));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return -1;
        if (got == 0) break;
        done += static_cast<std::size_t>(got);
    }
    return static_cast<ssize_t>(done);
}

/// It will fail for the next file of the two disks, too.
bool isNever(int errnum) {
    return errnum == EOPNOTSUPP || errnum == EXDEV || errnum == ENOSYS || errnum == ENOTTY;
}

/// What other threads wait for is settled in every case.
class Claim {
public:
    Claim(CopyRecord& record, FileID source) : record_(record), source_(source) {}
    ~Claim() { record_.settle(source_, std::move(place)); }
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;
    std::optional<CopyRecord::Place> place;

private:
    CopyRecord& record_;
    FileID source_;
};

}  // namespace

ItemCopier::ItemCopier(CopyContext& context)
    : context_(context),
      ticker_(context),
      buffers_(context.record.takeBuffers()),
      facts_(context.self, *buffers_) {}

ItemCopier::~ItemCopier() { context_.record.giveBack(std::move(buffers_)); }

URL ItemCopier::url(const Item& item) const {
    if (item.source) return *item.source;
    return item.folder ? context_.url(item.folder->pathOf(item.name)) : context_.source;
}

int ItemCopier::copy(const Item& item) {
    told_ = 0;
    int errnum = 0;
    if (item.type == DT_REG) {
        errnum = copyFile(item);
    } else {
        struct statx facts;
        if (statx(item.sourceFolder, item.name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, factsMask,
                  &facts) != 0) {
            errnum = errno;
        } else if (S_ISREG(facts.stx_mode)) {
            errnum = copyFile(item);
        } else if (S_ISLNK(facts.stx_mode)) {
            errnum = copyLink(item, facts);
        } else if (S_ISFIFO(facts.stx_mode)) {
            errnum = copyPipe(item, facts);
        } else {
            errnum = S_ISDIR(facts.stx_mode) ? FileCopy::changedMeanwhile : FileCopy::notCopyable;
        }
    }
    if (errnum == 0) ticker_.add(0, 1);
    return errnum;
}

int ItemCopier::copyFile(const Item& item) {
    const FileDescriptor source(openat(item.sourceFolder, item.name, readFlags));
    if (!source) return errno == ELOOP ? FileCopy::changedMeanwhile : errno;
    struct statx facts;
    if (const int errnum = statusOf(source.get(), facts)) return errnum;
    if (!S_ISREG(facts.stx_mode)) return FileCopy::changedMeanwhile;

    std::optional<Claim> claim;
    if (facts.stx_nlink > 1 && context_.top) {
        const FileID id = FileID::of(facts);
        if (const auto place = context_.record.claim(id)) {
            if (makeName(item, *place)) {
                context_.record.remember(facts);
                return ticker_.add(sizeOf(facts), 0) ? 0 : ECANCELED;
            }
            // Too many names for this disk, or it knows none: a copy of its own.
        } else {
            claim.emplace(context_.record, id);
        }
    }
    int errnum = copyVersion(item, source.get(), facts);
    for (int attempt = 1; errnum == FileCopy::changedMeanwhile && attempt < mostAttempts &&
                          sizeOf(facts) <= quicklyReadAgain;
         ++attempt) {
        if (const int failure = statusOf(source.get(), facts)) return failure;
        errnum = copyVersion(item, source.get(), facts);
    }
    if (errnum == 0 && claim) {
        claim->place = CopyRecord::Place{
            context_.top, item.folder ? item.folder->pathOf(item.name) : std::string(), made_};
    }
    return errnum;
}

/// Copies the file as it is when it has these facts, or fails with changedMeanwhile.
int ItemCopier::copyVersion(const Item& item, int source, const struct statx& facts) {
    facts_.read(source, *item.pair);
    const std::int64_t size = sizeOf(facts);
    const bool isSmall = size < static_cast<std::int64_t>(CopyBuffers::dataSize) &&
                         !isSparse(facts) &&
                         (size == 0 || !item.pair->clones.load(std::memory_order_relaxed));
    bool isEndless = false;
    if (isSmall) {
        // One byte more than it should have tells a file that has grown.
        const auto expected = static_cast<std::size_t>(size);
        const ssize_t got = readFully(source, buffers_->data.data(), expected + 1,
                                      std::max<std::size_t>(expected, 1), 0);
        if (got < 0) return errno;
        isEndless = got > size && saysItIsEmpty(facts);
        if (got != size && !isEndless) return FileCopy::changedMeanwhile;
    }

    const mode_t mode = facts_.creationMode(facts, item.isPlain);
    FileDescriptor target(openat(item.targetFolder, item.targetName, createFlags, mode));
    if (!target) return errno;
    int errnum = 0;
    if (isEndless) {
        errnum = readAndWrite(source, target.get(), 0, std::numeric_limits<std::int64_t>::max());
    } else if (isSmall) {
        errnum = FileIO::writeAllAt(target.get(),
                                    {buffers_->data.data(), static_cast<std::size_t>(size)}, 0);
        if (errnum == 0 && !ticker_.add(size - told_, 0)) errnum = ECANCELED;
        told_ = size;
    } else {
        errnum = copyBytes(item, source, target.get(), facts);
    }
    bool keptAll = true;
    struct statx after;
    if (errnum == 0) errnum = statusOf(source, after);
    if (errnum == 0 && !isSameVersion(facts, after)) errnum = FileCopy::changedMeanwhile;
    if (errnum == 0) {
        keptAll = facts_.apply(source, facts, {target.get(), item.isPlain, mode}, *item.pair);
        if (facts.stx_nlink > 1) {
            errnum = statusOf(target.get(), after);
            made_ = FileID::of(after);
        }
    }
    // A server may say only now that there is no room.
    if (::close(target.release()) != 0 && errnum == 0 && errno != EINTR) errnum = errno;
    if (errnum != 0) {
        unlinkat(item.targetFolder, item.targetName, 0);
        return errnum;
    }
    if (!keptAll) context_.loseAttributes(url(item));
    context_.record.remember(facts);
    return 0;
}

int ItemCopier::copyBytes(const Item& item, int source, int target, const struct statx& facts) {
    const std::int64_t size = sizeOf(facts);
    CopyPair& pair = *item.pair;
    written_ = 0;
    if (size > 0 && pair.clones.load(std::memory_order_relaxed)) {
        if (ioctl(target, FICLONE, source) == 0) return tick(target, size) ? 0 : ECANCELED;
        if (isNever(errno)) pair.clones = false;
    }
    if (!isSparse(facts)) return copySegment(pair, source, target, 0, size);
    if (const int errnum = copySegments(item, source, target, size)) return errnum;
    if (ftruncate(target, size) != 0) return errno;
    return tick(target, size) ? 0 : ECANCELED;
}

/// Only what is not a hole.
int ItemCopier::copySegments(const Item& item, int source, int target, std::int64_t size) {
    for (std::int64_t at = 0; at < size;) {
        const std::int64_t begin = lseek(source, at, SEEK_DATA);
        if (begin < 0 && errno == ENXIO) return 0;
        if (begin < 0) return copySegment(*item.pair, source, target, at, size);
        std::int64_t end = lseek(source, begin, SEEK_HOLE);
        if (end < 0) end = size;
        end = std::min(end, size);
        if (!tick(target, begin)) return ECANCELED;
        if (const int errnum = copySegment(*item.pair, source, target, begin, end)) return errnum;
        at = std::max(end, begin);
    }
    return 0;
}

int ItemCopier::copySegment(CopyPair& pair, int source, int target, std::int64_t at,
                            std::int64_t end) {
    while (at < end && pair.copiesRanges.load(std::memory_order_relaxed)) {
        off_t in = at, out = at;
        const ssize_t count = copy_file_range(
            source, &in, target, &out, static_cast<std::size_t>(std::min(chunk, end - at)), 0);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            if (errno == ENOSPC || errno == EDQUOT || errno == EIO || errno == EROFS) return errno;
            // Some file systems name odd reasons; reading and writing will say what is wrong.
            if (isNever(errno) || errno == EINVAL) pair.copiesRanges = false;
            break;
        }
        if (count == 0) break;
        at += count;
        if (!tick(target, at)) return ECANCELED;
    }
    return readAndWrite(source, target, at, end);
}

int ItemCopier::readAndWrite(int source, int target, std::int64_t at, std::int64_t end) {
    const bool isEndless = end == std::numeric_limits<std::int64_t>::max();
    while (at < end) {
        const auto wanted = static_cast<std::size_t>(
            std::min<std::int64_t>(static_cast<std::int64_t>(CopyBuffers::dataSize), end - at));
        const ssize_t got = readFully(source, buffers_->data.data(), wanted, wanted, at);
        if (got < 0) return errno;
        if (got == 0) return isEndless ? 0 : FileCopy::changedMeanwhile;
        if (const int errnum = FileIO::writeAllAt(
                target, {buffers_->data.data(), static_cast<std::size_t>(got)}, at))
            return errnum;
        at += got;
        if (!tick(target, at)) return ECANCELED;
    }
    return 0;
}

/// The present file is copied up to `position`.
bool ItemCopier::tick(int target, std::int64_t position) {
    if (context_.watch.writesSteadily && position - written_ >= chunk) {
        // One chunk is on its way while the next is being copied.
        sync_file_range(target, written_, position - written_, SYNC_FILE_RANGE_WRITE);
        if (written_ >= chunk) {
            sync_file_range(
                target, written_ - chunk, chunk,
                SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
        }
        written_ = position;
    }
    if (position <= told_) return !context_.isOver();
    return ticker_.add(position - std::exchange(told_, position), 0);
}

int ItemCopier::copyLink(const Item& item, const struct statx& facts) {
    const ssize_t size =
        readlinkat(item.sourceFolder, item.name, buffers_->data.data(), buffers_->data.size() - 1);
    if (size < 0) return errno == EINVAL ? FileCopy::changedMeanwhile : errno;
    buffers_->data[static_cast<std::size_t>(size)] = '\0';
    if (symlinkat(buffers_->data.data(), item.targetFolder, item.targetName) != 0) return errno;
    facts_.applyByName(facts, item.targetFolder, item.targetName);
    context_.record.remember(facts);
    return ticker_.add(sizeOf(facts), 0) ? 0 : ECANCELED;
}

int ItemCopier::copyPipe(const Item& item, const struct statx& facts) {
    const mode_t mode = facts.stx_mode & 07777;
    if (mkfifoat(item.targetFolder, item.targetName, mode) != 0) return errno;
    // Where the disk keeps no modes, it is the one that all pipes have there.
    [[maybe_unused]] const int result = fchmodat(item.targetFolder, item.targetName, mode, 0);
    facts_.applyByName(facts, item.targetFolder, item.targetName);
    context_.record.remember(facts);
    return 0;
}

/// Another name for what was copied before, if it is still that.
bool ItemCopier::makeName(const Item& item, const CopyRecord::Place& place) const {
    const auto [top, topName] = context_.record.where(*place.top);
    if (!top) return false;
    const std::string whole = place.path.empty() ? topName : topName + '/' + place.path;
    FileDescriptor folder;
    std::size_t begin = 0;
    for (std::size_t slash = whole.find('/'); slash != whole.npos; slash = whole.find('/', begin)) {
        FileDescriptor next(openat(folder ? folder.get() : top->get(),
                                   whole.substr(begin, slash - begin).c_str(),
                                   O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!next) return false;
        folder = std::move(next);
        begin = slash + 1;
    }
    if (linkat(folder ? folder.get() : top->get(), whole.c_str() + begin, item.targetFolder,
               item.targetName, 0) != 0)
        return false;
    struct statx facts;
    if (statx(item.targetFolder, item.targetName, AT_SYMLINK_NOFOLLOW, factsMask, &facts) == 0 &&
        FileID::of(facts) == place.copy)
        return true;
    unlinkat(item.targetFolder, item.targetName, 0);
    return false;
}

}  // namespace tarn
