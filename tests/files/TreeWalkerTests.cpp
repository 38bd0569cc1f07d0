#include <atomic>
#include <cerrno>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>

#include <sys/stat.h>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "TarnCore/files/TreeWalker.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Notes every path, and goes everywhere.
class Recorder : public TreeWalker::Visitor {
public:
    void visit(TreeWalker::Folder& folder, std::span<const FolderEntry> entries) override {
        if (busy_[folder.worker()].exchange(true)) overlapped = true;
        {
            const std::lock_guard lock(mutex_);
            for (const FolderEntry& entry : entries) {
                paths.insert(folder.pathOf(entry.view()));
                if (entry.type == FileType::directory) folder.enter(entry.view());
            }
        }
        if (onVisit) onVisit(folder);
        busy_[folder.worker()] = false;
    }
    void leave(TreeWalker::Folder& folder) override {
        const std::lock_guard lock(mutex_);
        folders.push_back(folder.path());
    }
    void unreadable(const URL& url, int errnum) override {
        const std::lock_guard lock(mutex_);
        unreadables[url.path()] = errnum;
    }

    std::multiset<std::string> paths;
    std::vector<std::string> folders;
    std::map<std::string, int> unreadables;
    std::function<void(const TreeWalker::Folder&)> onVisit;
    std::atomic<bool> overlapped = false;

private:
    std::mutex mutex_;
    std::atomic<bool> busy_[16] = {};
};

std::vector<std::string> below(const URL& root, const std::multiset<std::string>& paths) {
    std::vector<std::string> relative;
    for (const std::string& path : paths) relative.push_back(path.substr(root.path().size() + 1));
    return relative;
}

TEST(TreeWalker, visitsEverythingOnceWhateverItsThreadsAndDescriptors) {
    const TestFolder root;
    std::multiset<std::string> expected;
    const auto add = [&](const std::string& relative, bool isFolder) {
        expected.insert((isFolder ? root.folder(relative) : root.file(relative)).path());
    };
    for (int i = 0; i < 12; ++i) {
        const std::string outer = "folder " + std::to_string(i);
        add(outer, true);
        for (int j = 0; j < 12; ++j) {
            const std::string inner = outer + "/\xff" + std::to_string(j);
            add(inner, true);
            add(inner + "/empty", true);
            for (int k = 0; k < i; ++k) add(inner + "/file\n" + std::to_string(k), false);
        }
    }
    for (const std::size_t threads : {1, 2, 8}) {
        for (const std::size_t open : {0, 1, 128}) {
            SCOPED_TRACE(std::to_string(threads) + " threads, " + std::to_string(open) + " open");
            TaskPool pool(threads);
            TreeWalker walker({root.url()}, pool);
            walker.setMostOpenFolders(open);
            Recorder recorder;
            walker.walk(recorder);
            EXPECT_EQ(recorder.paths, expected);
            EXPECT_EQ(recorder.folders.size(), 1 + 12 + 144 * 2);
            EXPECT_THAT(recorder.unreadables, IsEmpty());
            EXPECT_FALSE(recorder.overlapped);
        }
    }
}

TEST(TreeWalker, followsNoLinkButTheRootItself) {
    const TestFolder root;
    root.file("tree/folder/file");
    root.link("tree/folder/up", "..");
    root.link("tree/loop", "loop");
    root.link("tree/out", "/");
    root.link("entrance", "tree");

    TreeWalker walker({root / "entrance"});
    Recorder recorder;
    // A visitor that mistakes a link for a folder gets nothing from it.
    recorder.onVisit = [](const TreeWalker::Folder& folder) {
        if (folder.depth() == 0) const_cast<TreeWalker::Folder&>(folder).enter("out");
    };
    walker.walk(recorder);
    EXPECT_THAT(below(root / "entrance", recorder.paths),
                ElementsAre("folder", "folder/file", "folder/up", "loop", "out"));
    EXPECT_THAT(recorder.unreadables, IsEmpty());
}

TEST(TreeWalker, readsFoldersBelowSeveralRootsOnce) {
    const TestFolder root;
    root.file("a/b/c/file");
    root.file("a/bc/other");
    root.link("link", "a/b");
    TreeWalker walker(
        {root / "a/b", root / "a", root / "a", root / "link", root / "missing", root / "a/b/c"});
    Recorder recorder;
    walker.walk(recorder);
    EXPECT_THAT(below(root.url(), recorder.paths),
                ElementsAre("a/b", "a/b/c", "a/b/c/file", "a/bc", "a/bc/other"));
    EXPECT_THAT(recorder.unreadables,
                ElementsAre(testing::Pair((root / "missing").path(), ENOENT)));
}

