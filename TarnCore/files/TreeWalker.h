#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/platform/FileSystem.h"
#include "TarnCore/platform/Volumes.h"

namespace tarn {

/// Walks everything below some folders on several threads, and leaves to a Visitor what the names
/// mean and which folders to go into.
///
/// A link is never followed, except where a root is one. Mounts that hold no user's files, or whose
/// server may be dead, are not entered. A folder below two roots is read once. What cannot be read
/// is reported and left out; what vanishes on the way is left out.
///
/// Each thread goes depth first and opens a folder relative to its parent, so that the memory used
/// grows with depth and with the folders still to be read, not with the files. A thread without
/// work takes the oldest folder that another has left.
///
/// A root or a folder on a server that no longer answers keeps one thread until the kernel gives
/// up. The other threads go on meanwhile, but walk() returns only when it has come back.
class TreeWalker {
public:
    /// The folder being read. Valid during the call it is given to.
    class Folder {
    public:
        /// Absolute and standardised, below the root as the root was given.
        const std::string& path() const { return path_; }
        URL url() const { return URL::fromPath(path_); }
        /// The path of a child.
        std::string pathOf(std::string_view name) const;
        /// 0 for a root.
        std::size_t depth() const { return depth_; }
        /// Which of the roots it lies below.
        std::size_t root() const { return root_; }
        /// Which thread this is: less than TreeWalker::threadCount(). Two calls with the same
        /// number never overlap, so that a visitor may keep buffers by it.
        std::size_t worker() const { return worker_; }
        const FolderReader& reader() const { return *reader_; }
        /// Has a child folder walked too. Unless it is a folder, nothing comes of it.
        void enter(std::string_view name);

    private:
        friend class TreeWalk;
        std::string path_;
        std::shared_ptr<FolderReader> reader_;
        std::string children_;  ///< Names to enter, each with a NUL behind it.
        std::size_t nextChild_ = 0;
        std::size_t depth_ = 0;
        std::size_t root_ = 0;
        std::size_t worker_ = 0;
        bool holdsSkipped_ = false;  ///< A path that is not to be entered lies below.
    };

    /// Called from several threads at once, for one folder from one thread only. Must not throw.
    class Visitor {
    public:
        virtual ~Visitor() = default;
        /// Some of the names of a folder, in the order of the disk; any number of calls a folder.
        virtual void visit(Folder& folder, std::span<const FolderEntry> entries) = 0;
        /// All names were given. The folders entered are read after this.
        virtual void leave(Folder&) {}
        /// A folder could not be opened or not be read to its end.
        virtual void unreadable(const URL&, int /*errnum*/) {}
        /// The thread calling has nothing to do until another finds more folders.
        virtual void idle() {}
    };

    explicit TreeWalker(std::vector<URL> roots, TaskPool& pool = TaskPool::shared());

    /// Asked once for every mount below a root; one that holds a root is not asked about. Without
    /// a call to this, isLocal.
    void setEntersMount(std::function<bool(const Mount&)> entersMount);
    static bool isLocal(const Mount& mount) { return !mount.isPseudo && !mount.isNetwork; }

    /// Folders kept open for opening their children from, all threads together. Those beyond are
    /// closed, and opened again by their path.
    void setMostOpenFolders(std::size_t count) { mostOpen_ = count; }

    std::size_t threadCount() const;

    /// Works on the calling thread and the pool, and returns when everything was visited or soon
    /// after `token` was set.
    void walk(Visitor& visitor, const CancelToken& token = {});

private:
    std::vector<URL> roots_;
    TaskPool& pool_;
    std::function<bool(const Mount&)> entersMount_ = isLocal;
    std::size_t mostOpen_ = 128;
};

}  // namespace tarn
