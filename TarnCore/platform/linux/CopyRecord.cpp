#include "TarnCore/platform/linux/CopyRecord.h"

#include <charconv>
#include <string_view>

#include <sys/sysmacros.h>

#include <fcntl.h>
#include <unistd.h>

namespace tarn {
namespace {

std::uint64_t mixed(std::uint64_t hash, std::uint64_t value) {
    // The finaliser of splitmix64.
    hash += value + 0x9e3779b97f4a7c15U;
    hash = (hash ^ (hash >> 30)) * 0xbf58476d1ce4e5b9U;
    hash = (hash ^ (hash >> 27)) * 0x94d049bb133111ebU;
    return hash ^ (hash >> 31);
}

std::uint64_t version(const struct statx& facts) {
    const FileID id = FileID::of(facts);
    std::uint64_t hash = mixed(mixed(facts.stx_mode & S_IFMT, id.device), id.inode);
    if (S_ISDIR(facts.stx_mode)) return hash;
    hash = mixed(hash, facts.stx_size);
    hash = mixed(hash, static_cast<std::uint64_t>(facts.stx_mtime.tv_sec));
    hash = mixed(hash, facts.stx_mtime.tv_nsec);
    // A file that loses one of its other names gets a new time of change from that.
    if (facts.stx_nlink > 1) return hash;
    hash = mixed(hash, static_cast<std::uint64_t>(facts.stx_ctime.tv_sec));
    return mixed(hash, facts.stx_ctime.tv_nsec);
}

/// As it is after all its other names are gone: the time of change says nothing then.
std::uint64_t versionWithNames(struct statx facts) {
    facts.stx_nlink = 2;
    return mixed(version(facts), 1);
}

/// A process can only set its umask, so it is read where the kernel shows it.
mode_t currentUmask() {
    constexpr mode_t cautious = 077;
    const FileDescriptor file(open("/proc/self/status", O_RDONLY | O_CLOEXEC));
    if (!file) return cautious;
    char text[512];
    const ssize_t size = read(file.get(), text, sizeof text);
    if (size <= 0) return cautious;
    const std::string_view status(text, static_cast<std::size_t>(size));
    constexpr std::string_view key = "Umask:\t";
    const std::size_t at = status.find(key);
    if (at == status.npos) return cautious;
    mode_t mask = cautious;
    std::from_chars(text + at + key.size(), text + size, mask, 8);
    return mask;
}

}  // namespace

CopyIdentity CopyIdentity::current() { return {geteuid(), getegid(), currentUmask()}; }

FileID FileID::of(const struct statx& facts) {
    return {makedev(facts.stx_dev_major, facts.stx_dev_minor), facts.stx_ino};
}

CopyIdentity CopyRecord::identity() {
    const std::lock_guard lock(mutex_);
    if (!identity_) identity_ = CopyIdentity::current();
    return *identity_;
}

std::unique_ptr<CopyBuffers> CopyRecord::takeBuffers() {
    {
        const std::lock_guard lock(mutex_);
        if (!spareBuffers_.empty()) {
            auto buffers = std::move(spareBuffers_.back());
            spareBuffers_.pop_back();
            return buffers;
        }
    }
    return std::unique_ptr<CopyBuffers>(new CopyBuffers);  // Without zeroes.
}

void CopyRecord::giveBack(std::unique_ptr<CopyBuffers> buffers) {
    const std::lock_guard lock(mutex_);
    spareBuffers_.push_back(std::move(buffers));
}

CopyPair& CopyRecord::pair(std::uint64_t sourceDevice, std::uint64_t targetDevice) {
    const std::lock_guard lock(mutex_);
    return pairs_[{sourceDevice, targetDevice}];
}

std::optional<CopyRecord::Place> CopyRecord::claim(FileID source) {
    std::unique_lock lock(mutex_);
    for (;;) {
        const auto [found, isNew] = places_.try_emplace(source);
        if (isNew) return std::nullopt;
        if (found->second && !found->second->top->isGone) return found->second;
        if (found->second) {
            found->second.reset();
            return std::nullopt;
        }
        settled_.wait(lock);
    }
}

void CopyRecord::settle(FileID source, std::optional<Place> place) {
    {
        const std::lock_guard lock(mutex_);
        if (place) {
            places_[source] = std::move(place);
        } else {
            places_.erase(source);
        }
    }
    settled_.notify_all();
}

void CopyRecord::rename(CopyTop& top, std::string name) {
    const std::lock_guard lock(mutex_);
    top.name = std::move(name);
}

void CopyRecord::forget(CopyTop& top) {
    const std::lock_guard lock(mutex_);
    top.isGone = true;
}

std::pair<std::shared_ptr<const FileDescriptor>, std::string> CopyRecord::where(
    const CopyTop& top) const {
    const std::lock_guard lock(mutex_);
    if (top.isGone) return {};
    return {top.folder, top.name};
}

void CopyRecord::remember(const struct statx& source) {
    if (!remembersSources_) return;
    const std::lock_guard lock(mutex_);
    const bool hasNames = source.stx_nlink > 1 && !S_ISDIR(source.stx_mode);
    sources_.insert(hasNames ? versionWithNames(source) : version(source));
}

bool CopyRecord::isCopied(const struct statx& source) const {
    const std::lock_guard lock(mutex_);
    return sources_.contains(version(source)) ||
           (!S_ISDIR(source.stx_mode) && sources_.contains(versionWithNames(source)));
}

}  // namespace tarn
