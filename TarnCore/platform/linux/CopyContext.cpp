#include "TarnCore/platform/linux/CopyContext.h"

#include <cerrno>
#include <utility>
#include <vector>

#include <sys/xattr.h>

#include <fcntl.h>
#include <unistd.h>

namespace tarn {
namespace {

constexpr std::int64_t manyBytes = 4 << 20;
constexpr std::int64_t manyItems = 256;
constexpr unsigned itemsBetweenLooks = 8;  ///< At the clock.
constexpr std::chrono::milliseconds longEnough{20};

/// What the next item would meet as well.
bool isFatal(int errnum) {
    switch (errnum) {
        case ENOSPC:
        case EDQUOT:
        case EROFS:
        case EMFILE:
        case ENFILE:
        case ENOMEM:
            return true;
        default:
            return false;
    }
}

}  // namespace

CopyContext::CopyContext(const FileCopy::Watch& givenWatch, CopyRecord& givenRecord,
                         std::shared_ptr<CopyTop> givenTop, URL givenSource)
    : watch(givenWatch),
      record(givenRecord),
      top(std::move(givenTop)),
      source(std::move(givenSource)),
      self(record.identity()) {}

void CopyContext::fail(const std::string& path, int errnum) {
    hasFailures_ = true;
    if (watch.stopsAtFailure || isFatal(errnum)) {
        int none = 0;
        fatal_.compare_exchange_strong(none, errnum);
        stop();
        return;
    }
    const std::lock_guard lock(calls_);
    if (watch.failed) watch.failed(url(path), errnum);
}

void CopyContext::loseAttributes(const URL& item) {
    const std::lock_guard lock(calls_);
    if (watch.attributesLost) watch.attributesLost(item);
}

bool CopyTicker::add(std::int64_t bytes, std::int64_t items) {
    bytes_ += bytes;
    items_ += items;
    if (context_.isOver()) return false;
    if (!context_.watch.reportsEachItem && bytes_ < manyBytes && items_ < manyItems) {
        if (++sinceLook_ < itemsBetweenLooks) return true;
        sinceLook_ = 0;
        if (Time::now() - last_ < longEnough) return true;
    }
    return flush();
}

bool CopyTicker::flush() {
    if (context_.isOver()) return false;
    last_ = Time::now();
    const std::int64_t bytes = std::exchange(bytes_, 0);
    const std::int64_t items = std::exchange(items_, 0);
    if (!context_.watch.progress || context_.watch.progress(bytes, items)) return true;
    context_.stop();
    return false;
}

CopiedFolder::~CopiedFolder() {
    // One after the other: a chain of owners as deep as the tree would overflow the stack.
    std::shared_ptr<CopiedFolder> above = std::move(parent);
    while (above && above.use_count() == 1) above = std::exchange(above->parent, nullptr);
}

std::string CopiedFolder::path() const {
    std::vector<const std::string*> names;
    for (const CopiedFolder* folder = this; folder->parent; folder = folder->parent.get())
        names.push_back(&folder->name);
    std::string path;
    for (auto each = names.rbegin(); each != names.rend(); ++each) {
        if (!path.empty()) path += '/';
        path += **each;
    }
    return path;
}

int CopiedFolder::makeTarget(int parentFolder, const char* targetName, bool parentIsPlain,
                             const CopyIdentity& self) {
    if (mkdirat(parentFolder, targetName, madeWith) != 0) return errno;
    target = FileDescriptor(openat(parentFolder, targetName,
                                   O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!target) return errno;
    if (!parentIsPlain) {
        // What it has got from the folder around it is not handed on.
        fremovexattr(target.get(), "system.posix_acl_default");
        fremovexattr(target.get(), "system.posix_acl_access");
        fchmod(target.get(), madeWith);
    }
    struct statx made;
    if (statx(target.get(), "", AT_EMPTY_PATH, STATX_BASIC_STATS, &made) != 0) return errno;
    targetID = FileID::of(made);
    isPlain = made.stx_gid == self.group && made.stx_uid == self.user;
    return 0;
}

std::string CopiedFolder::pathOf(std::string_view child) const {
    std::string path = this->path();
    if (!path.empty()) path += '/';
    path += child;
    return path;
}

}  // namespace tarn
