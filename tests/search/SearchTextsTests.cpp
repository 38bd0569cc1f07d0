// Searches that ask for texts, with a real index on a real disk.
#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/FileTags.h"
#include "TarnCore/index/IndexedTexts.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/search/SearchTask.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using Method = TextExtractor::Method;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// Notes for which files it was asked for the text.
class WatchedTexts final : public TextLookup {
public:
    explicit WatchedTexts(std::shared_ptr<const TextIndex> index) : texts_(std::move(index)) {}
    bool filesContaining(const Request& request, const OnHits& onHits,
                         const CancelToken& token) const override {
        return !isDamaged && texts_.filesContaining(request, onHits, token);
    }
    std::unordered_map<std::string, TextIndex::Known> known(
        const std::vector<URL>& roots) const override {
        return texts_.known(roots);
    }
    std::optional<std::string> text(const URL& url) const override {
        ++asked;
        return texts_.text(url);
    }
    mutable std::atomic<int> asked = 0;
    bool isDamaged = false;  ///< Found out when it is asked for words.

private:
    IndexedTexts texts_;
};

class SearchTexts : public testing::Test {
protected:
    /// Keeps the text of a file as it is now.
    void index(const URL& url, std::string_view text, Method method = Method::plain) {
        const auto attributes = Platform::current().files->requireAttributes(url, Links::keep);
        texts->store(url.path(), TextIndex::time(attributes.modified), attributes.size, method,
                     text);
    }
    SearchOptions options(std::vector<std::string> phrases) {
        SearchOptions search;
        search.query.containing = std::move(phrases);
        search.roots = {root.url()};
        search.textIndex = lookup;
        return search;
    }
    std::vector<std::string> find(SearchOptions search) {
        std::vector<std::string> names;
        for (const FileItem& item : SearchTask(std::move(search)).runAll())
            names.push_back(item.path().substr(root.url().path().size() + 1));
        std::ranges::sort(names);
        return names;
    }

    TestFolder root;
    TestFolder support;
    std::shared_ptr<TextIndex> texts = std::make_shared<TextIndex>(support / "index.sqlite");
    std::shared_ptr<WatchedTexts> lookup = std::make_shared<WatchedTexts>(texts);
};

TEST_F(SearchTexts, findsWholeWordsAlikeInTheIndexAndInFiles) {
    const struct {
        const char* phrase;
        const char* text;
        bool matches;
    } cases[] = {
        {"total due", "The TOTAL\n due is 5", true},
        {"total due", "due total", false},
        {"total due", "total amount due", false},
        {"resume", "my Résumé", true},
        {"RÉSUMÉ", "my resume", true},
        {"größe", "GRÖßE", true},
        {"grusse", "Viele Grüße", true},
        {"maße", "die MASSE", true},
        {"masse der strasse", "Maße der STRASSE", true},
        {"masse", "Masen", false},
        {"привет", "и Привет!", true},
        {"don't", "I don't know", true},
        {"42", "no 42.", true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.phrase) + " in " + c.text);
        const URL file = root.file("file.txt", c.text);
        auto search = options({c.phrase});
        search.textIndex = nullptr;
        EXPECT_EQ(find(search).size(), c.matches ? 1U : 0U) << "read";
        index(file, c.text);
        EXPECT_EQ(find(options({c.phrase})).size(), c.matches ? 1U : 0U) << "indexed";
    }
}

TEST_F(SearchTexts, takesTheWordOfAnIndexThatKnowsTheFileAsItIs) {
    index(root.file("scan.pdf", "bytes"), "Total: due", Method::pdf);
    index(root.file("plain.txt", "the total due"), "something else");
    EXPECT_THAT(find(options({"total due"})), ElementsAre("scan.pdf"));
    EXPECT_EQ(lookup->asked, 0);
}

