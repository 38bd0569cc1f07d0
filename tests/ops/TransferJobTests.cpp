#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/SpeedMeter.h"
#include "TarnCore/ops/TransferJob.h"
#include "TarnCore/ops/TransferWords.h"
#include "TarnCore/platform/memory/MemoryExtendedAttributes.h"
#include "TarnCore/platform/memory/MemoryFileCopy.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

constexpr ConflictDecision once(ConflictAction action) { return {action, false}; }
constexpr ConflictDecision always(ConflictAction action) { return {action, true}; }

/// A machine in memory: two disks, "/home" and "/usb", and a Trash on the first.
class TransferJobTest : public testing::Test {
protected:
    TransferJobTest() {
        SupportDirectory::useTestFolder();
        disk.addFolder(home("from"));
        disk.addFolder(home("to"));
        disk.addDisk(usb(""));
        disk.addFolder(usb("to"));
    }

    static URL home(std::string_view path) { return URL::fromPath("/home").appending(path); }
    static URL usb(std::string_view path) { return URL::fromPath("/usb").appending(path); }

    TransferResult run(TransferKind kind, std::vector<URL> sources,
                       std::optional<URL> destination) {
        TransferJob job(kind, std::move(sources), std::move(destination));
        TransferResult result;
        job.resolveConflict = resolve;
        job.onFinish = [&](const TransferResult& given) { result = given; };
        job.onProgress = [&](const TransferProgress& progress) {
            states.push_back(progress.state);
            last = progress;
            if (whileRunning) whileRunning(job, progress);
        };
        if (afterEachFile) job.afterEachFile = [&] { afterEachFile(job); };
        job.run();
        return result;
    }
    /// Every path on the disk outside the Trash, with the text of files.
    std::map<std::string, std::string> tree() const {
        std::map<std::string, std::string> tree;
        collect(URL(), tree);
        return tree;
    }
    void collect(const URL& folder, std::map<std::string, std::string>& tree) const {
        const auto reader = disk.openFolder(folder);
        for (auto batch = reader->read(); !batch.empty(); batch = reader->read()) {
            for (const FolderEntry& entry : batch) {
                const URL url = folder.appending(entry.view());
                if (url == *FileOps::privateTrash()) continue;
                if (entry.type == FileType::directory) {
                    collect(url, tree);
                } else if (entry.type == FileType::file) {
                    tree[url.path()] = disk.readFile(url, 100);
                }
            }
        }
    }
    static std::vector<std::string> sentences(const TransferResult& result) {
        std::vector<std::string> sentences;
        for (const TransferFailure& failure : result.failures) sentences.push_back(failure.message);
        return sentences;
    }

    MemoryPlatform machine;
    MemoryFileSystem& disk = *machine.files;
    ScopedPlatform scope{machine.services()};
    std::function<ConflictDecision(const TransferConflict&)> resolve;
    std::function<void(TransferJob&, const TransferProgress&)> whileRunning;
    std::function<void(TransferJob&)> afterEachFile;
    std::vector<TransferState> states;
    TransferProgress last;
};

using Tree = std::map<std::string, std::string>;
using Sentences = std::vector<std::string>;

TEST_F(TransferJobTest, titles) {
    const std::vector<URL> one = {home("from/a.txt")}, two = {home("a"), home("b")};
    EXPECT_EQ(TransferJob(TransferKind::copy, one, home("to")).title(), "Copy “a.txt” to “to”");
    EXPECT_EQ(TransferJob(TransferKind::move, two, home("to")).title(), "Move 2 items to “to”");
    EXPECT_EQ(TransferJob(TransferKind::trash, one, std::nullopt).title(),
              "Move “a.txt” to the Trash");
}

