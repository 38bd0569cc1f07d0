#include <algorithm>
#include <atomic>
#include <functional>
#include <future>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include "TarnCore/base/TaskPool.h"
#include "TarnCore/index/ContentIndexer.h"
#include "TarnCore/index/TextIndex.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/memory/MemoryMachineLoad.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using Names = std::vector<std::string>;
using Outcome = TextReader::Outcome;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class ContentIndexerTests : public testing::Test {
protected:
    /// The indexer with a reader that gives the text `text of NAME`, or what `answer` says.
    ContentIndexer indexer(ContentIndexer::Options options = {}) {
        return {index, std::move(options),
                [this](const URL& url, std::int64_t size, const CancelToken& token) {
                    ++reads;
                    if (answer) return answer(url, size, token);
                    return TextReader::Result{Outcome::read, "text of " + std::string(url.name())};
                }};
    }
    /// Paths below the root, in the order in which they would be read.
    Names candidates(const ContentIndexer::Options& options = {}) {
        Names names;
        for (const auto& candidate : indexer(options).candidates({root}, {}))
            names.push_back(candidate.url.path().substr(root.path().size() + 1));
        return names;
    }
    ContentIndexer::Outcome runAll(const ContentIndexer::Options& options = {},
                                   const CancelToken& token = {}) {
        auto made = indexer(options);
        return made.run(made.candidates({root}, {}), token, nullptr, nullptr);
    }
    /// The same, of what has changed.
    Names candidatesAmong(const Names& changed, const ContentIndexer::Options& options = {}) {
        Names paths;
        for (const std::string& name : changed) paths.push_back((root.appending(name)).path());
        Names names;
        for (const auto& candidate : indexer(options).candidates({root}, paths, {}))
            names.push_back(candidate.url.path().substr(root.path().size() + 1));
        return names;
    }
    void file(const std::string& name, double age = 0) {
        folder.file("in/" + name, "x", Date{1000 - age});
    }

    TestFolder folder;
    URL root = folder.folder("in");
    std::shared_ptr<TextIndex> index = std::make_shared<TextIndex>(folder / "index.sqlite");
    std::atomic<int> reads = 0;
    std::function<TextReader::Result(const URL&, std::int64_t, const CancelToken&)> answer;
};

TEST_F(ContentIndexerTests, newestComeFirstAndPicturesLast) {
    file("old.txt", 500);
    file("new.md", 1);
    file("newest.png");
    file("middle.docx", 100);
    file("no.zip");
    EXPECT_THAT(candidates(), ElementsAre("new.md", "middle.docx", "old.txt"));
    EXPECT_THAT(candidates({.ocr = true}),
                ElementsAre("new.md", "middle.docx", "old.txt", "newest.png"));
}

TEST_F(ContentIndexerTests, whatIsNobodysDocumentIsLeftOut) {
    const std::string signature = "Signature: 8a477f597d28d172789f06886806bc55";
    for (const char* name :
         {".hidden.txt", ".config/a.txt", "listed.txt", "listed/a.txt", "node_modules/a.txt",
          "App.app/a.txt", "cache/sub/a.txt", "card/a.txt", "card/sub/a.txt", "phone/a.txt",
          "excluded/sub/a.txt", "broken\xff.txt", "\xff/a.txt"})
        file(name);
    folder.file("in/.hidden", "listed\nlisted.txt\n");
    folder.file("in/cache/CACHEDIR.TAG", signature + "\n# made by a test");
    folder.file("in/card/.nomedia");
    folder.file("in/phone/.NOMEDIA");
    folder.link("in/link.txt", "kept/tag/a.txt");
    folder.link("in/folder", "kept");
    EXPECT_THAT(candidates({.excluded = {root.appending("excluded")}}), IsEmpty());

    file("kept/tag/a.txt", 1);
    folder.file("in/kept/tag/CACHEDIR.TAG", "Signature: of something else");
    file("Letter.rtfd/TXT.rtf", 2);
    const auto found = indexer({.excluded = {root.appending("excluded")}}).candidates({root}, {});
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_EQ(found[0].url, root.appending("Letter.rtfd")) << "a package is one document";
    EXPECT_EQ(found[1].url, root.appending("kept/tag/a.txt"));
    EXPECT_THAT(indexer({.excluded = {folder.url()}}).candidates({root}, {}), IsEmpty());
    EXPECT_THAT(indexer().candidates({root.appending(".config")}, {}), SizeIs(1))
        << "who names a folder means it";
}

TEST_F(ContentIndexerTests, onlyWhatHasChangedIsReadAgain) {
    file("a.txt", 3);
    file("b.txt", 2);
    EXPECT_EQ(runAll().indexed, 2);
    EXPECT_THAT(index->search({"text of b"}, {}), ElementsAre(root.appending("b.txt").path()));
    EXPECT_THAT(candidates(), IsEmpty());
    folder.file("in/a.txt", "longer", Date{997});
    file("b.txt", 1);
    EXPECT_THAT(candidates(), ElementsAre("b.txt", "a.txt"));
}

