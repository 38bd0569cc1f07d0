#include "TarnCore/platform/linux/InotifyWatch.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <ctime>
#include <deque>
#include <system_error>
#include <utility>

#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include <poll.h>

#include "TarnCore/platform/linux/LinuxFileSystem.h"
#include "TarnCore/platform/linux/MountTable.h"

namespace tarn {
namespace {

constexpr std::uint32_t wanted = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY |
                                 IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF |
                                 IN_ONLYDIR | IN_EXCL_UNLINK;
/// File times come from a clock that ticks up to 10 ms late.
constexpr double clockTick = 0.05;

double seconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

std::string joined(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (path.size() > 1) path += '/';
    path += name;
    return path;
}

bool isInside(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) &&
           (path.size() == folder.size() || folder == "/" || path[folder.size()] == '/');
}

std::vector<std::string> paths(const std::vector<URL>& folders) {
    std::vector<std::string> result;
    for (const URL& folder : folders) result.push_back(folder.path());
    return result;
}

}  // namespace

InotifyWatch::InotifyWatch(const std::vector<URL>& folders, const Options& options,
                           SerialQueue& queue, Callback onChange)
    : options_(options),
      queue_(queue),
      listener_(std::make_shared<Listener>()),
      roots_(paths(folders)),
      stop_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      burst_(options.latency, roots_),
      start_(seconds(CLOCK_REALTIME) - clockTick) {
    listener_->onChange = std::move(onChange);
    if (options.hasInotify) inotify_ = FileDescriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    const auto mounts = currentMounts();
    for (const Mount& mount : mounts)
        if (mount.isPseudo || mount.isNetwork) skipped_.insert(mount.mountPoint.path());
    for (const URL& root : folders) {
        const Mount* mount = mountHolding(mounts, root);
        if (mount && mount->isNetwork)
            networkRoots_.push_back(root.path());
        else
            follow(root.path());
    }
    nextLook_ = seconds(CLOCK_MONOTONIC) + options_.pollInterval;
    thread_.run([this] { run(); });
}

InotifyWatch::~InotifyWatch() {
    isStopping_ = true;
    if (stop_) eventfd_write(stop_.get(), 1);
    // Recursive, because the callback itself may end the watch.
    const std::lock_guard lock(listener_->mutex);
    listener_->isAlive = false;
}

void InotifyWatch::run() {
    // Networks may let one wait, so their first look is taken here and not in the constructor.
    for (const std::string& root : networkRoots_) lookInstead(root);
    if (options_.depth == WatchDepth::tree)
        for (const std::string& root : roots_) addTree(root, false);
    while (!isStopping_) {
        takeArrived();
        double now = seconds(CLOCK_MONOTONIC);
        tell(now);
        double wait = std::max(0.0, nextLook_ - now);
        bool hasDeadline = !polled_.empty();
        if (const auto due = burst_.due(now)) {
            wait = hasDeadline ? std::min(wait, *due) : *due;
            hasDeadline = true;
        }
        // poll() leaves out descriptors that are -1.
        std::array<pollfd, 4> waiting = {{{inotify_.get(), POLLIN, 0},
                                          {stop_.get(), POLLIN, 0},
                                          {missing_.events(), POLLIN, 0},
                                          {missing_.mounts(), POLLPRI, 0}}};
        const int timeout = hasDeadline ? static_cast<int>(std::ceil(wait * 1000)) : -1;
        if (poll(waiting.data(), waiting.size(), timeout) < 0 && errno != EINTR) return;
        if (isStopping_) return;
        if (waiting[0].revents != 0) readEvents();
        if (waiting[2].revents != 0) missing_.read(false);
        if (waiting[3].revents != 0) missing_.read(true);
        now = seconds(CLOCK_MONOTONIC);
        if (!polled_.empty() && now >= nextLook_) {
            lookAtPolled();
            // Never more than a twentieth of the time is spent looking.
            const double after = seconds(CLOCK_MONOTONIC);
            nextLook_ = after + std::max(options_.pollInterval, 20 * (after - now));
        }
    }
}

void InotifyWatch::tell(double now) {
    const auto due = burst_.due(now);
    if (!due || *due > 0) return;
    queue_.run([listener = listener_, changed = burst_.take(now)] {
        const std::lock_guard lock(listener->mutex);
        if (listener->isAlive) listener->onChange(changed);
    });
}

void InotifyWatch::readEvents() {
    alignas(inotify_event) std::array<char, 64 * 1024> buffer;
    for (;;) {
        const ssize_t size = ::read(inotify_.get(), buffer.data(), buffer.size());
        if (size < 0 && errno == EINTR) continue;
        if (size <= 0 || isStopping_) return;
        for (ssize_t at = 0; at < size;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            handle(*event);
        }
    }
}

void InotifyWatch::handle(const inotify_event& event) {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        burst_.addRoots();
        if (options_.depth == WatchDepth::tree)
            for (const std::string& root : roots_) addTree(root, false);
        return;
    }
    const auto found = watched_.find(event.wd);
    if (found == watched_.end()) return;
    const std::string folder = found->second;
    if ((event.mask & IN_IGNORED) != 0) {
        watched_.erase(found);
        const auto current = watchOf_.find(folder);
        if (current == watchOf_.end() || current->second != event.wd) return;
        watchOf_.erase(current);
        // Its name may be used again.
        if (isRoot(folder)) missing_.add(folder);
        return;
    }
    if (event.len == 0) {
        // Its parent tells the same of every folder but a root.
        if (!isRoot(folder)) return;
        burst_.add(folder);
        if ((event.mask & IN_MOVE_SELF) != 0) forgetTree(folder);
        return;
    }
    const std::string path = joined(folder, event.name);
    burst_.add(path);
    if (options_.depth != WatchDepth::tree || (event.mask & IN_ISDIR) == 0) return;
    if ((event.mask & IN_MOVED_FROM) != 0) forgetTree(path);
    if ((event.mask & (IN_CREATE | IN_MOVED_TO)) != 0) addTree(path, (event.mask & IN_CREATE) != 0);
}