TEST_F(TransferJobTest, copiesAndRecordsWhatItMade) {
    disk.addFile(home("from/a"), "1");
    disk.addFile(home("from/sub/b"), "22");
    const auto result = run(TransferKind::copy, {home("from")}, usb("to"));
    EXPECT_EQ(tree(), (Tree{{"/home/from/a", "1"},
                            {"/home/from/sub/b", "22"},
                            {"/usb/to/from/a", "1"},
                            {"/usb/to/from/sub/b", "22"}}));
    EXPECT_EQ(result.steps, std::vector{Step::create(usb("to/from"))});
    EXPECT_EQ(result.resultURLs, std::vector{usb("to/from")});
    EXPECT_EQ(std::pair(last.totalBytes, last.totalItems), std::pair(3L, 2L));
    EXPECT_EQ(std::pair(last.doneBytes, last.doneItems), std::pair(3L, 2L));
    states.erase(std::unique(states.begin(), states.end()), states.end());
    EXPECT_EQ(states, (std::vector{TransferState::scanning, TransferState::running,
                                   TransferState::finished}));
}

TEST_F(TransferJobTest, movesByRenamingOnOneDiskAndByCopyingToAnother) {
    for (const URL& to : {home("to"), usb("to")}) {
        SCOPED_TRACE(to.path());
        disk.addFile(home("from/a"), "1");
        disk.addFile(home("from/sub/b"), "22");
        const auto result = run(TransferKind::move, {home("from/a"), home("from/sub")}, to);
        EXPECT_EQ(result.steps, (std::vector{Step::move(home("from/a"), to.appending("a")),
                                             Step::move(home("from/sub"), to.appending("sub"))}));
        EXPECT_FALSE(disk.attributes(home("from/a"), Links::keep));
        EXPECT_FALSE(disk.attributes(home("from/sub"), Links::keep));
        EXPECT_EQ(disk.readFile(to.appending("sub/b"), 9), "22");
    }
    // The other disk has it all before the first original goes.
    EXPECT_EQ(machine.copying->flushed(), std::vector{usb("to")});
}

TEST_F(TransferJobTest, notesWhenAMovedItemCame) {
    disk.addFile(home("from/a"), "1");
    disk.addFile(home("from/sub/b"), "22");
    disk.addFile(home("from/stays"), "");
    disk.createLink(home("from/link"), "/home/from/stays");
    run(TransferKind::move, {home("from/a"), home("from/sub"), home("from/link")}, home("to"));
    const std::string now = std::to_string(machine.clock->now().seconds);
    const struct {
        const char* item;
        std::string added;
    } cases[] = {{"to/a", now}, {"to/sub", now}, {"to/sub/b", "none"}, {"from/stays", "none"}};
    for (const auto& c : cases)
        EXPECT_EQ(machine.attributes->get(home(c.item), "tarn.added").value_or("none"), c.added)
            << c.item;
}

TEST_F(TransferJobTest, refusesWhatMakesNoSense) {
    disk.addFile(home("from/sub/a"), "1");
    disk.addLink(home("link"), "/home/from");
    const struct {
        TransferKind kind;
        URL source, to;
        const char* sentence;
    } cases[] = {
        {TransferKind::copy, home("from"), home("from"), "Can’t put “from” inside itself."},
        {TransferKind::move, home("from"), home("from/sub"), "Can’t put “from” inside itself."},
        {TransferKind::copy, home("from"), home("link/sub"), "Can’t put “from” inside itself."},
        {TransferKind::copy, home("gone"), home("to"), "“gone” no longer exists."},
        {TransferKind::move, home("from/sub"), home("from"), nullptr},
    };
    const Tree before = tree();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.to.path());
        const auto result = run(c.kind, {c.source}, c.to);
        EXPECT_EQ(sentences(result), c.sentence ? Sentences{c.sentence} : Sentences{});
        EXPECT_TRUE(result.steps.empty());
        EXPECT_EQ(tree(), before);
    }
}

TEST_F(TransferJobTest, aCopyIntoItsOwnFolderGetsItsCopyName) {
    disk.addFile(home("from/a.txt"), "1");
    const auto result = run(TransferKind::copy, {home("from/a.txt")}, home("from"));
    EXPECT_EQ(result.resultURLs, std::vector{home("from/a copy.txt")});
}

