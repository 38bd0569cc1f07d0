#include "TarnCore/files/TreeWalker.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <deque>
#include <iterator>
#include <mutex>
#include <optional>
#include <system_error>
#include <unordered_set>
#include <utility>

#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

bool isStrictlyBelow(std::string_view path, std::string_view folder) {
    if (folder == "/") return path.size() > 1;
    return path.size() > folder.size() + 1 && path.starts_with(folder) &&
           path[folder.size()] == '/';
}

std::string joined(const std::string& folder, std::string_view name) {
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    if (folder != "/") path = folder;
    path += '/';
    path += name;
    return path;
}

}  // namespace

/// One walk under way.
class TreeWalk {
public:
    using Folder = TreeWalker::Folder;
    using FolderRef = std::shared_ptr<Folder>;
    using ReaderRef = std::shared_ptr<FolderReader>;

    TreeWalk(const std::vector<URL>& roots, const std::function<bool(const Mount&)>& entersMount,
             std::size_t threads, std::size_t mostOpen, TreeWalker::Visitor& visitor,
             const CancelToken& token)
        : platform_(Platform::current()),
          visitor_(visitor),
          token_(token),
          mostOpen_(mostOpen),
          stacks_(threads) {
        prepare(roots, entersMount);
    }

    void work(std::size_t worker);

private:
    struct Root {
        std::size_t index;  ///< In the list that the caller gave.
        URL url;
        URL resolved;
        bool isNetwork;
    };
    /// A folder that is to be opened: a root, or a child of `parent`.
    struct Task {
        FolderRef parent;
        ReaderRef parentReader;  ///< Null when the parent had to be closed.
        std::string name;
        std::optional<Root> root;
    };

    void prepare(const std::vector<URL>& roots,
                 const std::function<bool(const Mount&)>& entersMount);
    void skip(const Root& root, const URL& resolvedPath);
    std::optional<Task> next(std::size_t worker, FolderRef read, bool hadTask);
    std::optional<Task> take(std::size_t worker);
    Task takeChild(std::deque<FolderRef>& stack, std::deque<FolderRef>::iterator from);
    ReaderRef closeOldest();
    FolderRef open(Task& task);
    ReaderRef reopen(const Task& task);
    bool isSkipped(Folder& folder) const;
    void read(Folder& folder);

    const Platform& platform_;
    TreeWalker::Visitor& visitor_;
    const CancelToken& token_;
    const std::size_t mostOpen_;
    std::unordered_set<std::string> skipped_;

    // What follows is guarded by mutex_.
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Root> roots_;
    /// Folders that were read and have children left, one stack a thread, the deepest at its back.
    std::vector<std::deque<FolderRef>> stacks_;
    std::size_t open_ = 0;    ///< Folders of the stacks that are held open.
    std::size_t active_ = 0;  ///< Threads with a task.
    std::size_t waiting_ = 0;
};

void TreeWalk::prepare(const std::vector<URL>& roots,
                       const std::function<bool(const Mount&)>& entersMount) {
    const std::vector<Mount> mounts = platform_.volumes->mounts();
    for (std::size_t i = 0; i < roots.size(); ++i) {
        const auto mount = platform_.volumes->mountHolding(roots[i]);
        Root root{i, roots[i], roots[i], mount && mount->isNetwork};
        // A dead server must not hold up the other roots, so its paths are taken as they stand.
        if (!root.isNetwork) root.resolved = platform_.files->resolved(root.url).value_or(root.url);
        const bool isKnown = std::any_of(roots_.begin(), roots_.end(), [&](const Root& other) {
            return other.resolved == root.resolved;
        });
        if (!isKnown) roots_.push_back(std::move(root));
    }
    for (const Root& root : roots_) {
        for (const Mount& mount : mounts)
            if (!entersMount(mount)) skip(root, mount.mountPoint);
        for (const Root& other : roots_) skip(root, other.resolved);
    }
    // Roots that may block come last.
    std::stable_partition(roots_.begin(), roots_.end(),
                          [](const Root& root) { return !root.isNetwork; });
}

/// Keeps the walk of `root` out of a path that has no links in it.
void TreeWalk::skip(const Root& root, const URL& resolvedPath) {
    const std::string& path = resolvedPath.path();
    const std::string& base = root.resolved.path();
    if (!isStrictlyBelow(path, base)) return;
    skipped_.insert(
        joined(root.url.path(), std::string_view(path).substr(base == "/" ? 1 : base.size() + 1)));
}

void TreeWalk::work(std::size_t worker) {
    FolderRef folder;
    bool hadTask = false;
    while (auto task = next(worker, std::move(folder), hadTask)) {
        hadTask = true;
        folder = open(*task);
        if (!folder) continue;
        task.reset();  // Nothing else may hold the parent, which then closes.
        folder->worker_ = worker;
        read(*folder);
    }
}

