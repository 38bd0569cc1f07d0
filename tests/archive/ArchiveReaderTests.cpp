#include <atomic>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "TarnCore/archive/ArchiveListing.h"
#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/ops/FileOpError.h"
#include "tests/archive/Tree.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using test::gzipped;
using test::TarBytes;
using test::tree;
using test::ZipBytes;
using Lines = std::vector<std::string>;

Lines paths(const std::vector<ArchiveEntry>& entries) {
    Lines lines;
    for (const ArchiveEntry& entry : entries)
        lines.push_back(entry.path + (entry.isDirectory ? "/" : ""));
    return lines;
}

struct stat facts(const URL& url) {
    struct stat facts {};
    EXPECT_EQ(lstat(url.c_str(), &facts), 0) << url.path();
    return facts;
}

TEST(ArchiveListing, showsMembersAsPeopleSeeThem) {
    const struct {
        const char* what;
        std::vector<ArchiveEntry> members;
        Lines shown;
    } cases[] = {
        {"folders that are only implied",
         {{.path = "a/b/c.txt"}, {.path = "a/d.txt"}, {.path = "e.txt"}},
         {"a/", "a/b/", "a/b/c.txt", "a/d.txt", "e.txt"}},
        {"a folder that comes after its members",
         {{.path = "a/b.txt"}, {.path = "a/", .isDirectory = true}},
         {"a/b.txt", "a/"}},
        {"junk of another system",
         {{.path = "__MACOSX/._a"},
          {.path = "a/.DS_Store"},
          {.path = ".DS_Store"},
          {.path = "a/x.DS_Store"},
          {.path = "b/__MACOSX"}},
         {"a/", "a/x.DS_Store", "b/", "b/__MACOSX"}},
        {"slashes and dots that say nothing",
         {{.path = "./"}, {.path = "./a//b"}, {.path = "/c/./d/."}, {.path = "..e/f.."}},
         {"a/", "a/b", "c/", "c/d", "..e/", "..e/f.."}},
        {"the newer of two with one path",
         {{.path = "a", .size = 1}, {.path = "b"}, {.path = "a", .size = 2}},
         {"b", "a"}},
        {"a file that has members", {{.path = "a", .size = 5}, {.path = "a/b"}}, {"a/", "a/b"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(paths(ArchiveListing::completed(c.members)), c.shown);
    }
}

TEST(ArchiveReader, listsOneLevel) {
    const std::vector<ArchiveEntry> entries = ArchiveListing::completed(
        {{.path = "a/b/c"}, {.path = "a/d"}, {.path = "ab/e"}, {.path = "f"}});
    EXPECT_EQ(paths(ArchiveReader::children("", entries)), (Lines{"a/", "ab/", "f"}));
    EXPECT_EQ(paths(ArchiveReader::children("a", entries)), (Lines{"a/b/", "a/d"}));
    EXPECT_EQ(paths(ArchiveReader::children("f", entries)), Lines{});
}

TEST(ArchiveReader, listsEveryKindWithSizesAndDates) {
    TestFolder folder;
    const URL tar =
        folder.file("a.tgz", gzipped(TarBytes({{.path = "ü/x.txt", .content = "12345"},
                                               {.path = "e/", .type = '5', .mode = 0755}})
                                         .bytes()));
    const auto entries = ArchiveReader::entries(tar);
    EXPECT_EQ(paths(entries), (Lines{"ü/", "ü/x.txt", "e/"}));
    EXPECT_EQ(entries[1].size, 5);
    EXPECT_EQ(entries[1].modified, Date::fromUnix(1700000000));
    EXPECT_EQ(entries[0].modified, std::nullopt);
    EXPECT_EQ(entries[1].name(), "x.txt");
    EXPECT_EQ(entries[1].parent(), "ü");

    const URL single = folder.file("notes.txt.gz", gzipped(std::string(70000, 'n')));
    const auto one = ArchiveReader::entries(single);
    ASSERT_EQ(one.size(), 1u);
    EXPECT_EQ(one[0].path, "notes.txt");
    EXPECT_EQ(one[0].size, 70000);
}

TEST(ArchiveReader, putsTheOnlyItemBesideTheArchive) {
    TestFolder folder;
    folder.file("docs/old.txt", "old");
    const URL archive = folder.file(
        "x.tar.gz",
        gzipped(TarBytes({{.path = "docs/a.txt", .content = "a"}, {.path = ".DS_Store"}}).bytes()));
    EXPECT_EQ(ArchiveReader::extractAll(archive), folder / "docs 2");
    EXPECT_EQ(ArchiveReader::extractAll(archive), folder / "docs 3");
    EXPECT_EQ(tree(folder.url()), (Lines{"docs 2/", "docs 2/a.txt=a", "docs 3/", "docs 3/a.txt=a",
                                         "docs/", "docs/old.txt=old", "x.tar.gz"}));
}

TEST(ArchiveReader, namesTheFolderForManyItemsAfterTheArchive) {
    TestFolder folder;
    const std::string tar =
        TarBytes({{.path = "a", .content = "1"}, {.path = "b", .content = "2"}}).bytes();
    EXPECT_EQ(ArchiveReader::extractAll(folder.file("x.tar.gz", gzipped(tar))), folder / "x");
    EXPECT_EQ(ArchiveReader::extractAll(folder / "x.tar.gz"), folder / "x 2");
    EXPECT_EQ(ArchiveReader::extractAll(folder.file("empty.zip", ZipBytes({}).bytes())),
              folder / "empty");
    EXPECT_EQ(tree(folder / "x 2"), (Lines{"a=1", "b=2"}));
}

TEST(ArchiveReader, unpacksASingleFileUnderItsName) {
    TestFolder folder;
    EXPECT_EQ(ArchiveReader::extractAll(folder.file("notes.txt.gz", gzipped("text"))),
              folder / "notes.txt");
    EXPECT_EQ(ArchiveReader::extractAll(folder.file("none.gz", gzipped(""))), folder / "none");
    EXPECT_EQ(folder.read("notes.txt"), "text");
    EXPECT_TRUE(folder.exists("none"));
}

TEST(ArchiveReader, addsToAnExistingFolderWithoutReplacing) {
    TestFolder folder;
    folder.file("to/a.txt", "mine");
    const URL zip = folder.file("x.zip", ZipBytes({{.name = "a.txt", .content = "theirs"},
                                                   {.name = "d/b.txt", .content = "b"}})
                                             .bytes());
    EXPECT_EQ(ArchiveReader::extract(zip, folder / "to"),
              (std::vector{folder / "to/a 2.txt", folder / "to/d"}));
    EXPECT_EQ(tree(folder / "to"), (Lines{"a 2.txt=theirs", "a.txt=mine", "d/", "d/b.txt=b"}));
    EXPECT_EQ(ArchiveReader::extract(zip, folder / "new"), (std::vector{folder / "new"}));
    EXPECT_EQ(ArchiveReader::extract(zip, folder / "far/in/deep"), (std::vector{folder / "far"}))
        << "so that undo takes all of it back";
    EXPECT_EQ(tree(folder / "far/in"),
              (Lines{"deep/", "deep/a.txt=theirs", "deep/d/", "deep/d/b.txt=b"}));
    EXPECT_EQ(tree(folder / "new"), (Lines{"a.txt=theirs", "d/", "d/b.txt=b"}));
    const URL empty = folder.file("empty.zip", ZipBytes({}).bytes());
    EXPECT_EQ(ArchiveReader::extract(empty, folder / "none/at/all"),
              (std::vector{folder / "none"}));
    EXPECT_EQ(tree(folder / "none"), (Lines{"at/", "at/all/"}));
    EXPECT_THROW(ArchiveReader::extract(zip, folder / "to/a.txt"), ArchiveError);
}

TEST(ArchiveReader, unpacksChosenMembersUnderTheirOwnNames) {
    TestFolder folder;
    const std::vector<TarBytes::Member> members = {
        {.path = "a/x.txt", .content = "1"},
        {.path = "b/x.txt", .content = "2"},
        {.path = "b/deep/y.txt", .content = "3"},
        {.path = "bb/z.txt", .content = "4"},
        {.path = "second", .type = '1', .target = "bb/z.txt"},
    };
    const URL tar = folder.file("x.tar", TarBytes(members).bytes());
    EXPECT_EQ(ArchiveReader::extract(tar, {"a/x.txt", "b/x.txt", "b"}, folder / "to"),
              (std::vector{folder / "to/x.txt", folder / "to/x 2.txt", folder / "to/b"}));
    // The bytes of "second" stand under a name that nobody asked for.
    EXPECT_EQ(ArchiveReader::extract(tar, {"second"}, folder / "to"),
              (std::vector{folder / "to/second"}));
    EXPECT_EQ(tree(folder / "to"),
              (Lines{"b/", "b/deep/", "b/deep/y.txt=3", "second=4", "x 2.txt=2", "x.txt=1"}));
}

TEST(ArchiveReader, keepsModesTimesLinksAndNamesButLendsNoRights) {
    TestFolder folder;
    const std::string longName(255, 'n');
    const URL tar = folder.file(
        "x.tar", TarBytes({{.path = "d/", .type = '5', .mode = 0750, .modified = 1500000000},
                           {.path = "d/run", .content = "x", .mode = 06755},
                           {.path = "d/two\nlines", .content = "l"},
                           {.path = "d/bad\xff", .content = "b"},
                           {.path = "d/hard", .type = '1', .target = "d/run"},
                           {.path = "d/link", .type = '2', .target = "run"},
                           {.path = "d/pipe", .type = '6'}})
                     .bytes());
    const URL zip = folder.file(
        "y.zip", ZipBytes({{.name = "e/",
                            .mode = 040750,
                            .extra = test::extraField(0x5455, "\1" + test::u32(1500000000))},
                           {.name = "e/run", .content = "x", .mode = 0106755},
                           {.name = "e/locked/", .mode = 040555},
                           {.name = "e/locked/a", .content = "y"},
                           {.name = "e/" + longName, .content = "z"},
                           {.name = "e/link", .content = "run", .mode = 0120777}})
                     .bytes());
    const mode_t mask = umask(022);
    EXPECT_EQ(ArchiveReader::extractAll(tar), folder / "d");
    EXPECT_EQ(ArchiveReader::extractAll(zip), folder / "e");
    umask(mask);
    EXPECT_EQ(tree(folder / "d"),
              (Lines{"bad\xff=b", "hard=x", "link->run", "run=x", "two\nlines=l"}));
    EXPECT_EQ(tree(folder / "e"),
              (Lines{"link->run", "locked/", "locked/a=y", longName + "=z", "run=x"}));
    for (const char* top : {"d", "e"}) {
        SCOPED_TRACE(top);
        EXPECT_EQ(facts(folder / top).st_mode & 07777, 0750u);
        EXPECT_EQ(facts(folder / top).st_mtime, 1500000000);
        EXPECT_EQ(facts(folder / (std::string(top) + "/run")).st_mode & 07777, 0755u);
    }
    EXPECT_EQ(facts(folder / "d/run").st_mtime, 1700000000);
    EXPECT_EQ(facts(folder / "d/run").st_ino, facts(folder / "d/hard").st_ino);
    EXPECT_EQ(facts(folder / "e/locked").st_mode & 07777, 0555u);
}

TEST(ArchiveReader, takesTheLaterOfTwoMembersWithOnePath) {
    TestFolder folder;
    const URL tar = folder.file(
        "x.tar",
        TarBytes({{.path = "d/a", .content = "old"}, {.path = "d/a", .content = "new"}}).bytes());
    const URL zip = folder.file(
        "y.zip",
        ZipBytes({{.name = "e/a", .content = "old"}, {.name = "e/a", .content = "newer"}}).bytes());
    ArchiveReader::extractAll(tar);
    ArchiveReader::extractAll(zip);
    EXPECT_EQ(folder.read("d/a"), "new");
    EXPECT_EQ(folder.read("e/a"), "newer");
}

TEST(ArchiveReader, joinsNamesWhoseBytesComeWithTheLast) {
    TestFolder folder;
    const URL archive = folder.file(
        "x.cpio", test::cpio({{.path = "d/a", .inode = 7, .links = 3},
                              {.path = "d/other", .content = "o"},
                              {.path = "d/b", .inode = 7, .links = 3},
                              {.path = "d/c", .content = "bytes of all", .inode = 7, .links = 3}}));
    ArchiveReader::extractAll(archive);
    EXPECT_EQ(tree(folder / "d"),
              (Lines{"a=bytes of all", "b=bytes of all", "c=bytes of all", "other=o"}));
    EXPECT_EQ(facts(folder / "d/a").st_ino, facts(folder / "d/c").st_ino);
    EXPECT_EQ(facts(folder / "d/b").st_ino, facts(folder / "d/c").st_ino);
}

TEST(ArchiveReader, leavesNothingWhenCancelled) {
    TestFolder folder;
    std::vector<TarBytes::Member> members;
    std::vector<ZipBytes::Member> zipped;
    for (int i = 0; i < 300; ++i) {
        members.push_back({.path = "d/" + std::to_string(i), .content = std::string(20000, 'x')});
        zipped.push_back({.name = "d/" + std::to_string(i), .content = std::string(20000, 'x')});
        folder.file("src/" + std::to_string(i), std::string(20000, 'x'));
    }
    const URL tar = folder.file("x.tar", TarBytes(members).bytes());
    const URL zip = folder.file("y.zip", ZipBytes(zipped).bytes());
    ArchiveReader::Watch watch;
    watch.token.cancel();
    const auto reason = [&](auto&& work) {
        try {
            work();
        } catch (const ArchiveError& error) {
            return error.reason();
        }
        return ArchiveError::Reason::unreadable;
    };
    const std::size_t before = tree(folder.url()).size();
    using Reason = ArchiveError::Reason;
    EXPECT_EQ(reason([&] { ArchiveReader::extractAll(tar, watch); }), Reason::cancelled);
    EXPECT_EQ(reason([&] { ArchiveReader::extractAll(zip, watch); }), Reason::cancelled);
    EXPECT_EQ(reason([&] { ArchiveReader::extract(zip, folder / "new/deep", watch); }),
              Reason::cancelled);
    EXPECT_EQ(reason([&] { ArchiveReader::compress({folder / "src"}, watch); }), Reason::cancelled);
    EXPECT_EQ(tree(folder.url()).size(), before);
}

TEST(ArchiveReader, compressesBesideTheFirstItem) {
    TestFolder folder;
    folder.file("a.txt", "a");
    folder.file("b.tar.gz", "b");
    folder.file("sub/a.txt", "other");
    folder.folder("v1.2/empty");
    EXPECT_EQ(ArchiveReader::compress({folder / "a.txt"}), folder / "a.zip");
    EXPECT_EQ(ArchiveReader::compress({folder / "a.txt"}), folder / "a 2.zip");
    EXPECT_EQ(ArchiveReader::compress({folder / "b.tar.gz"}), folder / "b.zip");
    EXPECT_EQ(ArchiveReader::compress({folder / "v1.2"}), folder / "v1.2.zip");
    const std::vector<URL> three = {folder / "a.txt", folder / "sub", folder / "sub/a.txt"};
    EXPECT_EQ(ArchiveReader::compress(three), folder / "Archive.zip");
    EXPECT_EQ(ArchiveReader::compress(three), folder / "Archive 2.zip");
    EXPECT_EQ(paths(ArchiveReader::entries(folder / "a.zip")), (Lines{"a.txt"}));
    EXPECT_EQ(paths(ArchiveReader::entries(folder / "v1.2.zip")), (Lines{"v1.2/", "v1.2/empty/"}));
    EXPECT_EQ(paths(ArchiveReader::entries(folder / "Archive.zip")),
              (Lines{"Archive/", "Archive/a.txt", "Archive/sub/", "Archive/sub/a.txt",
                     "Archive/a 2.txt"}));
}

TEST(ArchiveReader, unpacksWhatItCompressed) {
    TestFolder folder;
    std::string lines;
    for (unsigned i = 0; i < 900000; ++i) lines += std::to_string(i * 7919 % 100003) + "\n";
    folder.file("in/long.txt", lines);  // 5 MB: packed in pieces, unpacked whole
    lines += lines + lines + lines;
    folder.file("in/longer.txt", lines);  // 21 MB: unpacked in pieces
    folder.file("in/short.txt", "short");
    folder.file("in/two\nlines", "l");
    folder.file("in/bad\xff\xfe", "b");
    folder.file("in/é/empty");
    folder.link("in/link", "nowhere");
    const URL zip = ArchiveReader::compress({folder / "in"});
    EXPECT_EQ(ArchiveReader::extract(zip, folder / "out"), (std::vector{folder / "out"}));
    EXPECT_EQ(tree(folder / "out/in"), tree(folder / "in"));
    EXPECT_EQ(folder.read("out/in/longer.txt"), lines);
    EXPECT_EQ(facts(folder / "out/in/short.txt").st_mtime, facts(folder / "in/short.txt").st_mtime);
}

TEST(ArchiveReader, saysWhyItCannotCompress) {
    TestFolder folder;
    folder.file("a.txt", "a");
    const auto sentence = [](const std::vector<URL>& urls) {
        try {
            ArchiveReader::compress(urls);
        } catch (const FileOpError& error) {
            return std::string(error.what());
        }
        return std::string("compressed");
    };
    EXPECT_EQ(sentence({}), "Nothing to compress.");
    EXPECT_EQ(sentence({folder / "a.txt", folder / "gone.txt"}),
              "Couldn’t compress. “gone.txt” can’t be read. It doesn’t exist any more.");
    EXPECT_EQ(tree(folder.url()), Lines{"a.txt=a"});
}

TEST(ArchiveReader, tellsHowFarItIs) {
    TestFolder folder;
    folder.file("in/a", std::string(300000, 'a'));
    folder.file("in/b", std::string(200000, 'b'));
    const URL zip = ArchiveReader::compress({folder / "in"});
    std::atomic<std::int64_t> done = 0, total = 0, items = 0;
    ArchiveReader::Watch watch;
    watch.progress = [&](const ArchiveReader::Progress& progress) {
        done = progress.doneBytes;
        total = progress.totalBytes;
        items = progress.doneItems;
    };
    ArchiveReader::extract(zip, folder / "out", watch);
    EXPECT_EQ(done, 500000);
    EXPECT_EQ(total, 500000);
    EXPECT_EQ(items, 2);
}

}  // namespace
}  // namespace tarn
