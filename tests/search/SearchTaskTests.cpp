#include <atomic>
#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "TarnCore/search/SearchTask.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

SearchOptions optionsFor(std::vector<std::string> terms, std::vector<URL> roots) {
    SearchOptions options;
    options.query.terms = std::move(terms);
    options.roots = std::move(roots);
    return options;
}

std::vector<std::string> pathsOf(const std::vector<FileItem>& items, const URL& root) {
    std::vector<std::string> paths;
    for (const FileItem& item : items)
        paths.push_back(item.path().substr(root.isRoot() ? 0 : root.path().size() + 1));
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::vector<std::string> found(SearchOptions options, const URL& root) {
    return pathsOf(SearchTask(std::move(options)).runAll(), root);
}

/// Lets a test wait for what a search does on its threads.
class Waiter {
public:
    void set() {
        const std::lock_guard lock(mutex_);
        isSet_ = true;
        changed_.notify_all();
    }
    void wait() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return isSet_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isSet_ = false;
};

TEST(SearchTask, findsNamesWithEverythingInTheirItems) {
    const TestFolder root;
    root.file("a/Invoice 1.pdf", "12345");
    root.file("a/b/invoices\xff.txt");
    root.file("a/b/line\nfeed invoice");
    root.file("a/other.txt");
    root.folder("INVOICES");
    root.link("invoice link", "a");
    SearchTask task(optionsFor({"invoices"}, {root.url()}));
    const auto items = task.runAll();
    EXPECT_THAT(pathsOf(items, root.url()),
                ElementsAre("INVOICES", "a/Invoice 1.pdf", "a/b/invoices\xff.txt",
                            "a/b/line\nfeed invoice", "invoice link"));
    for (const FileItem& item : items) EXPECT_EQ(item, *FileItem::load(item.url));
    EXPECT_EQ(task.visitedCount(), 8);
}

TEST(SearchTask, leavesOutWhatPeopleDidNotPutThere) {
    const MemoryPlatform machine;
    const ScopedPlatform scope(machine.services());
    const URL home = Paths::home();
    const auto add = [&](const char* path) { machine.files->addFile(home.appending(path)); };
    for (const char* path : {"x", "Documents/x", "Documents/Library/x", "Library/x", ".dot/x",
                             "Documents/.x", ".config/x", ".local/share/program/x", "listed/x",
                             "Photos.photoslibrary/x", "snap/program/x"})
        add(path);
    machine.files->addFile(home.appending(".hidden"), "listed\n");
    machine.files->addFile(Paths::trash().appending("x"));
    const std::string inTrash = Paths::trash().path().substr(home.path().size() + 1) + "/x";

    auto options = optionsFor({"x"}, {home});
    EXPECT_THAT(found(options, home), ElementsAre("Documents/Library/x", "Documents/x", "x"));
    options.includeHidden = true;
    EXPECT_THAT(found(options, home), ElementsAre(".dot/x", "Documents/.x", "Documents/Library/x",
                                                  "Documents/x", "listed/x", "x"));
    options.query.terms = {"listed"};
    EXPECT_TRUE(SearchTask(options).runAll().at(0).isHidden);
    options.query.terms = {"x"};
    options.includeHidden = false;
    options.hidesTrash = false;
    EXPECT_THAT(found(options, home),
                ElementsAre(inTrash, "Documents/Library/x", "Documents/x", "x"));
    // Who searches inside such a folder wants what is there.
    const URL config = home.appending(".config");
    EXPECT_THAT(found(optionsFor({"x"}, {config}), config), ElementsAre("x"));
    const URL share = home.appending(".local/share");
    EXPECT_THAT(found(optionsFor({"x"}, {share}), share), ElementsAre("program/x"));
    EXPECT_THAT(found(optionsFor({"x"}, {home, config}), home),
                ElementsAre(".config/x", "Documents/Library/x", "Documents/x", "x"));
}

TEST(SearchTask, deliversAFileOfSeveralRootsOnce) {
    const TestFolder root;
    root.file("a/b/x 1");
    root.file("a/x 2");
    root.link("link", "a/b");
    EXPECT_THAT(
        found(optionsFor({"x"}, {root / "a", root / "a/b", root.url(), root / "link"}), root.url()),
        ElementsAre("a/b/x 1", "a/x 2"));
}

TEST(SearchTask, survivesLoopsAndClosedAndVanishingFolders) {
    const MemoryPlatform machine;
    const ScopedPlatform scope(machine.services());
    const URL root = URL::fromPath("/data");
    for (const char* path : {"good/x", "locked/x", "gone/x", "broken/x", "vanished x"})
        machine.files->addFile(root.appending(path));
    machine.files->addLink(root.appending("loop x"), "loop x");
    machine.files->addLink(root.appending("good/up x"), "..");
    machine.files->failWith(root.appending("locked"), EACCES);
    machine.files->failWith(root.appending("gone"), ENOENT);
    machine.files->failWith(root.appending("broken"), EIO);
    machine.files->failWith(root.appending("vanished x"), ENOENT);
    EXPECT_THAT(found(optionsFor({"x"}, {root, URL::fromPath("/missing")}), root),
                ElementsAre("good/up x", "good/x", "loop x"));
}

TEST(SearchTask, deliversExactlyAsManyAsTheLimit) {
    const MemoryPlatform machine;
    const ScopedPlatform scope(machine.services());
    const URL root = URL::fromPath("/data");
    for (int i = 0; i < 2000; ++i)
        machine.files->addFile(root.appending(std::to_string(i % 40) + "/x " + std::to_string(i)));
    for (const std::int64_t limit : {0, 1, 199, 200, 201, 1999, 2000, 5000}) {
        SCOPED_TRACE(limit);
        auto options = optionsFor({"x"}, {root});
        options.limit = limit;
        SearchTask task(options);
        const auto items = task.runAll();
        EXPECT_EQ(items.size(), static_cast<std::size_t>(std::min<std::int64_t>(limit, 2000)));
        std::set<URL> distinct;
        for (const FileItem& item : items) distinct.insert(item.url);
        EXPECT_EQ(distinct.size(), items.size());
    }
}

TEST(SearchTask, handsOnBatchesOneAtATimeAndThenIsDone) {
    const MemoryPlatform machine;
    const ScopedPlatform scope(machine.services());
    for (int i = 0; i < 3000; ++i)
        machine.files->addFile(
            URL::fromPath("/data/" + std::to_string(i % 50) + "/x " + std::to_string(i)));
    Waiter done;
    std::atomic<int> inside = 0;
    std::atomic<bool> overlapped = false, wasDone = false, cameAfterDone = false;
    std::size_t count = 0;
    int doneCalls = 0;
    {
        SearchTask task(optionsFor({"x"}, {URL::fromPath("/data")}));
        task.start(
            [&](std::vector<FileItem> items) {
                if (++inside > 1) overlapped = true;
                if (wasDone) cameAfterDone = true;
                EXPECT_FALSE(items.empty());
                count += items.size();
                --inside;
            },
            [&] {
                wasDone = true;
                ++doneCalls;
                done.set();
            });
        done.wait();
    }
    EXPECT_EQ(count, 3000U);
    EXPECT_EQ(doneCalls, 1);
    EXPECT_FALSE(overlapped || cameAfterDone);
}

TEST(SearchTask, stopsWhenItsReceiverCancels) {
    const MemoryPlatform machine;
    const ScopedPlatform scope(machine.services());
    for (int i = 0; i < 3000; ++i)
        machine.files->addFile(URL::fromPath("/data/" + std::to_string(i) + "/x"));
    Waiter done;
    int batches = 0;
    SearchTask task(optionsFor({"x"}, {URL::fromPath("/data")}));
    task.start(
        [&](std::vector<FileItem>) {
            ++batches;
            task.cancel();
        },
        [&] { done.set(); });
    done.wait();
    EXPECT_EQ(batches, 1);
    EXPECT_LT(machine.files->opened().size(), 3001U);
}

TEST(SearchTask, endsWhenItIsThrownAway) {
    const MemoryPlatform machine;
    const ScopedPlatform scope(machine.services());
    for (int i = 0; i < 1000; ++i)
        machine.files->addFile(URL::fromPath("/data/" + std::to_string(i) + "/x"));
    std::atomic<bool> isGone = false, calledLate = false;
    std::atomic<int> doneCalls = 0;
    for (int i = 0; i < 20; ++i) {
        isGone = false;
        {
            SearchTask task(optionsFor({"x"}, {URL::fromPath("/data")}));
            task.start([&](std::vector<FileItem>) { calledLate = calledLate || isGone; },
                       [&] { ++doneCalls; });
        }
        isGone = true;
    }
    EXPECT_FALSE(calledLate);
    EXPECT_EQ(doneCalls, 20);
}

TEST(SearchTask, looksOnlyInThePlaceThatIsNamed) {
    const MemoryPlatform machine;
    const ScopedPlatform scope(machine.services());
    const URL root = URL::fromPath("/data");
    for (const char* path : {"x", "a/x", "a/b/x", ".secret/x", "c/x"})
        machine.files->addFile(root.appending(path));
    const auto search = [&](PlaceFilter place, std::optional<URL> current = std::nullopt) {
        auto options = optionsFor({"x"}, {root});
        options.query.place = std::move(place);
        options.currentFolder = std::move(current);
        return found(options, root);
    };
    EXPECT_THAT(search(PlaceFilter::folder("/data/a")), ElementsAre("a/b/x", "a/x"));
    const auto opened = machine.files->opened();
    EXPECT_THAT(opened, UnorderedElementsAre(root.appending("a"), root.appending("a/b")));
    EXPECT_THAT(search(PlaceFilter::folder("/data/.secret")), ElementsAre(".secret/x"));
    EXPECT_THAT(search(PlaceFilter::folder("/")), ElementsAre("a/b/x", "a/x", "c/x", "x"));
    EXPECT_THAT(search(PlaceFilter::folder("/elsewhere")), IsEmpty());
    EXPECT_THAT(search(PlaceFilter::currentFolder(), root.appending("c")), ElementsAre("c/x"));
    EXPECT_THAT(search(PlaceFilter::currentFolder()), ElementsAre("a/b/x", "a/x", "c/x", "x"));
    EXPECT_THAT(search(PlaceFilter::named("B")), ElementsAre("a/b/x"));
}

/// Answers every query with the same files, and may fail.
class FixedIndex final : public MetadataIndex {
public:
    std::vector<URL> urls;
    bool fails = false;
    void find(const std::string&, const std::vector<URL>&, const CancelToken&,
              const std::function<void(const std::vector<URL>&)>& onPaths) const override {
        onPaths(urls);
        if (fails) throw Error("The index is broken.");
    }
};

TEST(SearchTask, joinsTheMetadataIndexWithTheWalk) {
    const MemoryPlatform machine;
    const auto index = std::make_shared<FixedIndex>();
    Platform platform = machine.services();
    platform.index = index;
    const ScopedPlatform scope(platform);
    const URL root = URL::fromPath("/data");
    for (const char* path : {"a/x.pdf", "b/x.pdf", "b/words.pdf", ".h/x.pdf", "b/x.txt"})
        machine.files->addFile(root.appending(path));
    machine.files->addFile(URL::fromPath("/elsewhere/x.pdf"));
    // Names are the index's business: it looks for the words in texts as well.
    for (const char* path : {"/data/a/x.pdf", "/data/b/words.pdf", "/data/b/x.txt",
                             "/data/.h/x.pdf", "/elsewhere/x.pdf", "/data/gone.pdf"})
        index->urls.push_back(URL::fromPath(path));
    auto options = optionsFor({"x"}, {root});
    options.query.kinds = {SearchKind::pdf};
    for (const bool fails : {false, true}) {
        index->fails = fails;
        EXPECT_THAT(found(options, root), ElementsAre("a/x.pdf", "b/words.pdf", "b/x.pdf"));
    }
    options.useSpotlight = false;
    EXPECT_THAT(found(options, root), ElementsAre("a/x.pdf", "b/x.pdf"));

    // Only the index knows when files were opened.
    options.useSpotlight = true;
    options.query.date = DateFilter{};
    options.query.date->field = DateField::opened;
    const auto opened = machine.files->opened().size();
    found(options, root);
    EXPECT_EQ(machine.files->opened().size(), opened);
    options.query.containing = {"phrase"};
    found(options, root);
    EXPECT_GT(machine.files->opened().size(), opened);

    // A scratch tree has no index of its own.
    options.query.containing.clear();
    const auto before = machine.files->opened().size();
    const ScopedEnvironment isolation{{"TARN_ISOLATED_ROOT", "/scratch"}};
    found(options, root);
    EXPECT_GT(machine.files->opened().size(), before);
}

TEST(SearchTask, addsPicturesThatShowWhatIsDescribed) {
    const MemoryPlatform machine;
    const ScopedPlatform scope(machine.services());
    const URL root = URL::fromPath("/data");
    for (const char* path : {"1.jpg", "2.jpg", "3.jpg", "my dog.txt"})
        machine.files->addFile(root.appending(path));
    std::vector<std::string> asked;
    SearchTask::setDescribeImages([&](const std::string& description) {
        asked.push_back(description);
        return std::unordered_map<std::string, float>{{"/data/1.jpg", 0.30F},
                                                      {"/data/2.jpg", 0.28F},
                                                      {"/data/3.jpg", 0.26F},
                                                      {"/elsewhere/4.jpg", 0.30F}};
    });
    SearchTask task(optionsFor({"dog"}, {root}));
    EXPECT_THAT(pathsOf(task.runAll(), root), ElementsAre("1.jpg", "2.jpg", "my dog.txt"));
    EXPECT_THAT(asked, ElementsAre("a photo of dog"));
    EXPECT_EQ(task.imageScore(root.appending("2.jpg")), 0.28F);
    EXPECT_EQ(task.imageScore(root.appending("my dog.txt")), std::nullopt);

    auto documents = optionsFor({"dog"}, {root});
    documents.query.kinds = {SearchKind::document};
    EXPECT_THAT(found(documents, root), ElementsAre("my dog.txt"));
    EXPECT_EQ(asked.size(), 1U);
    SearchTask::setDescribeImages(nullptr);
}

}  // namespace
}  // namespace tarn