TEST_F(TransferJobTest, answersToATakenName) {
    struct Case {
        const char* name;
        std::function<ConflictDecision(const TransferConflict&)> answer;
        Tree expected;
        std::size_t steps;
    };
    const auto answer = [](ConflictAction action) {
        return [action](const TransferConflict&) { return once(action); };
    };
    const Tree both = {{"/home/from/a", "new"}, {"/home/to/a", "old"}, {"/home/to/a 2", "new"}};
    const Case cases[] = {
        {"nobody answers", nullptr, both, 1},
        {"keep both", answer(ConflictAction::keepBoth), both, 1},
        {"files cannot be merged", answer(ConflictAction::merge), both, 1},
        {"replace",
         answer(ConflictAction::replace),
         {{"/home/from/a", "new"}, {"/home/to/a", "new"}},
         2},
        {"skip", answer(ConflictAction::skip), {{"/home/from/a", "new"}, {"/home/to/a", "old"}}, 0},
        {"stop", answer(ConflictAction::stop), {{"/home/from/a", "new"}, {"/home/to/a", "old"}}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        disk.remove(home("to"));
        disk.addFile(home("from/a"), "new", Date{2000});
        disk.addFile(home("to/a"), "old", Date{1000});
        resolve = c.answer;
        const auto result = run(TransferKind::copy, {home("from/a")}, home("to"));
        EXPECT_EQ(tree(), c.expected);
        EXPECT_EQ(result.steps.size(), c.steps);
        EXPECT_EQ(result.cancelled, std::string_view(c.name) == "stop");
        if (!result.steps.empty()) FileOps::revert(result.steps);
        EXPECT_EQ(tree(), (Tree{{"/home/from/a", "new"}, {"/home/to/a", "old"}}));
    }
}

TEST_F(TransferJobTest, aQuestionShowsBothSides) {
    disk.addFile(home("from/a"), "new!", Date{2000});
    disk.addFile(home("to/a"), "old", Date{1000});
    resolve = [&](const TransferConflict& conflict) {
        EXPECT_EQ(conflict.source, home("from/a"));
        EXPECT_EQ(conflict.existing, home("to/a"));
        EXPECT_EQ(conflict.sourceModified, Date{2000});
        EXPECT_EQ(conflict.existingModified, Date{1000});
        EXPECT_EQ(conflict.sourceSize, 4);
        EXPECT_EQ(conflict.existingSize, 3);
        EXPECT_FALSE(conflict.bothFolders);
        return once(ConflictAction::skip);
    };
    run(TransferKind::copy, {home("from/a")}, home("to"));
    EXPECT_NE(std::ranges::find(states, TransferState::waiting), states.end());
}

TEST_F(TransferJobTest, anAnswerForAllFilesIsNoneForFolders) {
    for (const char* name : {"a", "b", "f/x", "g/x"}) {
        disk.addFile(home("from").appending(name), "new");
        disk.addFile(home("to").appending(name), "old");
    }
    Sentences asked;
    resolve = [&](const TransferConflict& conflict) {
        asked.emplace_back(conflict.existing.path());
        return always(conflict.bothFolders ? ConflictAction::merge : ConflictAction::skip);
    };
    run(TransferKind::copy, {home("from/a"), home("from/b"), home("from/f"), home("from/g")},
        home("to"));
    EXPECT_EQ(asked, (Sentences{"/home/to/a", "/home/to/f"}));
    for (const auto& [path, text] : tree())
        EXPECT_EQ(text, path.starts_with("/home/to") ? "old" : "new") << path;
}

TEST_F(TransferJobTest, mergingAMoveLeavesNoEmptyFolders) {
    resolve = [](const TransferConflict& conflict) {
        return once(conflict.bothFolders ? ConflictAction::merge : ConflictAction::skip);
    };
    for (const URL& to : {home("to"), usb("to")}) {
        SCOPED_TRACE(to.path());
        disk.addFile(home("from/f/sub/new"), "1");
        disk.addFile(home("from/f/.DS_Store"), "");
        disk.addFile(home("from/f/both"), "new");
        disk.addFile(to.appending("f/sub/old"), "2");
        disk.addFile(to.appending("f/both"), "old");
        disk.addFile(to.appending("f/.DS_Store"), "");
        const auto result = run(TransferKind::move, {home("from/f")}, to);
        EXPECT_EQ(disk.readFile(to.appending("f/sub/new"), 9), "1");
        EXPECT_FALSE(disk.attributes(home("from/f/sub"), Links::keep));
        EXPECT_EQ(disk.readFile(home("from/f/both"), 9), "new")
            << "a skipped item keeps its folder";
        EXPECT_EQ(result.resultURLs, std::vector{to.appending("f")});

        disk.remove(home("from/f/both"));
        disk.addFile(home("from/f/late"), "3");
        run(TransferKind::move, {home("from/f")}, to);
        EXPECT_FALSE(disk.attributes(home("from/f"), Links::keep));
    }
}

TEST_F(TransferJobTest, whatContainsTheSourceIsNotReplaced) {
    disk.addFile(home("to/f/f/a"), "1");
    resolve = [](const TransferConflict&) { return once(ConflictAction::replace); };
    const auto result = run(TransferKind::move, {home("to/f/f")}, home("to"));
    EXPECT_EQ(sentences(result), Sentences{"Can’t replace “f” because it contains the item being "
                                           "moved."});
    EXPECT_EQ(tree(), (Tree{{"/home/to/f/f/a", "1"}}));
}

TEST_F(TransferJobTest, anItemIsPutBackWhenNothingComesInItsPlace) {
    disk.addFile(home("from/a"), "new");
    disk.addFile(home("to/a"), "old");
    machine.copying->failWritingWith(ENOSPC);
    resolve = [](const TransferConflict&) { return once(ConflictAction::replace); };
    const auto result = run(TransferKind::copy, {home("from/a")}, home("to"));
    EXPECT_EQ(sentences(result), Sentences{"Couldn’t copy “a” because the disk is full."});
    EXPECT_TRUE(result.steps.empty());
    EXPECT_EQ(tree(), (Tree{{"/home/from/a", "new"}, {"/home/to/a", "old"}}));
}

TEST_F(TransferJobTest, aMoveThatMissesSomethingKeepsTheOriginal) {
    disk.addFile(home("from/f/a"), "1");
    disk.addFile(home("from/f/b"), "2");
    machine.copying->failWith(home("from/f/b"), EACCES);
    const auto result = run(TransferKind::move, {home("from/f")}, usb("to"));
    EXPECT_EQ(sentences(result), Sentences{"Couldn’t move “b” because you don’t have permission."});
    EXPECT_EQ(tree(),
              (Tree{{"/home/from/f/a", "1"}, {"/home/from/f/b", "2"}, {"/usb/to/f/a", "1"}}));
    EXPECT_EQ(result.steps, std::vector{Step::create(usb("to/f"))});
}

TEST_F(TransferJobTest, aMoveThatIsNotWrittenOutKeepsTheOriginal) {
    disk.addFile(home("from/a"), "1");
    machine.copying->setFlushes(false);
    const auto result = run(TransferKind::move, {home("from/a")}, usb("to"));
    EXPECT_EQ(sentences(result), Sentences{"Copied “a” but kept the original, because the copy "
                                           "couldn’t be written out."});
    EXPECT_EQ(tree(), (Tree{{"/home/from/a", "1"}, {"/usb/to/a", "1"}}));
}

TEST_F(TransferJobTest, theRestGoesOnAfterAFailure) {
    disk.addFile(home("from/a"), "1");
    disk.addFile(home("from/z"), "2");
    const auto result =
        run(TransferKind::copy, {home("from/a"), home("gone"), home("from/z")}, home("to"));
    EXPECT_EQ(result.resultURLs, (std::vector{home("to/a"), home("to/z")}));
    EXPECT_EQ(result.failures.size(), 1U);
    EXPECT_EQ(result.failures[0].source, home("gone"));
    EXPECT_EQ(result.failures[0].destinationFolder, home("to"));
}

TEST_F(TransferJobTest, aCancelledCopyLeavesNothing) {
    for (const char* name : {"from/a", "from/f/b", "from/f/c", "from/g"})
        disk.addFile(home(name), "x");
    const Tree before = tree();
    for (int after = 1; after <= 3; ++after) {
        SCOPED_TRACE(after);
        int files = 0;
        afterEachFile = [&](TransferJob& job) {
            if (++files == after) job.cancel();
        };
        const auto result =
            run(TransferKind::copy, {home("from/a"), home("from/f"), home("from/g")}, home("to"));
        EXPECT_TRUE(result.cancelled);
        EXPECT_TRUE(result.steps.empty());
        EXPECT_EQ(result.notice, "");
        EXPECT_EQ(tree(), before);
        EXPECT_EQ(last.state, TransferState::cancelled);
    }
}

TEST_F(TransferJobTest, aCancelledMoveSaysWhatItHadDone) {
    disk.addFile(home("from/a"), "1");
    disk.addFile(home("from/b"), "2");
    disk.addFile(home("to/a"), "old");
    resolve = [&](const TransferConflict&) { return once(ConflictAction::replace); };
    whileRunning = [&](TransferJob& job, const TransferProgress&) {
        if (disk.attributes(home("to/a"), Links::keep) &&
            !disk.attributes(home("from/a"), Links::keep))
            job.cancel();
    };
    // Reports are rare; the question about “c” makes sure of one.
    disk.addFile(home("from/c"), "3");
    disk.addFile(home("to/c"), "old");
    const auto result =
        run(TransferKind::move, {home("from/a"), home("from/c"), home("from/b")}, home("to"));
    EXPECT_TRUE(result.cancelled);
    EXPECT_EQ(
        result.notice,
        "“a” has already been moved to “to”. “a” was replaced, and can be found in the Trash.");
    EXPECT_EQ(tree(), (Tree{{"/home/from/b", "2"},
                            {"/home/from/c", "3"},
                            {"/home/to/a", "1"},
                            {"/home/to/c", "old"}}));
}

TEST_F(TransferJobTest, trashesAndSaysWhere) {
    disk.addFile(home("from/a"), "1");
    const auto result = run(TransferKind::trash, {home("from/a"), home("gone")}, std::nullopt);
    ASSERT_EQ(result.resultURLs.size(), 1U);
    EXPECT_EQ(result.steps, std::vector{Step::move(home("from/a"), result.resultURLs[0])});
    EXPECT_EQ(result.failures.size(), 1U);
    EXPECT_FALSE(result.failures[0].destinationFolder);
    EXPECT_EQ(std::pair(last.totalItems, last.doneItems), std::pair(2L, 2L));
    EXPECT_EQ(last.fraction(), 1.0);
}

TEST_F(TransferJobTest, aDiskThatMayBeUnpluggedGetsEverythingBeforeTheEnd) {
    Mount root, stick;
    root.device = 1;
    stick.mountPoint = usb("");
    stick.device = 2;
    stick.isRemovable = true;
    machine.volumes->setMounts({root, stick});
    disk.addFile(home("from/a"), "1");
    bool wasShown = false;
    whileRunning = [&](TransferJob&, const TransferProgress& progress) {
        wasShown |= progress.isFinishingWriting;
    };
    run(TransferKind::copy, {home("from/a")}, home("to"));
    EXPECT_FALSE(wasShown);
    EXPECT_TRUE(run(TransferKind::copy, {home("from/a")}, usb("to")).failures.empty());
    EXPECT_TRUE(wasShown);
    EXPECT_FALSE(last.isFinishingWriting);
    EXPECT_EQ(machine.copying->flushed(), std::vector{usb("to")});

    machine.copying->setFlushes(false);
    EXPECT_EQ(sentences(run(TransferKind::copy, {home("from/a")}, usb("to"))),
              Sentences{"Not everything could be written to “to”. Please check the disk before you "
                        "rely on the copy."});
}

TEST(TransferProgress, fractionAndTimeLeft) {
    const struct {
        TransferProgress progress;
        double fraction;
        std::optional<double> left;
    } cases[] = {
        {{}, 0, {}},
        {{.state = TransferState::finished}, 1, {}},
        {{.totalBytes = 100, .doneBytes = 25, .bytesPerSecond = 25}, 0.25, 3.0},
        {{.totalBytes = 100, .doneBytes = 25, .bytesPerSecond = 1}, 0.25, {}},
        {{.totalBytes = 100, .doneBytes = 130, .bytesPerSecond = 25}, 1, {}},
        {{.totalBytes = 0, .totalItems = 4, .doneItems = 1}, 0.25, {}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.progress.fraction(), c.fraction);
        EXPECT_EQ(c.progress.secondsRemaining(), c.left);
    }
}

TEST(SpeedMeter, looksBackThreeSecondsAndWaitsForAThird) {
    SpeedMeter meter;
    EXPECT_EQ(meter.add(10.0, 0), 0);
    EXPECT_EQ(meter.add(10.2, 1000), 0);
    EXPECT_EQ(meter.add(10.5, 1000), 2000);
    EXPECT_EQ(meter.add(14.0, 1000), 2000) << "alone in its window, it tells nothing new";
    EXPECT_EQ(meter.add(15.0, 1500), 500);
}

TEST(TransferWords, listsNames) {
    const auto urls = [](int count) {
        std::vector<URL> made;
        for (int i = 0; i < count; ++i) made.push_back(URL::fromPath("/x/" + std::to_string(i)));
        return made;
    };
    using namespace TransferWords;
    EXPECT_EQ(alreadyDone(TransferKind::trash, {}, urls(2), {}),
              "“0” and “1” have already been moved to the Trash.");
    EXPECT_EQ(alreadyDone(TransferKind::copy, {}, {}, urls(3)),
              "“0”, “1” and “2” were replaced, and can be found in the Trash.");
    EXPECT_EQ(
        attributesLost(urls(7)),
        "The other disk doesn’t keep all tags, attributes and access rights of “0”, “1” and 5 "
        "more.");
    EXPECT_EQ(attributesLost({}), "");
}

/// On the real disk, with the job on its own thread.
TEST(TransferJobOnDisk, pausesInsideABigFileAndGoesOn) {
    const TestFolder folder;
    folder.sparseFile("big", 200 << 20);
    const int file = open((folder / "big").c_str(), O_WRONLY);
    const std::string block(1 << 20, 'x');
    for (int i = 0; i < 64; ++i)
        ASSERT_GT(pwrite(file, block.data(), block.size(), i * 3L << 20), 0);
    close(file);
    folder.folder("to");

    struct Seen {
        bool isPaused = false;
        std::optional<TransferResult> result;
    };
    Guarded<Seen> seen;
    std::condition_variable changed;
    TransferJob job(TransferKind::copy, {folder / "big"}, folder / "to");
    bool hasPaused = false;
    job.onProgress = [&](const TransferProgress& progress) {
        if (progress.state != TransferState::running) return;
        if (progress.doneBytes == 0) {
            // Reports come 0.1 s apart, so the next one will be inside the file.
            auto begun = seen.lock();
            changed.wait_for(begun.mutex(), std::chrono::milliseconds(110));
        } else if (!std::exchange(hasPaused, true)) {
            job.pause();
            seen.lock()->isPaused = true;
            changed.notify_all();
        }
    };
    job.onFinish = [&](const TransferResult& result) {
        seen.lock()->result = result;
        changed.notify_all();
    };
    job.start();
    auto held = seen.lock();
    changed.wait(held.mutex(), [&] { return held->isPaused || held->result; });
    ASSERT_FALSE(held->result);
    // It would be over by then.
    EXPECT_FALSE(changed.wait_for(held.mutex(), std::chrono::milliseconds(300),
                                  [&] { return held->result.has_value(); }));
    EXPECT_EQ(job.progress().state, TransferState::paused);
    EXPECT_LT(job.progress().doneBytes, 200 << 20);
    EXPECT_FALSE(folder.exists("to/big"));
    job.resume();
    changed.wait(held.mutex(), [&] { return held->result.has_value(); });
    EXPECT_EQ(held->result->resultURLs, std::vector{folder / "to/big"});
    EXPECT_EQ(job.progress().doneBytes, 200 << 20);
}

/// Many files at once take another way than few.
TEST(TransferJobOnDisk, asksAboutEachTakenNameAmongMany) {
    const TestFolder folder;
    std::vector<URL> sources;
    for (int i = 0; i < 60; ++i)
        sources.push_back(folder.file("from/" + std::to_string(i), "new " + std::to_string(i)));
    // The same names again, from elsewhere, and some that were there before.
    sources.push_back(folder.file("other/7", "other 7"));
    sources.push_back(folder.file("other/8", "other 8"));
    sources.push_back(folder / "from/9");
    sources.push_back(folder / "from/missing");
    folder.file("to/20", "old 20");
    folder.file("to/21", "old 21");
    folder.file("from/sub/deep", "deep");
    sources.push_back(folder / "from/sub");

    TransferJob job(TransferKind::copy, sources, folder / "to");
    std::vector<std::string> asked;
    job.resolveConflict = [&](const TransferConflict& conflict) {
        asked.emplace_back(conflict.source.name());
        const bool skips = asked.back() == "21" || asked.back() == "9";
        return once(skips ? ConflictAction::skip : ConflictAction::keepBoth);
    };
    TransferResult result;
    job.onFinish = [&](const TransferResult& given) { result = given; };
    job.run();

    EXPECT_EQ(asked, (std::vector<std::string>{"20", "21", "7", "8", "9"}));
    EXPECT_EQ(folder.read("to/7"), "new 7");
    EXPECT_EQ(folder.read("to/7 2"), "other 7");
    EXPECT_EQ(folder.read("to/20"), "old 20");
    EXPECT_EQ(folder.read("to/20 2"), "new 20");
    EXPECT_EQ(folder.read("to/21"), "old 21");
    EXPECT_EQ(folder.read("to/sub/deep"), "deep");
    ASSERT_EQ(result.failures.size(), 1U);
    EXPECT_EQ(result.failures[0].message, "“missing” no longer exists.");
    EXPECT_EQ(result.resultURLs.size(), 62U);
    EXPECT_EQ(result.steps.size(), 62U);
    EXPECT_EQ(job.progress().doneItems, job.progress().totalItems);
    std::size_t there = 0;
    for (const auto& entry : std::filesystem::directory_iterator((folder / "to").path())) {
        EXPECT_NE(entry.path().filename().string()[0], '.');
        ++there;
    }
    EXPECT_EQ(there, 64U);

    FileOps::revert(result.steps);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator((folder / "to").path()), {}), 2);
}

