#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <mutex>
#include <set>

#include <sys/stat.h>

#include <unistd.h>

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/platform/linux/ChangeBurst.h"
#include "TarnCore/platform/linux/InotifyWatching.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using Paths = std::vector<std::string>;

TEST(ChangeBurst, tellsTheFirstAtOnceAndTheRestTogether) {
    ChangeBurst burst(0.25, {"/root"});
    EXPECT_EQ(burst.due(10), std::nullopt);
    burst.add("/root/a");
    EXPECT_EQ(burst.due(10), 0);
    EXPECT_EQ(burst.take(10), Paths{"/root/a"});
    EXPECT_EQ(burst.due(10), std::nullopt);

    burst.add("/root/b");
    burst.add("/root/a");
    burst.add("/root/b");
    EXPECT_DOUBLE_EQ(*burst.due(10.125), 0.125);
    EXPECT_EQ(burst.due(10.25), 0);
    EXPECT_EQ(burst.take(10.25), (Paths{"/root/b", "/root/a"}));
    // After a quiet time the next burst begins at once again.
    burst.add("/root/c");
    EXPECT_EQ(burst.due(20), 0);
}

TEST(ChangeBurst, tellsTheRootsWhenThereIsTooMuchToTell) {
    ChangeBurst burst(1, {"/one", "/two"});
    for (std::size_t i = 0; i <= ChangeBurst::mostPaths; ++i) burst.add(std::to_string(i));
    burst.add("/one/more");
    EXPECT_EQ(burst.take(0), (Paths{"/one", "/two"}));
    burst.add("/one/more");
    EXPECT_EQ(burst.take(5), Paths{"/one/more"});
}

/// Collects what a watch tells and waits for it.
class Told {
public:
    void add(const Paths& paths) {
        const std::lock_guard lock(mutex_);
        all_.insert(paths.begin(), paths.end());
        arrived_.notify_all();
    }
    /// True as soon as it was told; false after a time in which any machine would have.
    bool waitFor(const URL& url) { return waitForEither(url, url); }
    bool waitForEither(const URL& a, const URL& b) {
        std::unique_lock lock(mutex_);
        return arrived_.wait_for(lock, std::chrono::seconds(20), [&] {
            return all_.contains(a.path()) || all_.contains(b.path());
        });
    }
    bool has(const URL& url) {
        const std::lock_guard lock(mutex_);
        return all_.contains(url.path());
    }
    void clear() {
        const std::lock_guard lock(mutex_);
        all_.clear();
    }

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::set<std::string> all_;
};

/// Nothing is noticed by looking again and again.
constexpr InotifyWatching::Limits neverLooking{.folders = 0, .pollInterval = 1e6};

class Watching : public testing::Test {
protected:
    void watch(const URL& root, WatchDepth depth, InotifyWatching::Limits limits = {}) {
        watch_ = InotifyWatching(limits).watch({root}, depth, 0.01, queue_,
                                               [this](const Paths& paths) { told_.add(paths); });
    }
    void remove(const char* name) { ASSERT_EQ(::remove((folder_ / name).c_str()), 0); }
    void rename(const char* from, const char* to) {
        ASSERT_EQ(::rename((folder_ / from).c_str(), (folder_ / to).c_str()), 0);
    }

    TestFolder folder_;
    Told told_;
    SerialQueue queue_{"test.watcher"};
    std::unique_ptr<FolderWatch> watch_;
};

TEST_F(Watching, tellsWhatHappensInAFolder) {
    folder_.file("old", "x");
    folder_.file("sub/inner");
    watch(folder_.url(), WatchDepth::children);
    folder_.file("new\nname");
    EXPECT_TRUE(told_.waitFor(folder_ / "new\nname"));
    rename("old", "other");
    EXPECT_TRUE(told_.waitFor(folder_ / "old"));
    EXPECT_TRUE(told_.waitFor(folder_ / "other"));
    told_.clear();
    ASSERT_EQ(chmod((folder_ / "other").c_str(), 0600), 0);
    EXPECT_TRUE(told_.waitFor(folder_ / "other"));
    remove("new\nname");
    EXPECT_TRUE(told_.waitFor(folder_ / "new\nname"));
    // What is deeper is none of its business.
    folder_.file("sub/deeper");
    folder_.file("last");
    EXPECT_TRUE(told_.waitFor(folder_ / "last"));
    EXPECT_FALSE(told_.has(folder_ / "sub/deeper"));
}

TEST_F(Watching, tellsWhatHappensBelowFoldersThatWereThereAndThatCome) {
    folder_.file("a/b/c/old");
    watch(folder_.url(), WatchDepth::tree);
    folder_.file("a/b/c/new");
    // Told by itself, or by its folder when it came before the folder was watched.
    EXPECT_TRUE(told_.waitForEither(folder_ / "a/b/c/new", folder_ / "a/b/c"));
    // The files come into folders that nobody could have watched yet.
    for (int i = 0; i < 20; ++i) folder_.file("x" + std::to_string(i) + "/y/z/quick", "content");
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(told_.waitFor(folder_ / ("x" + std::to_string(i) + "/y/z/quick"))) << i;
    // A folder that moved is known by its new name only.
    rename("x0", "moved");
    EXPECT_TRUE(told_.waitFor(folder_ / "moved"));
    folder_.file("sync");
    EXPECT_TRUE(told_.waitFor(folder_ / "sync"));
    told_.clear();
    folder_.file("moved/y/z/later");
    EXPECT_TRUE(told_.waitFor(folder_ / "moved/y/z/later"));
    EXPECT_FALSE(told_.has(folder_ / "x0/y/z/later"));
}

