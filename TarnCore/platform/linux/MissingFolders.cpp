#include "TarnCore/platform/linux/MissingFolders.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>

#include <sys/inotify.h>
#include <sys/stat.h>

#include <fcntl.h>

namespace tarn {
namespace {

constexpr std::uint32_t comingNames = IN_CREATE | IN_MOVED_TO | IN_ONLYDIR | IN_MASK_ADD;
constexpr std::uint32_t ownMoves = IN_MOVE_SELF | IN_DELETE_SELF | IN_ONLYDIR | IN_MASK_ADD;

/// A folder that comes and goes while it is looked for is looked for so often.
constexpr int mostTries = 8;

bool isFolder(const std::string& path) {
    struct stat attributes {};
    return stat(path.c_str(), &attributes) == 0 && S_ISDIR(attributes.st_mode);
}

/// "/a" of "/a/b"; "/" of "/a" and of itself.
std::string parentOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 || slash == path.npos ? "/" : path.substr(0, slash);
}

std::string realPath(const std::string& path) {
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(path.c_str(), nullptr),
                                                           &std::free);
    return real ? real.get() : path;
}

}  // namespace

void MissingFolders::add(const std::string& path) { mustLook_ |= missing_.insert(path).second; }

void MissingFolders::remove(const std::string& path) { mustLook_ |= missing_.erase(path) > 0; }

void MissingFolders::read(bool isAboutMounts) {
    if (isAboutMounts)
        mustLook_ = true;  // poll() itself has taken note of it.
    else
        readEvents();
}

void MissingFolders::readEvents() {
    alignas(inotify_event) std::array<char, 16 * 1024> buffer;
    for (;;) {
        const ssize_t size = ::read(inotify_.get(), buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR) continue;
        if (size <= 0) return;
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            // Other things may come and go in these folders, and are none of our business.
            mustLook_ |= event->len == 0 || names_.contains(event->name);
        }
    }
}

MissingFolders::Answer MissingFolders::take() {
    Answer answer;
    if (!mustLook_) return answer;
    mustLook_ = false;
    // Watches that nobody needs any more go with their instance.
    inotify_.close();
    names_.clear();
    if (missing_.empty()) {
        mounts_.close();
        return answer;
    }
    inotify_ = FileDescriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!mounts_) mounts_ = FileDescriptor(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
    std::erase_if(missing_, [&](const std::string& path) {
        const Outcome outcome = watchWayTo(path);
        if (outcome == Outcome::isThere) answer.arrived.push_back(path);
        if (outcome == Outcome::unknown) answer.unknown.push_back(path);
        return outcome != Outcome::waits;
    });
    if (missing_.empty()) {
        inotify_.close();
        mounts_.close();
    }
    return answer;
}

/// A watch on a folder and on those above it, which all may be given another name. One that only
/// the administrator may read is taken to stay what it is.
bool MissingFolders::watchNamesOf(const std::string& folder) {
    for (std::string above = folder; above != "/"; above = parentOf(above))
        if (inotify_add_watch(inotify_.get(), above.c_str(), ownMoves) < 0 && errno != EACCES)
            return false;
    return true;
}

MissingFolders::Outcome MissingFolders::watchWayTo(const std::string& path) {
    for (int i = 0; i < mostTries; ++i) {
        if (isFolder(path)) return Outcome::isThere;
        std::string next = path, nearest = parentOf(path);
        while (nearest != "/" && !isFolder(nearest)) {
            next = nearest;
            nearest = parentOf(nearest);
        }
        struct stat attributes {};
        if (lstat(next.c_str(), &attributes) == 0 ? S_ISLNK(attributes.st_mode) : errno != ENOENT)
            return Outcome::unknown;
        if (inotify_add_watch(inotify_.get(), nearest.c_str(), comingNames) < 0 ||
            !watchNamesOf(nearest) || !watchNamesOf(realPath(nearest))) {
            if (errno == ENOENT || errno == ENOTDIR) continue;  // Gone meanwhile.
            return Outcome::unknown;
        }
        names_.insert(next.substr(next.rfind('/') + 1));
        // It may have come before there was a watch, and the other may have gone.
        if (!isFolder(next) && isFolder(nearest)) return Outcome::waits;
    }
    return Outcome::unknown;
}

}  // namespace tarn