bool InotifyWatch::isRoot(const std::string& path) const {
    return std::find(roots_.begin(), roots_.end(), path) != roots_.end();
}

bool InotifyWatch::isOnNetwork(const std::string& path) const {
    return std::any_of(networkRoots_.begin(), networkRoots_.end(),
                       [&](const std::string& root) { return isInside(path, root); });
}

bool InotifyWatch::addWatch(const std::string& path) {
    if (watched_.size() >= options_.mostFolders && !watchOf_.contains(path)) {
        errno = ENOSPC;
        return false;
    }
    // Without inotify this is a bad descriptor.
    const std::uint32_t mask = isRoot(path) ? wanted : wanted | IN_DONT_FOLLOW;
    const int id = inotify_add_watch(inotify_.get(), path.c_str(), mask);
    if (id < 0) return false;
    watched_[id] = path;
    watchOf_[path] = id;
    return true;
}

void InotifyWatch::follow(const std::string& root) {
    if (addWatch(root)) return;
    if (inotify_ && (errno == ENOENT || errno == ENOTDIR))
        missing_.add(root);
    else
        lookInstead(root);
}

void InotifyWatch::takeArrived() {
    for (;;) {
        const MissingFolders::Answer answer = missing_.take();
        for (const std::string& root : answer.unknown) lookInstead(root);
        if (answer.arrived.empty() || isStopping_) return;
        const auto mounts = currentMounts();
        for (const std::string& root : answer.arrived) {
            const Mount* mount = mountHolding(mounts, URL::fromPath(root));
            if (mount && mount->isNetwork) {
                networkRoots_.push_back(root);
                lookInstead(root);
            } else {
                follow(root);
            }
            burst_.add(root);
            if (options_.depth == WatchDepth::tree) addTree(root, false);
        }
    }
}

void InotifyWatch::lookInstead(const std::string& path) {
    // What was seen before is kept: it is what tells the next change.
    if (!polled_.contains(path)) polled_.emplace(path, look(path));
}

InotifyWatch::Look InotifyWatch::look(const std::string& path) {
    struct stat attributes {};
    if (stat(path.c_str(), &attributes) != 0 || !S_ISDIR(attributes.st_mode)) return {};
    return {true,
            std::int64_t{attributes.st_mtim.tv_sec} * 1'000'000'000 + attributes.st_mtim.tv_nsec,
            attributes.st_ino};
}

void InotifyWatch::addTree(const std::string& path, bool isNew) {
    const LinuxFileSystem files;
    const bool isRemote = isOnNetwork(path);
    // Breadth first, so that when the watches run out it is the deep folders that go without.
    std::deque<std::string> waiting = {path};
    while (!waiting.empty() && !isStopping_) {
        const std::string folder = std::move(waiting.front());
        waiting.pop_front();
        if (!isRoot(folder)) {
            if (skipped_.contains(folder)) continue;
            if (isRemote) {
                lookInstead(folder);
            } else if (addWatch(folder)) {
                polled_.erase(folder);
            } else {
                if (errno == ENOENT || errno == ENOTDIR || errno == EACCES) continue;
                if (!std::exchange(isShortOfWatches_, true)) burst_.addRoots();
                lookInstead(folder);
            }
        }
        try {
            const auto reader = files.openFolder(URL::fromPath(folder));
            if (!isRoot(folder) && !isNew &&
                reader->attributes().modified >= Date::fromUnix(0) + start_)
                burst_.add(folder);
            for (auto batch = reader->read(); !batch.empty(); batch = reader->read()) {
                for (const FolderEntry& entry : batch) {
                    if (isNew) burst_.add(joined(folder, entry.view()));
                    if (entry.type == FileType::directory)
                        waiting.push_back(joined(folder, entry.view()));
                }
            }
        } catch (const std::system_error& error) {
            // A folder that is gone again, or not ours to read, is told by its parent. What lies
            // below one that could not be opened for want of anything else may be missed.
            const int code = error.code().value();
            if (code == EMFILE || code == ENFILE || code == ENOMEM) burst_.addRoots();
        }
    }
}

void InotifyWatch::forgetTree(const std::string& path) {
    for (auto it = watchOf_.begin(); it != watchOf_.end();) {
        if (!isInside(it->first, path)) {
            ++it;
            continue;
        }
        inotify_rm_watch(inotify_.get(), it->second);
        watched_.erase(it->second);
        it = watchOf_.erase(it);
    }
    std::erase_if(polled_, [&](const auto& entry) { return isInside(entry.first, path); });
    if (isRoot(path)) missing_.add(path);
}

void InotifyWatch::lookAtPolled() {
    std::vector<std::string> changed;
    for (auto& [path, seen] : polled_) {
        if (isStopping_) return;
        const Look now = look(path);
        // A root that is back may look like the one that went.
        const bool isBack = now.exists && isRoot(path) && !isOnNetwork(path) && addWatch(path);
        if (now == seen && !isBack) continue;
        seen = now;
        changed.push_back(path);
    }
    for (const std::string& path : changed) {
        burst_.add(path);
        const bool exists = polled_[path].exists;
        if (watchOf_.contains(path) || (!exists && !isRoot(path))) polled_.erase(path);
        if (exists && options_.depth == WatchDepth::tree) addTree(path, false);
    }
}

}  // namespace tarn