TEST(TreeWalker, entersOnlyMountsThatHoldFilesAndAnswer) {
    const TestFolder root;
    for (const char* name : {"disk/file", "server/file", "server/disk/file", "proc/file"})
        root.file(name);
    root.link("entrance", ".");
    const auto mount = [&](const char* at, bool isPseudo, bool isNetwork) {
        Mount made;
        made.mountPoint = root / at;
        made.isPseudo = isPseudo;
        made.isNetwork = isNetwork;
        return made;
    };
    Platform platform = Platform::current();
    const auto volumes = std::make_shared<MemoryVolumes>();
    volumes->setMounts({mount("", false, false), mount("disk", false, false),
                        mount("proc", true, false), mount("server", false, true),
                        mount("server/disk", false, false)});
    platform.volumes = volumes;
    const ScopedPlatform scope(platform);

    const auto walk = [](const URL& from, bool everywhere = false) {
        TreeWalker walker({from});
        if (everywhere) walker.setEntersMount([](const Mount&) { return true; });
        Recorder recorder;
        walker.walk(recorder);
        return below(from, recorder.paths);
    };
    EXPECT_THAT(walk(root.url()), ElementsAre("disk", "disk/file", "entrance", "proc", "server"));
    // The kernel knows its mounts by another path than the one walked.
    EXPECT_THAT(walk(root / "entrance"),
                ElementsAre("disk", "disk/file", "entrance", "proc", "server"));
    EXPECT_THAT(walk(root / "proc"), ElementsAre("file"));
    EXPECT_THAT(walk(root / "server"), ElementsAre("disk", "disk/file", "file"));
    EXPECT_EQ(walk(root.url(), true).size(), 9U);
}

TEST(TreeWalker, reportsWhatCannotBeReadAndGoesOn) {
    const MemoryPlatform machine;
    const URL root = URL::fromPath("/tree");
    for (const char* name : {"locked/file", "broken/file", "gone/file", "good/file"})
        machine.files->addFile(root.appending(name));
    machine.files->failWith(root.appending("locked"), EACCES);
    machine.files->failWith(root.appending("broken"), EIO);
    machine.files->failWith(root.appending("gone"), ENOENT);
    const ScopedPlatform scope(machine.services());
    TreeWalker walker({root});
    Recorder recorder;
    walker.walk(recorder);
    EXPECT_THAT(below(root, recorder.paths),
                ElementsAre("broken", "gone", "good", "good/file", "locked"));
    EXPECT_THAT(recorder.unreadables, ElementsAre(testing::Pair("/tree/broken", EIO),
                                                  testing::Pair("/tree/locked", EACCES)));
}

TEST(TreeWalker, passesOverFoldersThatVanishUnderIt) {
    const TestFolder root;
    for (int i = 0; i < 50; ++i) root.file("folder " + std::to_string(i) + "/inner/file");
    TaskPool pool(2);
    TreeWalker walker({root.url()}, pool);
    walker.setMostOpenFolders(0);
    Recorder recorder;
    recorder.onVisit = [&](const TreeWalker::Folder& folder) {
        std::error_code ignored;
        if (folder.depth() == 1) std::filesystem::remove_all(folder.path(), ignored);
    };
    walker.walk(recorder);
    for (const auto& [path, errnum] : recorder.unreadables) ADD_FAILURE() << path << errnum;
    EXPECT_GE(recorder.folders.size(), 51U);
}

TEST(TreeWalker, reachesFoldersWhosePathsAreTooLongForTheKernel) {
    const TestFolder root;
    const std::string name(200, 'n');
    constexpr std::size_t depth = 60;  // 12,000 bytes
    int parent = open(root.url().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    std::size_t made = 0;
    for (; made < depth; ++made) {
        ASSERT_EQ(mkdirat(parent, name.c_str(), 0700), 0);
        // A second child keeps each folder waiting, and so its descriptor closing.
        ASSERT_EQ(mkdirat(parent, "side", 0700), 0);
        const int child = openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ASSERT_GE(child, 0);
        close(parent);
        parent = child;
    }
    close(parent);
    for (const std::size_t open : {0, 2, 128}) {
        SCOPED_TRACE(open);
        TreeWalker walker({root.url()});
        walker.setMostOpenFolders(open);
        Recorder recorder;
        walker.walk(recorder);
        EXPECT_EQ(recorder.folders.size(), 1 + 2 * depth);
    }
}

TEST(TreeWalker, stopsSoonAfterItIsCancelled) {
    const TestFolder root;
    for (int i = 0; i < 200; ++i) root.folder("folder " + std::to_string(i));
    const CancelToken token;
    TaskPool pool(2);
    TreeWalker walker({root.url()}, pool);
    std::atomic<int> visits = 0;
    Recorder recorder;
    recorder.onVisit = [&](const TreeWalker::Folder&) {
        if (++visits == 1) token.cancel();
    };
    walker.walk(recorder, token);
    EXPECT_THAT(recorder.folders, IsEmpty());

    Recorder after;
    walker.walk(after, token);
    EXPECT_THAT(after.paths, IsEmpty());
}

}  // namespace
}  // namespace tarn