TEST(TransferJobOnDisk, manyCopiesIntoTheirOwnFolderGetNamesOfTheirOwn) {
    const TestFolder folder;
    std::vector<URL> sources;
    for (int i = 0; i < 20; ++i)
        sources.push_back(folder.file("f" + std::to_string(i % 10) + ".txt", "x"));
    TransferJob job(TransferKind::copy, sources, folder.url());
    TransferResult result;
    job.onFinish = [&](const TransferResult& given) { result = given; };
    job.run();
    EXPECT_TRUE(result.failures.empty());
    EXPECT_TRUE(folder.exists("f9 copy.txt"));
    EXPECT_TRUE(folder.exists("f9 copy 2.txt"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.url().path()), {}), 30);
}

TEST(TransferJobOnDisk, destroyingAJobCancelsIt) {
    const TestFolder folder;
    for (int i = 0; i < 2000; ++i)
        folder.file("from/" + std::to_string(i % 20) + "/" + std::to_string(i), "x");
    folder.folder("to");
    {
        TransferJob job(TransferKind::copy, {folder / "from"}, folder / "to");
        job.start();
    }
    // Either it was faster, or nothing is left; nothing hidden in any case.
    EXPECT_EQ(folder.exists("to/from"), folder.exists("to/from/19/1999"));
    for (const auto& entry : std::filesystem::directory_iterator((folder / "to").path()))
        EXPECT_EQ(entry.path().filename(), "from");
}

}  // namespace
}  // namespace tarn