TEST_F(ContentIndexerTests, whatHasNoTextIsRememberedAndWhatWasNotReadIsNot) {
    for (const char* name : {"killed.pdf", "no.docx", "cancelled.txt", "gone.txt", "empty.txt"})
        file(name);
    answer = [&](const URL& url, std::int64_t, const CancelToken&) -> TextReader::Result {
        if (url.name() == "killed.pdf") return {Outcome::killed, "half"};
        if (url.name() == "no.docx") return {Outcome::noText, {}};
        if (url.name() == "cancelled.txt") return {Outcome::cancelled, {}};
        return {Outcome::read, {}};
    };
    auto made = indexer();
    const auto found = made.candidates({root}, {});
    unlink((root.path() + "/gone.txt").c_str());
    const auto outcome = made.run(found, {}, nullptr, nullptr);
    EXPECT_EQ(outcome.indexed, 0);
    EXPECT_EQ(outcome.withoutText, 3);
    EXPECT_THAT(candidates(), ElementsAre("cancelled.txt"));
    EXPECT_THAT(index->search({"half"}, {}), IsEmpty());
}

/// Has data of these languages for as long as it lives.
class RecognitionData {
public:
    explicit RecognitionData(std::initializer_list<const char*> names) {
        for (const char* name : names) folder_.file(std::string(name) + ".traineddata");
        setenv("TESSDATA_PREFIX", folder_.url().c_str(), 1);
    }
    ~RecognitionData() { unsetenv("TESSDATA_PREFIX"); }
    RecognitionData(const RecognitionData&) = delete;
    RecognitionData& operator=(const RecognitionData&) = delete;

private:
    TestFolder folder_;
};

TEST_F(ContentIndexerTests, picturesAreReadAgainInLanguagesTheyWereNotReadIn) {
    const RecognitionData data{"deu", "eng", "swe"};
    for (const char* name : {"a.txt", "scan.pdf", "paper.pdf", "photo.png", "torn.png"}) file(name);
    answer = [](const URL& url, std::int64_t, const CancelToken&) -> TextReader::Result {
        const bool isTorn = url.name() == "torn.png";
        return {.outcome = isTorn ? Outcome::noText : Outcome::read,
                .hasPictures = url.name() == "scan.pdf" || url.name() == "photo.png"};
    };
    const auto wants = [this](std::vector<std::string> languages) {
        return candidates({.ocr = true, .languages = std::move(languages)});
    };
    runAll();
    EXPECT_THAT(candidates(), IsEmpty());
    EXPECT_THAT(wants({"en"}), ElementsAre("scan.pdf", "photo.png", "torn.png"));
    runAll({.ocr = true, .languages = {"en"}});
    EXPECT_THAT(wants({"en"}), IsEmpty()) << "though they were found empty";
    EXPECT_THAT(wants({"en-US"}), IsEmpty()) << "the same data";
    EXPECT_THAT(wants({"fr", "en"}), IsEmpty()) << "there is no data for French";
    EXPECT_THAT(wants({"en", "de"}), ElementsAre("scan.pdf", "photo.png"));
    EXPECT_THAT(candidatesAmong({"photo.png"}, {.ocr = true, .languages = {"de"}}),
                ElementsAre("photo.png"));
    runAll({.ocr = true, .languages = {"en", "de"}});
    EXPECT_THAT(wants({"de"}), IsEmpty());
    file("scan.pdf", 1);
    runAll();
    EXPECT_THAT(wants({"en"}), ElementsAre("scan.pdf")) << "its pages were left out";
    EXPECT_THAT(wants({"sv"}), ElementsAre("scan.pdf", "photo.png"));
}

TEST_F(ContentIndexerTests, whatCouldNotBeReadForWantOfAToolIsReadLater) {
    const RecognitionData data{"eng"};
    for (const char* name : {"scan.pdf", "photo.png"}) file(name);
    bool isInstalled = false;
    answer = [&](const URL& url, std::int64_t, const CancelToken&) -> TextReader::Result {
        if (isInstalled) return {.outcome = Outcome::read, .text = "text", .hasPictures = true};
        if (url.name() == "photo.png") return {.outcome = Outcome::unable};
        return {.outcome = Outcome::read,
                .text = "its first page",
                .hasPictures = true,
                .lacksRecognition = true};
    };
    EXPECT_EQ(runAll({.ocr = true}).indexed, 1);
    EXPECT_THAT(candidates({.ocr = true}), ElementsAre("scan.pdf", "photo.png"));
    isInstalled = true;
    EXPECT_EQ(runAll({.ocr = true}).indexed, 2);
    EXPECT_THAT(candidates({.ocr = true}), IsEmpty());
}

