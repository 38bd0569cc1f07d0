#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TarnCore/base/Database.h"
#include "TarnCore/index/TextIndex.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using Method = TextExtractor::Method;
using Paths = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

class TextIndexTests : public testing::Test {
protected:
    /// A row for a file that need not be there.
    void put(const std::string& path, std::string_view text, Method method = Method::plain) {
        index.store(path, 1'700'000'000.25, 100, method, text);
    }
    Paths find(const std::vector<std::string>& phrases, TextIndex::Scope scope = {}) {
        return index.search(phrases, scope);
    }
    std::int64_t count(const char* sql) const {
        return Database(file, Database::Access::read, 1).number(sql);
    }
    void change(const char* sql) const { Database(file, Database::Access::create, 1).execute(sql); }

    TestFolder folder;
    URL file = folder / "text-index.sqlite";
    TextIndex index{file};
};

// What another program makes of the schema and the statements, one row at a time.
constexpr const char* foreignSchema =
    "PRAGMA journal_mode=WAL;"
    "CREATE TABLE IF NOT EXISTS files (path TEXT PRIMARY KEY, mtime REAL, size INTEGER, "
    "method TEXT, chars INTEGER, indexed_at REAL);"
    "CREATE VIRTUAL TABLE IF NOT EXISTS body USING fts5(path UNINDEXED, text, "
    "tokenize='unicode61 remove_diacritics 2');";

TEST_F(TextIndexTests, aSecondStoreReplacesTheFirst) {
    put("/a.txt", "first words");
    put("/a.txt", "second words");
    EXPECT_EQ(index.fileCount(), 1);
    EXPECT_EQ(count("SELECT count(*) FROM body"), 1);
    EXPECT_EQ(index.text("/a.txt"), "second words");
    EXPECT_THAT(find({"first"}), IsEmpty());
    EXPECT_THAT(find({"second"}), ElementsAre("/a.txt"));
    EXPECT_EQ(count("SELECT count(*) FROM files JOIN body ON body.rowid = files.rowid "
                    "WHERE body.path = files.path"),
              1);
}

TEST_F(TextIndexTests, aFileIsReadAgainWhenItsTimeOrSizeIsAnother) {
    EXPECT_TRUE(index.needsIndex("/a", 1, 1));
    EXPECT_FALSE(folder.exists("text-index.sqlite")) << "asking makes no file";
    put("/a", "x");
    EXPECT_FALSE(index.needsIndex("/a", 1'700'000'000.25, 100));
    EXPECT_TRUE(index.needsIndex("/a", 1'700'000'000.25, 101));
    EXPECT_TRUE(index.needsIndex("/a", 1'700'000'000.2501, 100));
    EXPECT_FALSE(
        index.needsIndex("/a", TextIndex::time(Date::fromUnix(1'700'000'000, 250'000'000)), 100));
}

TEST_F(TextIndexTests, foldersAreTakenByTheLetter) {
    for (const char* path : {"/d/a_b/x", "/d/aXb/x", "/d/a%b/x", "/d/aXXb/x", "/d/A_B/x",
                             "/d/a_b.txt", "/d/a_bc/x", "/d/a_b", "/d/a\\b/x"})
        put(path, "word");
    const struct {
        const char* folder;
        Paths below;
    } cases[] = {
        {"/d/a_b", {"/d/a_b/x"}},   {"/d/a%b", {"/d/a%b/x"}}, {"/d/A_B", {"/d/A_B/x"}},
        {"/d/a\\b", {"/d/a\\b/x"}}, {"/d/none", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.folder);
        const URL url = URL::fromPath(c.folder);
        EXPECT_EQ(find({"word"}, {.under = {url}}), c.below);
        EXPECT_EQ(index.indexedPaths(url), c.below);
        EXPECT_EQ(index.known({url}).size(), c.below.size());
    }
    EXPECT_EQ(find({"word"}, {.under = {URL()}}).size(), 9u);
    EXPECT_EQ(index.indexedPaths(URL()).size(), 9u);
    EXPECT_EQ(find({"word"}, {.under = {URL::fromPath("/d/a_b"), URL::fromPath("/d/a%b")}}).size(),
              2u);
}

TEST_F(TextIndexTests, picturesAreFoundByTheirTextAndWithoutWords) {
    put("/shot.png", "total due", Method::image);
    put("/empty.png", "", Method::image);
    put("/bill.txt", "total due");
    EXPECT_THAT(find({"total"}, {.imagesOnly = true}), ElementsAre("/shot.png"));
    EXPECT_THAT(find({}, {.imagesOnly = true}), ElementsAre("/shot.png"));
    EXPECT_THAT(find({}), IsEmpty());
    EXPECT_THAT(find({"total"}, {.limit = 1}).size(), 1u);
    EXPECT_THAT(find({"total"}, {.limit = 0}), IsEmpty());
    const auto status = index.status();
    EXPECT_EQ(status.files, 3);
    EXPECT_EQ(status.withText, 2);
    EXPECT_EQ(status.images, 1);
    EXPECT_EQ(status.characters, 18);
    EXPECT_GT(status.bytesOnDisk, 0);
}

TEST_F(TextIndexTests, charactersAreCountedNotBytes) {
    put("/a", "håll");
    EXPECT_EQ(count("SELECT chars FROM files"), 4);
}

TEST_F(TextIndexTests, pathsThatAreNotTextAreNotStored) {
    put("/broken\xff.txt", "word");
    put("/line\nfeed\".txt", "word");
    EXPECT_THAT(find({"word"}), ElementsAre("/line\nfeed\".txt"));
}

TEST_F(TextIndexTests, whatIsGoneIsForgotten) {
    const URL kept = folder.file("in/kept.txt", "a");
    const URL link = folder.link("in/link.txt", "nowhere");
    put(kept.path(), "word");
    put(link.path(), "word");
    put((folder / "in/gone.txt").path(), "word");
    put((folder / "in/kept.txt/below.txt").path(), "word");  // a file is where a folder was
    put((folder / "other/gone.txt").path(), "word");
    EXPECT_EQ(index.pruneMissing(folder / "in"), 2);
    EXPECT_THAT(find({"word"}),
                UnorderedElementsAre(kept.path(), link.path(), (folder / "other/gone.txt").path()));
}

TEST_F(TextIndexTests, forgettingGivesTheRoomBack) {
    std::string text;
    for (int i = 0; i < 40'000; ++i) text += "word" + std::to_string(i) + " ";
    for (int i = 0; i < 8; ++i) put("/big/" + std::to_string(i), text);
    put("/bigger/kept", "kept secret");
    const auto before = index.bytesOnDisk();
    EXPECT_EQ(index.forget(URL::fromPath("/big")), 8);
    EXPECT_LT(index.bytesOnDisk(), before / 10);
    EXPECT_THAT(find({"kept"}), ElementsAre("/bigger/kept"));
    put("/bigger/kept", "kept anew");  // the rows still belong together
    EXPECT_EQ(count("SELECT count(*) FROM body"), 1);
    EXPECT_EQ(index.forget(URL::fromPath("/bigger")), 1);
    EXPECT_EQ(index.fileCount(), 0);
}

TEST_F(TextIndexTests, clearLeavesNothing) {
    put("/a", "word");
    EXPECT_TRUE(index.clear());
    EXPECT_EQ(index.fileCount(), 0);
    EXPECT_THAT(find({"word"}), IsEmpty());
    put("/a", "word");
    EXPECT_THAT(find({"word"}), ElementsAre("/a"));
}

TEST_F(TextIndexTests, rowsOfAnotherProgramAreTakenAsTheyAre) {
    change(foreignSchema);
    // The ids of the two tables differ, one text has no file, one file no text.
    change(
        "INSERT INTO files VALUES('/a', 1, 1, 'plain', 4, 0), ('/b', 1, 1, 'image', 4, 0), "
        "('/c', 1, 1, 'plain', 4, 0), ('/textless', 1, 1, 'plain', 0, 0);"
        "INSERT INTO body(path, text) VALUES('/c', 'word see'), ('/orphan', 'word'), "
        "('/b', 'word bee'), ('/a', 'word ay')");
    EXPECT_THAT(find({"word"}), UnorderedElementsAre("/a", "/b", "/c"));
    EXPECT_THAT(find({"word"}, {.imagesOnly = true}), ElementsAre("/b"));
    EXPECT_EQ(index.text("/a"), "word ay");

    put("/b", "new");
    put("/d", "word dee");
    index.remove("/c");
    EXPECT_THAT(find({"word"}), UnorderedElementsAre("/a", "/d"));
    EXPECT_THAT(find({"new"}), ElementsAre("/b"));
    EXPECT_THAT(find({"bee"}), IsEmpty());
    EXPECT_EQ(index.text("/a"), "word ay");
    EXPECT_EQ(count("SELECT count(*) FROM body"), 3);
}

/// What the ids say is believed as long as nobody else has written.
TEST_F(TextIndexTests, rowsThatAreWrittenBehindItsBackAreNoticed) {
    const struct {
        const char* what;
        const char* sql;
        std::vector<std::string> word;
        std::vector<std::string> other;
    } cases[] = {
        {"nothing", "", {"/b"}, {"/a", "/c"}},
        {"a file by the usual statements",
         "BEGIN; DELETE FROM files WHERE path = '/b'; DELETE FROM body WHERE path = '/b';"
         "INSERT INTO files VALUES('/b', 1, 1, 'plain', 4, 0);"
         "INSERT INTO body(path, text) VALUES('/b', 'other'); COMMIT",
         {},
         {"/a", "/b", "/c"}},
        {"a text alone",
         "DELETE FROM body WHERE path = '/a'; INSERT INTO body(path, text) VALUES('/a', 'word')",
         {"/a", "/b"},
         {"/c"}},
        {"the file, closer together", "VACUUM", {"/b"}, {"/a", "/c"}},
        {"the ids of the files", "UPDATE files SET rowid = rowid - 1", {"/b"}, {"/a", "/c"}},
        {"a file without its text", "DELETE FROM files WHERE path = '/b'", {}, {"/a", "/c"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        index.clear();
        put("/gone", "word");
        put("/a", "other");
        put("/b", "word");
        put("/c", "other");
        index.remove("/gone");
        index.settle();
        EXPECT_EQ(count("SELECT count(*) FROM seal"), 1);
        if (*c.sql) change(c.sql);
        EXPECT_THAT(find({"word"}), UnorderedElementsAreArray(c.word));
        EXPECT_THAT(find({"other"}), UnorderedElementsAreArray(c.other));
        // What Tarn does next neither believes nor spreads it.
        put("/d", "dee");
        index.settle();
        EXPECT_THAT(find({"word"}), UnorderedElementsAreArray(c.word));
        EXPECT_THAT(find({"other"}), UnorderedElementsAreArray(c.other));
    }
}

TEST_F(TextIndexTests, anotherProgramFindsWhatWasStored) {
    put("/d/a.txt", "Résumé of the total due");
    put("/d/b.txt", "else");
    EXPECT_EQ(count("SELECT count(*) FROM body JOIN files ON files.path = body.path WHERE body "
                    "MATCH 'resume \"total due\"' AND (body.path LIKE '/d/%' ESCAPE '\\')"),
              1);
}

TEST_F(TextIndexTests, aDamagedFileIsSetAsideAndANewOneBegun) {
    const std::string garbage(5000, 'x');
    const auto damage = [&] { std::ofstream(file.path()) << garbage; };
    damage();
    EXPECT_THAT(find({"word"}), IsEmpty());
    EXPECT_EQ(folder.read("text-index.sqlite.unreadable"), garbage);
    EXPECT_FALSE(folder.exists("text-index.sqlite"));
    damage();
    put("/a", "word");
    EXPECT_EQ(folder.read("text-index.sqlite.unreadable 2"), garbage);
    EXPECT_THAT(find({"word"}), ElementsAre("/a"));
    EXPECT_EQ(index.problem(), std::nullopt);
}

TEST_F(TextIndexTests, damageInTheMiddleIsNoticed) {
    {
        TextIndex writer(file);
        for (int i = 0; i < 50; ++i)
            writer.store("/" + std::to_string(i), 1, 1, Method::plain,
                         std::string(3000, 'a') + " word");
        writer.settle();
    }
    {
        std::fstream bytes(file.path(), std::ios::in | std::ios::out | std::ios::binary);
        bytes.seekp(8 * 4096);  // The first pages are the schema.
        bytes << std::string(40 * 4096, '\x5a');
    }
    EXPECT_THAT(find({"word"}), IsEmpty());
    EXPECT_TRUE(folder.exists("text-index.sqlite.unreadable"));
    put("/new", "word");
    EXPECT_THAT(find({"word"}), ElementsAre("/new"));
}

TEST_F(TextIndexTests, anotherSchemaIsSetAside) {
    change("CREATE TABLE files (name TEXT)");
    put("/a", "word");
    EXPECT_TRUE(folder.exists("text-index.sqlite.unreadable"));
    EXPECT_THAT(find({"word"}), ElementsAre("/a"));
}

TEST_F(TextIndexTests, aDamagedFileStaysWhileAnotherProgramFillsIt) {
    TextIndex other(file);
    const auto claim = other.claim();
    ASSERT_TRUE(claim);
    EXPECT_FALSE(index.claim());
    EXPECT_EQ(index.problem(), "Another program is filling the index of texts.");
    std::ofstream(file.path()) << std::string(5000, 'x');
    put("/a", "word");
    EXPECT_FALSE(folder.exists("text-index.sqlite.unreadable"));
    EXPECT_TRUE(index.problem());
    other.store("/a", 1, 1, Method::plain, "word");  // who claimed it begins a new one
    EXPECT_TRUE(folder.exists("text-index.sqlite.unreadable"));
    EXPECT_THAT(find({"word"}), ElementsAre("/a"));
}

TEST_F(TextIndexTests, aFileThatIsDeletedOrReplacedIsOpenedAgain) {
    put("/a", "word");
    ASSERT_THAT(find({"word"}), ElementsAre("/a"));
    for (const char* suffix : {"", "-wal", "-shm"}) unlink((file.path() + suffix).c_str());
    EXPECT_THAT(find({"word"}), IsEmpty());
    put("/b", "word");
    EXPECT_THAT(TextIndex(file).search({"word"}, {}), ElementsAre("/b"));
}

TEST_F(TextIndexTests, readingAndWritingAtOnceDisturbNeither) {
    put("/a", "word");
    TextIndex reader(file);
    ASSERT_THAT(reader.search({"word"}, {}), ElementsAre("/a"));
    Database writer(file, Database::Access::write, 0);
    const Transaction unfinished(writer);
    writer.execute("DELETE FROM body");
    EXPECT_THAT(reader.search({"word"}, {}), ElementsAre("/a"));
}

TEST_F(TextIndexTests, aPlaceThatCannotBeWrittenIsNoCrash) {
    TextIndex nowhere(folder / "missing/text-index.sqlite");
    nowhere.store("/a", 1, 1, Method::plain, "word");
    EXPECT_TRUE(nowhere.problem());
    EXPECT_EQ(nowhere.fileCount(), 0);
    EXPECT_THAT(nowhere.search({"word"}, {}), IsEmpty());
    EXPECT_EQ(nowhere.text("/a"), std::nullopt);
    EXPECT_FALSE(nowhere.claim());
    nowhere.announceChange();
    EXPECT_TRUE(nowhere.clear());
}

TEST_F(TextIndexTests, aCancelledSearchIsEmpty) {
    std::vector<TextIndex::Entry> entries;
    for (int i = 0; i < 3000; ++i)
        entries.push_back({"/" + std::to_string(i), 1, 1, Method::plain, "word"});
    ASSERT_TRUE(index.store(entries));
    CancelToken token;
    token.cancel();
    EXPECT_THAT(index.search({"word"}, {}, token), IsEmpty());
    EXPECT_EQ(find({"word"}).size(), 3000u) << "and the next one is not";
}

TEST_F(TextIndexTests, theFileIsForItsUserAlone) {
    put("/a", "word");
    struct stat status;
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

}  // namespace
}  // namespace tarn