TEST_F(SearchTexts, readsTheFilesItselfWhenTheIndexTurnsOutToBeDamaged) {
    for (const char* name : {"a.txt", "b.txt"})
        index(root.file(name, "the total due"), "the total due");
    index(root.file("other.txt", "nothing"), "nothing");
    lookup->isDamaged = true;
    EXPECT_THAT(find(options({"total due"})), ElementsAre("a.txt", "b.txt"));
}

TEST_F(SearchTexts, countsWhatIsTooLargeToBeRead) {
    const auto large = [&](const char* name, std::string_view begin, std::uintmax_t size) {
        const URL url = root.file(name, begin);
        std::filesystem::resize_file(url.path(), size);
        return url;
    };
    const std::string lines(10'000, 'x');
    large("unknown.log", lines, 40'000'000);
    index(large("known.log", lines, 40'000'000), "");
    large("large.pdf", "%PDF", 300'000'000);
    large("picture.png", "PNG", 300'000'000);
    large("memory", "", 40'000'000);  // no text
    large("small.log", lines, 20'000);
    auto search = options({"total due"});
    search.readDocument = [](const URL&, std::int64_t, const CancelToken&) {
        return std::optional<std::string>("total due");
    };
    SearchTask task(search);
    EXPECT_THAT(task.runAll(), IsEmpty());
    EXPECT_EQ(task.tooLargeCount(), 3);
}

TEST_F(SearchTexts, findsEachOfManyHitsOnce) {
    for (int i = 0; i < 700; ++i)
        index(root.file(std::to_string(i % 7) + "/" + std::to_string(i) + ".txt", "the total due"),
              "the total due");
    auto search = options({"total due"});
    EXPECT_EQ(find(search).size(), 700U);
    search.limit = 300;
    EXPECT_EQ(find(search).size(), 300U);
}

TEST_F(SearchTexts, readsNoTagsThatNobodyWantsOrAsksFor) {
    const URL known = root.file("known.txt", "the total due");
    index(known, "the total due");
    const URL unknown = root.file("unknown.txt", "the total due");
    for (const URL& url : {known, unknown}) FileTags::write({"Work\n4"}, url);
    for (const bool tags : {true, false}) {
        auto search = options({"total due"});
        search.tags = tags;
        const auto items = SearchTask(std::move(search)).runAll();
        EXPECT_EQ(items.size(), 2U);
        for (const FileItem& item : items) EXPECT_EQ(item.tags.empty(), !tags) << item.name;
    }
}

TEST_F(SearchTexts, readsWhatHasChangedSinceItWasIndexed) {
    for (const char* name : {"size.txt", "time.txt", "gone.txt", "same.txt"})
        index(root.file(name, "old words", Date{1000}), "old words");
    root.file("size.txt", "newer words", Date{1000});
    root.file("time.txt", "new words", Date{1001});
    root.file("new.txt", "old and new words");
    EXPECT_EQ(unlink((root / "gone.txt").c_str()), 0);
    EXPECT_THAT(find(options({"old words"})), ElementsAre("same.txt"));
    EXPECT_THAT(find(options({"words"})),
                ElementsAre("new.txt", "same.txt", "size.txt", "time.txt"));
    EXPECT_THAT(find(options({"new words"})), ElementsAre("new.txt", "time.txt"));
}

TEST_F(SearchTexts, findsFilesWhoseNamesNoIndexCanHold) {
    root.file("broken\xff.txt", "the phrase");
    root.file("line\nfeed", "the phrase");
    index(root.file("known.txt", "the phrase"), "the phrase");
    EXPECT_THAT(find(options({"the phrase"})),
                ElementsAre("broken\xff.txt", "known.txt", "line\nfeed"));
}

TEST_F(SearchTexts, readsTextInOtherEncodings) {
    root.file("utf16.txt", std::string("\xFF\xFE"
                                       "d\0u\0e\0",
                                       8));
    root.file("latin1.txt",
              "Sehr geehrte Damen, die Gr\xF6\xDF"
              "e der T\xFCr ist f\xFCr uns");
    root.file("latin1.cpp",
              "// f\xFCr die Gr\xF6\xDF"
              "e der T\xFCr");
    root.file("binary.txt", std::string("due\0\0\0\0\0\0\0\0\0\1\2", 14));
    EXPECT_THAT(find(options({"due"})), ElementsAre("utf16.txt"));
    EXPECT_THAT(find(options({"grösse der tür"})), ElementsAre("latin1.cpp", "latin1.txt"));
}

TEST_F(SearchTexts, readsDocumentsThatTheIndexDoesNotKnowAndNoPictures) {
    index(root.file("known.pdf", "%PDF"), "the phrase", Method::pdf);
    index(root.file("other.pdf", "%PDF"), "other", Method::pdf);
    root.file("old.pdf", "%PDF", Date{1000});
    root.file("new.docx", "PK", Date{2000});
    root.file("newest.html", "<p>", Date{3000});
    root.file("picture.png", "PNG");
    root.file("film.mp4", "the phrase");
    Guarded<std::vector<std::string>> read;
    auto search = options({"the phrase"});
    search.readDocument = [&](const URL& url, std::int64_t,
                              const CancelToken&) -> std::optional<std::string> {
        read.lock()->emplace_back(url.name());
        if (url.name() == "newest.html") return std::nullopt;
        return "it has The\nPhrase";
    };
    EXPECT_THAT(find(search), ElementsAre("known.pdf", "new.docx", "old.pdf"));
    EXPECT_THAT(*read.lock(), UnorderedElementsAre("newest.html", "new.docx", "old.pdf"));
}

TEST_F(SearchTexts, endsWhileADocumentIsBeingRead) {
    root.file("plain.txt", "the phrase");
    root.file("slow.pdf", "%PDF");
    auto search = options({"the phrase"});
    std::atomic<bool> isReading = false;
    search.readDocument = [&](const URL&, std::int64_t,
                              const CancelToken& token) -> std::optional<std::string> {
        isReading = true;
        isReading.notify_all();
        while (!token.isCancelled()) std::this_thread::yield();
        return std::nullopt;
    };
    std::atomic<std::size_t> found = 0;
    {
        SearchTask task(search);
        task.start([&](std::vector<FileItem> items) { found += items.size(); }, nullptr);
        isReading.wait(false);
        // What is quick was not held up.
        EXPECT_EQ(found, 1U);
    }
}

TEST_F(SearchTexts, findsTermsInNamesAndTextsTogether) {
    index(root.file("tax 2023.pdf"), "the return for April", Method::pdf);
    index(root.file("tax.pdf"), "the return of 2023", Method::pdf);
    index(root.file("letter.pdf"), "tax return 2023", Method::pdf);  // nothing in its name
    index(root.file(".tax.pdf"), "return 2023", Method::pdf);
    root.file("tax return 2023.txt");
    for (int i = 0; i < 100; ++i) index(root.file("tax " + std::to_string(i)), "nothing");
    auto search = options({});
    search.query.terms = {"tax", "2023", "returns"};
    EXPECT_THAT(find(search), ElementsAre("tax 2023.pdf", "tax return 2023.txt", "tax.pdf"));
    EXPECT_EQ(lookup->asked, 0);  // The index was asked once, not about every file.

    search.query.terms = {"tax", "april"};
    search.query.containing = {"the return"};
    EXPECT_THAT(find(search), ElementsAre("tax 2023.pdf"));
    root.file("tax read.txt", "APRIL, the return");
    EXPECT_THAT(find(search), ElementsAre("tax 2023.pdf", "tax read.txt"));
}

TEST_F(SearchTexts, findsTextInPicturesByTheIndexAlone) {
    index(root.file("Screenshot 1.png", "1"), "Connection refused", Method::image);
    index(root.file("photo.jpg", "2"), "A street", Method::image);
    index(root.file("empty.png", "3"), "", Method::image);
    index(root.file("words.txt", "connection refused"), "connection refused");
    index(root.file("changed.png", "5"), "connection", Method::image);
    root.file("changed.png", "changed");
    auto search = options({});
    search.query.textInImages = true;
    EXPECT_THAT(find(search), ElementsAre("Screenshot 1.png", "photo.jpg"));
    search.query.kinds = {SearchKind::screenshot};
    EXPECT_THAT(find(search), ElementsAre("Screenshot 1.png"));
    search.query.containing = {"connection"};
    EXPECT_THAT(find(search), ElementsAre("Screenshot 1.png"));
    search.query.textInImages = false;
    search.query.kinds.clear();
    EXPECT_THAT(find(search), ElementsAre("Screenshot 1.png", "words.txt"));
}

/// An index of words knows nothing of words inside of others, nor of signs.
TEST_F(SearchTexts, looksIntoTextsForWhatAnIndexOfWordsCannotTell) {
    index(root.file("a.txt", "新東京駅"), "新東京駅");
    index(root.file("b.png", "1"), "東京都", Method::image);
    index(root.file("c.txt", "a → b"), "a → b");
    root.file("d.txt", "東京");
    EXPECT_THAT(find(options({"東京"})), ElementsAre("a.txt", "b.png", "d.txt"));
    EXPECT_THAT(find(options({"→"})), ElementsAre("c.txt"));
    auto search = options({"東京"});
    search.indexesOnly = true;
    EXPECT_THAT(find(search), ElementsAre("a.txt", "b.png"));
}

TEST_F(SearchTexts, asksOnlyTheIndexWhenToldSo) {
    index(root.file("known.txt", "the phrases"), "the phrases");
    index(root.file("changed.txt", "the phrase"), "the phrase");
    root.file("changed.txt", "the phrase again");
    root.file("unknown.txt", "the phrase");
    auto search = options({"the phrase"});
    search.indexesOnly = true;
    EXPECT_THAT(find(search), IsEmpty());
    search.lastWordIsPrefix = true;
    EXPECT_THAT(find(search), ElementsAre("known.txt"));
    search.indexesOnly = false;
    EXPECT_THAT(find(search), ElementsAre("changed.txt", "known.txt", "unknown.txt"));
}

TEST_F(SearchTexts, saysWhyAFileWasFound) {
    index(root.file("a.pdf", "1"), "Please pay the Total – due now", Method::pdf);
    index(root.file("b.png", "2"), "total due", Method::image);
    root.file("total.txt", "The total\ndue.");
    const auto why = [&](const SearchOptions& search) {
        SearchTask task(search);
        std::vector<std::string> lines;
        for (const FileItem& item : task.runAll()) {
            const TextMatch match = task.match(item);
            std::string line = item.name + ": " + std::string(TextMatch::rawValue(match.reason));
            line += " “" + match.snippet + "”";
            for (const TextRange& range : match.ranges)
                line += " " + match.snippet.substr(range.begin, range.end - range.begin);
            lines.push_back(line);
        }
        std::ranges::sort(lines);
        return lines;
    };
    EXPECT_THAT(why(options({"total due"})),
                ElementsAre("a.pdf: text “Please pay the Total – due now” Total – due",
                            "b.png: textInImage “total due” total due",
                            "total.txt: text “The total due.” total due"));
    auto names = options({});
    names.query.terms = {"total"};
    EXPECT_THAT(why(names), ElementsAre("total.txt: name “”"));
    auto pictures = options({});
    pictures.query.textInImages = true;
    EXPECT_THAT(why(pictures), ElementsAre("b.png: textInImage “total due”"));
    auto both = options({});
    both.query.terms = {"a.pdf", "pay"};
    EXPECT_THAT(why(both), ElementsAre("a.pdf: text “Please pay the Total – due now” pay"));
}

}  // namespace
}  // namespace tarn