TEST_F(ContentIndexerTests, aFileThatChangesWhileItIsReadIsReadAgain) {
    file("a.txt", 10);
    answer = [&](const URL&, std::int64_t, const CancelToken&) -> TextReader::Result {
        file("a.txt", 5);
        return {Outcome::read, "old text"};
    };
    runAll();
    EXPECT_THAT(candidates(), ElementsAre("a.txt"));
}

TEST_F(ContentIndexerTests, aCancelledRunKeepsWhatItStoredAndStopsReading) {
    for (int i = 0; i < 40; ++i) file(std::to_string(i) + ".txt", i);
    const CancelToken token;
    answer = [&](const URL& url, std::int64_t, const CancelToken& stop) -> TextReader::Result {
        if (reads < 10) return {Outcome::read, "word"};
        token.cancel();
        // A long document, whose reader looks at its token.
        while (!stop.isCancelled()) std::this_thread::yield();
        return {Outcome::cancelled, std::string(url.name())};
    };
    runAll({}, token);
    EXPECT_LT(reads, 15);
    answer = nullptr;
    runAll();
    EXPECT_EQ(index->fileCount(), 40);
}

TEST_F(ContentIndexerTests, nothingIsBegunWhilePaused) {
    for (int i = 0; i < 10; ++i) file(std::to_string(i) + ".txt", i);
    std::atomic<int> asked = 0;
    std::atomic<int> readsWhilePaused = 0;
    auto made = indexer();
    made.run(
        made.candidates({root}, {}), {},
        [&] {
            const bool isPaused = ++asked <= 6;
            if (isPaused) readsWhilePaused = reads.load();
            return isPaused;
        },
        nullptr);
    EXPECT_EQ(readsWhilePaused, 0);
    EXPECT_EQ(reads, 10);
}

TEST_F(ContentIndexerTests, aPausedRunCanBeCancelled) {
    file("a.txt");
    const CancelToken token;
    auto made = indexer();
    made.run(
        made.candidates({root}, {}), token,
        [&] {
            token.cancel();
            return true;
        },
        nullptr);
    EXPECT_EQ(reads, 0);
}

TEST_F(ContentIndexerTests, whatIsExcludedLaterIsForgotten) {
    for (const char* name : {"a.txt", "out/b.txt", "out/deep/c.txt", "outer/d.txt"}) file(name);
    runAll();
    const ContentIndexer::Options options{.excluded = {root.appending("out")}};
    EXPECT_EQ(indexer(options).forgetExcluded(), 2);
    EXPECT_EQ(index->fileCount(), 2);
    EXPECT_EQ(indexer(options).forgetExcluded(), 0);
}

