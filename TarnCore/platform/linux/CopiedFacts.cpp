#include "TarnCore/platform/linux/CopiedFacts.h"

#include <cerrno>
#include <cstring>
#include <string_view>

#include <sys/xattr.h>

#include <fcntl.h>
#include <unistd.h>

namespace tarn {
namespace {

constexpr mode_t permissions = 07777;
constexpr const char* accessListKey = "system.posix_acl_access";
constexpr const char* defaultListKey = "system.posix_acl_default";

enum class Sort { user, accessList, privileged, skipped };

/// When the original came to its place. The copy comes to its own now, where it is created.
constexpr std::string_view addedKey = "user.tarn.added";

Sort sortOf(std::string_view name) {
    if (name == addedKey) return Sort::skipped;
    if (name.starts_with("user.")) return Sort::user;
    if (name == accessListKey || name == defaultListKey) return Sort::accessList;
    // Which programs may do what belongs to the place, not to the file; signatures hold for one
    // inode only.
    if (name == "security.selinux" || name == "security.SMACK64" || name == "security.ima" ||
        name == "security.evm" || name.starts_with("trusted.overlay.") ||
        name.starts_with("system."))
        return Sort::skipped;
    return Sort::privileged;
}

timespec timeOf(const statx_timestamp& time) {
    timespec converted = {};
    converted.tv_sec = static_cast<time_t>(time.tv_sec);
    converted.tv_nsec = static_cast<long>(time.tv_nsec);
    return converted;
}

bool isUnsupported(int errnum) { return errnum == EOPNOTSUPP || errnum == ENOSYS; }

}  // namespace

void CopiedFacts::read(int source, CopyPair& pair) {
    length_ = 0;
    wasReadInFull_ = true;
    hasAccessList_ = false;
    if (!pair.listsAttributes.load(std::memory_order_relaxed)) return;
    const ssize_t length = flistxattr(source, buffers_.names.data(), buffers_.names.size());
    if (length < 0) {
        if (isUnsupported(errno)) {
            pair.listsAttributes = false;
        } else {
            wasReadInFull_ = false;
        }
        return;
    }
    length_ = static_cast<std::size_t>(length);
    for (std::size_t at = 0; at < length_;) {
        const std::string_view name = buffers_.names.data() + at;
        if (name == accessListKey) hasAccessList_ = true;
        at += name.size() + 1;
    }
}

mode_t CopiedFacts::creationMode(const struct statx& facts, bool isPlain) const {
    const mode_t mode = facts.stx_mode & permissions;
    // Attributes can only be set while the owner may write.
    if (!isPlain || !isOwn(facts) || length_ > 0) return 0600;
    return mode & 0777;
}

bool CopiedFacts::apply(int source, const struct statx& facts, const Target& target,
                        CopyPair& pair) {
    mode_t mode = facts.stx_mode & permissions;
    if (!target.isPlain || !isOwn(facts)) mode &= giveAway(facts, target.item);
    bool keptAll = wasReadInFull_;
    if (length_ > 0) keptAll = setAttributes(source, target.item, pair, false) && keptAll;
    const mode_t created = target.createdWith & ~self_.umask;
    if (!target.isPlain || mode != created) fchmod(target.item, mode);
    if (!target.isPlain) {
        // Lists that it got from the folder it was made in.
        if (!hasAccessList_) fremovexattr(target.item, accessListKey);
        if (S_ISDIR(facts.stx_mode)) fremovexattr(target.item, defaultListKey);
    }
    if (length_ > 0) keptAll = setAttributes(source, target.item, pair, true) && keptAll;
    const timespec times[2] = {timeOf(facts.stx_atime), timeOf(facts.stx_mtime)};
    futimens(target.item, times);
    return keptAll;
}

void CopiedFacts::applyByName(const struct statx& facts, int folder, const char* name) const {
    if (fchownat(folder, name, facts.stx_uid, facts.stx_gid, AT_SYMLINK_NOFOLLOW) != 0) {
        [[maybe_unused]] const int result =
            fchownat(folder, name, static_cast<uid_t>(-1), facts.stx_gid, AT_SYMLINK_NOFOLLOW);
    }
    const timespec times[2] = {timeOf(facts.stx_atime), timeOf(facts.stx_mtime)};
    utimensat(folder, name, times, AT_SYMLINK_NOFOLLOW);
}

/// Returns the bits of the mode that may be kept: a program must not run as somebody else than
/// before.
mode_t CopiedFacts::giveAway(const struct statx& facts, int target) const {
    if (fchown(target, facts.stx_uid, facts.stx_gid) == 0) return permissions;
    const bool groupIsKept = fchown(target, static_cast<uid_t>(-1), facts.stx_gid) == 0;
    mode_t kept = permissions;
    if (facts.stx_uid != self_.user) kept &= ~static_cast<mode_t>(S_ISUID);
    if (!groupIsKept && !S_ISDIR(facts.stx_mode)) kept &= ~static_cast<mode_t>(S_ISGID);
    return kept;
}

/// First the users’ own, while the file can still be written to; access lists and what a change of
/// owner would have cleared, after the mode is set.
bool CopiedFacts::setAttributes(int source, int target, CopyPair& pair, bool afterMode) {
    bool keptAll = true;
    for (std::size_t at = 0; at < length_;) {
        const char* name = buffers_.names.data() + at;
        at += std::strlen(name) + 1;
        const Sort sort = sortOf(name);
        if (sort == Sort::skipped || (sort == Sort::user) == afterMode) continue;
        const bool kept = set(source, target, name, pair);
        if (sort != Sort::privileged) keptAll = keptAll && kept;
    }
    return keptAll;
}

bool CopiedFacts::set(int source, int target, const char* name, CopyPair& pair) {
    std::atomic<bool>& takes =
        sortOf(name) == Sort::accessList ? pair.takesAccessLists : pair.takesAttributes;
    if (!takes.load(std::memory_order_relaxed)) return false;
    const ssize_t size = fgetxattr(source, name, buffers_.value.data(), buffers_.value.size());
    if (size < 0) return errno == ENODATA;  // It went meanwhile.
    if (fsetxattr(target, name, buffers_.value.data(), static_cast<std::size_t>(size), 0) == 0)
        return true;
    if (isUnsupported(errno) && sortOf(name) != Sort::privileged) takes = false;
    return false;
}

}  // namespace tarn