/// Takes back the folder that the thread has read, and hands out what to read next; absent when
/// the walk is over.
std::optional<TreeWalk::Task> TreeWalk::next(std::size_t worker, FolderRef read, bool hadTask) {
    ReaderRef closing;  // Closes when the lock is gone.
    std::unique_lock lock(mutex_);
    if (read && !read->children_.empty()) {
        stacks_[worker].push_back(std::move(read));
        if (++open_ > mostOpen_) closing = closeOldest();
        if (waiting_ > 0) wake_.notify_all();
    }
    if (hadTask) --active_;
    for (bool isIdle = false;; isIdle = true) {
        if (!token_.isCancelled()) {
            if (auto task = take(worker)) {
                ++active_;
                return task;
            }
        }
        if (active_ == 0 || token_.isCancelled()) {
            wake_.notify_all();
            return std::nullopt;
        }
        if (!isIdle) {
            lock.unlock();
            visitor_.idle();
            lock.lock();
            continue;
        }
        ++waiting_;
        wake_.wait(lock);
        --waiting_;
    }
}

/// With the mutex held: the thread's own deepest folder, else a root, else the oldest folder of
/// another thread, which likely has most below it.
std::optional<TreeWalk::Task> TreeWalk::take(std::size_t worker) {
    if (auto& own = stacks_[worker]; !own.empty()) return takeChild(own, std::prev(own.end()));
    if (!roots_.empty()) {
        Task task;
        task.root = std::move(roots_.front());
        roots_.pop_front();
        return task;
    }
    for (std::size_t i = 1; i < stacks_.size(); ++i)
        if (auto& other = stacks_[(worker + i) % stacks_.size()]; !other.empty())
            return takeChild(other, other.begin());
    return std::nullopt;
}

TreeWalk::Task TreeWalk::takeChild(std::deque<FolderRef>& stack,
                                   std::deque<FolderRef>::iterator from) {
    Folder& parent = **from;
    Task task;
    task.name = parent.children_.c_str() + parent.nextChild_;
    parent.nextChild_ += task.name.size() + 1;
    task.parent = *from;
    task.parentReader = parent.reader_;
    if (parent.nextChild_ < parent.children_.size()) return task;
    if (parent.reader_) --open_;
    parent.reader_.reset();
    stack.erase(from);
    return task;
}

/// With the mutex held: the folder that will be needed last gives up its descriptor.
TreeWalk::ReaderRef TreeWalk::closeOldest() {
    for (auto& stack : stacks_) {
        for (FolderRef& folder : stack) {
            if (!folder->reader_) continue;
            --open_;
            return std::move(folder->reader_);
        }
    }
    return nullptr;
}

/// Null when it is not to be entered or cannot be opened.
TreeWalk::FolderRef TreeWalk::open(Task& task) {
    auto folder = std::make_shared<Folder>();
    if (task.root) {
        folder->path_ = task.root->url.path();
        folder->root_ = task.root->index;
        folder->holdsSkipped_ = !skipped_.empty();
    } else {
        folder->path_ = joined(task.parent->path_, task.name);
        folder->root_ = task.parent->root_;
        folder->depth_ = task.parent->depth_ + 1;
        if (task.parent->holdsSkipped_) {
            if (skipped_.contains(folder->path_)) return nullptr;
            folder->holdsSkipped_ = std::any_of(
                skipped_.begin(), skipped_.end(),
                [&](const std::string& path) { return isStrictlyBelow(path, folder->path_); });
        }
    }
    try {
        if (task.root) {
            folder->reader_ = platform_.files->openFolder(task.root->url);
        } else {
            const ReaderRef parent = task.parentReader ? task.parentReader : reopen(task);
            folder->reader_ = parent->open(task.name.c_str());
        }
    } catch (const std::system_error& error) {
        // A name that is gone, or is no folder any more, is none of anyone's concern.
        const int reason = error.code().value();
        if (task.root || (reason != ENOENT && reason != ENOTDIR && reason != ELOOP))
            visitor_.unreadable(folder->url(), reason);
        return nullptr;
    }
    return folder;
}

/// Opens the parent of a task again, and keeps it open for the children that it has left.
TreeWalk::ReaderRef TreeWalk::reopen(const Task& task) {
    ReaderRef reader = platform_.files->openFolder(task.parent->url());
    ReaderRef closing;
    const std::lock_guard lock(mutex_);
    Folder& parent = *task.parent;
    if (!parent.reader_ && parent.nextChild_ < parent.children_.size()) {
        parent.reader_ = reader;
        if (++open_ > mostOpen_) closing = closeOldest();
    }
    return reader;
}

void TreeWalk::read(Folder& folder) {
    try {
        for (;;) {
            if (token_.isCancelled()) return;
            const auto entries = folder.reader_->read();
            if (entries.empty()) break;
            visitor_.visit(folder, entries);
        }
    } catch (const std::system_error& error) {
        visitor_.unreadable(folder.url(), error.code().value());
    }
    visitor_.leave(folder);
}

std::string TreeWalker::Folder::pathOf(std::string_view name) const { return joined(path_, name); }

void TreeWalker::Folder::enter(std::string_view name) {
    children_ += name;
    children_ += '\0';
}

TreeWalker::TreeWalker(std::vector<URL> roots, TaskPool& pool)
    : roots_(std::move(roots)), pool_(pool) {}

void TreeWalker::setEntersMount(std::function<bool(const Mount&)> entersMount) {
    entersMount_ = std::move(entersMount);
}

std::size_t TreeWalker::threadCount() const { return pool_.threadCount(); }

void TreeWalker::walk(Visitor& visitor, const CancelToken& token) {
    TreeWalk walk(roots_, entersMount_, threadCount(), mostOpen_, visitor, token);
    pool_.forEach(threadCount(), [&](std::size_t worker) { walk.work(worker); });
}

}  // namespace tarn