TEST_F(ContentIndexerTests, theIndexStaysWithinItsBudget) {
    for (int i = 0; i < 30; ++i) file(std::to_string(i) + ".txt", i);
    std::atomic<int> number = 0;
    answer = [&](const URL&, std::int64_t, const CancelToken&) -> TextReader::Result {
        std::string text;
        for (int i = 0; i < 20'000; ++i) text += "w" + std::to_string(++number) + " ";
        return {Outcome::read, text};
    };
    constexpr std::int64_t budget = 4'000'000;
    const auto outcome = runAll({.mostBytesOnDisk = budget});
    EXPECT_TRUE(outcome.reachedBudget);
    EXPECT_GT(outcome.indexed, 1);
    EXPECT_LT(outcome.indexed, 30);
    EXPECT_FALSE(outcome.couldNotWrite);
    EXPECT_LE(index->bytesOnDisk(), budget);
}

TEST_F(ContentIndexerTests, anIndexThatCannotBeWrittenEndsTheRun) {
    for (int i = 0; i < 30; ++i) file(std::to_string(i) + ".txt", i);
    index = std::make_shared<TextIndex>(folder / "missing/index.sqlite");
    EXPECT_TRUE(runAll().couldNotWrite);
    EXPECT_TRUE(index->problem());
}

TEST_F(ContentIndexerTests, manyLargeTextsAreHeldBack) {
    for (int i = 0; i < 14; ++i) file(std::to_string(i) + ".txt", i);
    std::string text;
    while (text.size() < 4'000'000) text += "some words of a long text ";
    answer = [&](const URL&, std::int64_t, const CancelToken&) -> TextReader::Result {
        return {Outcome::read, text};
    };
    EXPECT_EQ(runAll().indexed, 14);
    EXPECT_THAT(index->search({"long text"}, {}), SizeIs(14));
}

TEST_F(ContentIndexerTests, progressEndsWithAll) {
    for (int i = 0; i < 25; ++i) file(std::to_string(i) + ".txt", i);
    std::vector<std::int64_t> seen;
    auto made = indexer();
    made.run(made.candidates({root}, {}), {}, nullptr,
             [&](std::int64_t done, std::int64_t total, const std::string&) {
                 EXPECT_EQ(total, 25);
                 seen.push_back(done);
             });
    ASSERT_FALSE(seen.empty());
    EXPECT_TRUE(std::ranges::is_sorted(seen));
    EXPECT_EQ(seen.back(), 25);
}

TEST_F(ContentIndexerTests, onlyThreadsOfTheRunAreLoweredAndOnlyInTheBackground) {
    Platform platform = Platform::current();
    const auto load = std::make_shared<MemoryMachineLoad>();
    platform.load = load;
    const ScopedPlatform scoped(platform);
    file("a.txt");
    runAll();
    EXPECT_EQ(load->loweredThreads(), 0);
    file("b.txt");
    runAll({.background = true});
    EXPECT_GT(load->loweredThreads(), 1);
}

TEST_F(ContentIndexerTests, thePoolOfAllKeepsItsPriority) {
    file("a.txt");
    std::promise<void> done;
    TaskPool lowered(1);
    lowered.run([&] {
        Platform::current().load->lowerPriorityOfThread();
        candidates({.background = true});
        done.set_value();
    });
    done.get_future().wait();
    // Each of its threads takes one, and this thread the last.
    const std::size_t threads = TaskPool::shared().threadCount() + 1;
    std::latch begun(static_cast<std::ptrdiff_t>(threads));
    std::atomic<int> idle = 0;
    TaskPool::shared().forEach(threads, [&](std::size_t) {
        begun.arrive_and_wait();
        idle += sched_getscheduler(0) != SCHED_OTHER ? 1 : 0;
    });
    EXPECT_EQ(idle, 0);
}

TEST_F(ContentIndexerTests, aPauseCanEndTheRun) {
    for (int i = 0; i < 40; ++i) file(std::to_string(i) + ".txt", i);
    const ContentIndexer::Options options{.endsWhenPaused = true};
    auto made = indexer(options);
    const auto all = made.candidates({root}, {});
    const auto outcome = made.run(
        all, {}, [this] { return reads >= 10; }, nullptr);
    EXPECT_TRUE(outcome.wasPaused);
    EXPECT_EQ(outcome.indexed, reads) << "what was begun is stored";
    EXPECT_LT(reads, 40);
    const auto rest = made.run(made.candidates({root}, {}), {}, nullptr, nullptr);
    EXPECT_FALSE(rest.wasPaused);
    EXPECT_EQ(index->fileCount(), 40);
    EXPECT_EQ(reads, 40);
}

TEST_F(ContentIndexerTests, changesAreLookedAtAlone) {
    file("a.txt", 1);
    file("docs/b.txt", 2);
    file("docs/deep/c.txt", 3);
    file("docs/deep/d.txt", 4);
    file("out/e.txt", 5);
    file("node_modules/f.txt", 6);
    file("cards/.nomedia");
    file("cards/g.txt", 7);
    ContentIndexer::Options options;
    options.excluded = {root.appending("out")};
    const struct {
        Names changed;
        Names found;
    } cases[] = {
        {{"a.txt"}, {"a.txt"}},
        {{"docs/deep"}, {"docs/deep/c.txt", "docs/deep/d.txt"}},
        {{"docs/deep/d.txt", "a.txt", "gone.txt"}, {"a.txt", "docs/deep/d.txt"}},
        {{"out/e.txt", "node_modules/f.txt", "cards/g.txt", "docs/b.tx", "doc"}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.changed));
        EXPECT_EQ(candidatesAmong(c.changed, options), c.found);
    }
    runAll();
    EXPECT_THAT(candidatesAmong({"docs", "a.txt"}), IsEmpty());
    file("docs/b.txt", 1);
    EXPECT_THAT(candidatesAmong({"docs", "a.txt"}), ElementsAre("docs/b.txt"));
}

TEST_F(ContentIndexerTests, whatIsGoneIsForgotten) {
    for (const char* name : {"a.txt", "a.txt.txt", "docs/b.txt", "docs/c.txt", "docs2/d.txt"})
        file(name);
    runAll();
    ASSERT_EQ(unlink((root.appending("a.txt")).c_str()), 0);
    ASSERT_EQ(rename((root.appending("docs")).c_str(), (folder / "elsewhere").c_str()), 0);
    const Names changed = {root.appending("a.txt").path(), root.appending("docs").path(),
                           root.appending("docs2").path()};
    EXPECT_EQ(indexer().forgetGone(changed, {}), 3);
    EXPECT_EQ(index->fileCount(), 2);
    EXPECT_TRUE(index->isIndexed(root.appending("a.txt.txt").path()));
}

}  // namespace
}  // namespace tarn