TEST_F(Watching, tellsWhenTheFolderItselfGoesAndWhenItIsBack) {
    folder_.folder("root");
    watch(folder_ / "root", WatchDepth::tree, neverLooking);
    remove("root");
    EXPECT_TRUE(told_.waitFor(folder_ / "root"));
    told_.clear();
    folder_.folder("root");
    EXPECT_TRUE(told_.waitFor(folder_ / "root"));
    folder_.file("root/file");
    EXPECT_TRUE(told_.waitFor(folder_ / "root/file"));
    told_.clear();
    rename("root", "elsewhere");
    EXPECT_TRUE(told_.waitFor(folder_ / "root"));
}

TEST_F(Watching, waitsForAFolderThatIsNotThereWithoutLooking) {
    const struct {
        const char* claim;
        std::function<void()> come;
    } cases[] = {
        {"one level after the other", [&] { folder_.folder("new/\xff/deep"); }},
        {"from elsewhere, whole",
         [&] {
             folder_.folder("made/\xff/deep");
             rename("made", "new");
         }},
        {"after a part of the way came and went",
         [&] {
             folder_.folder("new/\xff");
             rename("new", "old");
             folder_.folder("new/\xff/deep");
         }},
        {"where a file was",
         [&] {
             folder_.file("new", "not a folder");
             remove("new");
             folder_.folder("new/\xff/deep");
         }},
    };
    for (const auto& [claim, come] : cases) {
        SCOPED_TRACE(claim);
        watch(folder_ / "new/\xff/deep", WatchDepth::tree, neverLooking);
        folder_.file("other", "of no interest");
        told_.clear();
        come();
        EXPECT_TRUE(told_.waitFor(folder_ / "new/\xff/deep"));
        folder_.file("new/\xff/deep/file");
        EXPECT_TRUE(told_.waitFor(folder_ / "new/\xff/deep/file"));
        watch_.reset();
        std::filesystem::remove_all((folder_ / "new").path());
        std::filesystem::remove_all((folder_ / "old").path());
    }
}

TEST_F(Watching, waitsBelowAFolderThatIsRenamedAndReplaced) {
    folder_.folder("a/b");
    watch(folder_ / "a/b/c", WatchDepth::children, neverLooking);
    rename("a", "z");
    folder_.folder("z/b/c");
    folder_.folder("a/b/c");
    EXPECT_TRUE(told_.waitFor(folder_ / "a/b/c"));
    told_.clear();
    folder_.file("a/b/c/file");
    EXPECT_TRUE(told_.waitFor(folder_ / "a/b/c/file"));
}

TEST_F(Watching, looksForAFolderBehindALinkToNothing) {
    folder_.folder("real");
    ASSERT_EQ(symlink("real/later", (folder_ / "link").c_str()), 0);
    watch(folder_ / "link/inner", WatchDepth::children, {.folders = 0, .pollInterval = 0.02});
    folder_.folder("real/later/inner");
    EXPECT_TRUE(told_.waitFor(folder_ / "link/inner"));
}

TEST_F(Watching, tellsTheRootWhenWatchesRunOutAndLooksInstead) {
    folder_.file("a/b/file");
    watch(folder_.url(), WatchDepth::tree, {.folders = 2, .pollInterval = 0.02});
    EXPECT_TRUE(told_.waitFor(folder_.url()));
    folder_.file("a/watched");
    EXPECT_TRUE(told_.waitFor(folder_ / "a/watched"));
    told_.clear();
    folder_.file("a/b/another");
    EXPECT_TRUE(told_.waitFor(folder_ / "a/b"));
}

TEST_F(Watching, looksAtFoldersWithoutInotify) {
    folder_.folder("a/b");
    watch(folder_.url(), WatchDepth::tree,
          {.folders = 0, .pollInterval = 0.02, .hasInotify = false});
    EXPECT_TRUE(told_.waitFor(folder_.url())) << "nobody can say what happened meanwhile";
    told_.clear();
    folder_.file("a/b/new");
    EXPECT_TRUE(told_.waitFor(folder_ / "a/b"));
    folder_.file("direct");
    EXPECT_TRUE(told_.waitFor(folder_.url()));
}

TEST_F(Watching, mayEndInItsOwnCallback) {
    Told ended;
    // The watch belongs to the queue from its beginning to its end.
    queue_.run([&] {
        watch_ = InotifyWatching().watch({folder_.url()}, WatchDepth::children, 0, queue_,
                                         [&](const Paths& paths) {
                                             watch_.reset();
                                             ended.add(paths);
                                         });
    });
    queue_.flush();
    folder_.file("file");
    EXPECT_TRUE(ended.waitFor(folder_ / "file"));
    queue_.flush();
}

TEST_F(Watching, nobodyIsCalledAfterItsEnd) {
    for (int i = 0; i < 50; ++i) {
        bool hasEnded = false;
        auto watch = InotifyWatching().watch({folder_.url()}, WatchDepth::children, 0, queue_,
                                             [&](const Paths&) { EXPECT_FALSE(hasEnded); });
        folder_.file("file" + std::to_string(i));
        watch.reset();
        hasEnded = true;
        queue_.flush();
    }
}

}  // namespace
}  // namespace tarn
