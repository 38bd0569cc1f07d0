// Archives made to do harm. Whatever is in them, nothing may be written outside of the folder they
// are unpacked to, and a failure leaves nothing.
#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/archive/ArchiveReader.h"
#include "tests/archive/Tree.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using test::gzipped;
using test::TarBytes;
using test::tree;
using test::ZipBytes;

/// Unpacks next to the archive and says what came of it.
std::string unpack(const URL& archive) {
    try {
        ArchiveReader::extractAll(archive);
        return "unpacked";
    } catch (const ArchiveError& error) {
        return error.what();
    }
}

constexpr const char* damaged = "This archive couldn’t be read. It is damaged.";
constexpr const char* incomplete = "This archive couldn’t be read. It is incomplete or damaged.";
constexpr const char* encrypted =
    "This archive couldn’t be read. It is encrypted with a password, and Tarn can’t open "
    "encrypted archives.";

std::string leadsOut(const std::string& member) {
    return "This archive couldn’t be read. “" + member +
           "” in it would be written outside of the folder.";
}
std::string twoItems(const std::string& member) {
    return "This archive couldn’t be read. It holds two different items called “" + member + "”.";
}

/// A place to unpack in, with something beside it that must stay as it is.
class HostileArchive : public testing::Test {
protected:
    HostileArchive() {
        folder_.file("victim/kept.txt", "kept");
        folder_.folder("in");
    }

    /// The archive beside `in`, then only what an honest run may have made.
    void expectRefused(const std::string& name, const std::string& bytes,
                       const std::string& sentence) {
        const URL archive = folder_.file("in/" + name, bytes);
        EXPECT_EQ(unpack(archive), sentence);
        EXPECT_EQ(tree(folder_.url()), (std::vector<std::string>{"in/", "in/" + name, "victim/",
                                                                 "victim/kept.txt=kept"}));
    }

    TestFolder folder_;
};

TEST_F(HostileArchive, cannotWriteOutsideThroughNames) {
    const struct {
        const char* what;
        std::string path;
    } cases[] = {
        {"up", "../victim/kept.txt"},
        {"up in the middle", "a/../../victim/new.txt"},
        {"up at the end", "a/.."},
        {"nothing but up", ".."},
        {"up behind dots", "./.././victim/new.txt"},
        {"up behind a slash", "/../victim/new.txt"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        expectRefused("a.tar",
                      TarBytes({{.path = "good.txt", .content = "x"}, {.path = c.path}}).bytes(),
                      leadsOut(c.path));
        std::remove((folder_ / "in/a.tar").c_str());
        expectRefused("a.zip",
                      ZipBytes({{.name = "good.txt", .content = "x"}, {.name = c.path}}).bytes(),
                      leadsOut(c.path));
        std::remove((folder_ / "in/a.zip").c_str());
    }
}

TEST_F(HostileArchive, staysInTheFolderWithAbsoluteNames) {
    const std::string path = (folder_ / "victim/new.txt").path();
    const URL tar = folder_.file(
        "in/a.tar",
        TarBytes({{.path = path, .content = "x"}, {.path = "b.txt", .content = "y"}}).bytes());
    const URL zip = folder_.file(
        "in/b.zip",
        ZipBytes({{.name = path, .content = "x"}, {.name = "b.txt", .content = "y"}}).bytes());
    EXPECT_EQ(unpack(tar), "unpacked");
    EXPECT_EQ(unpack(zip), "unpacked");
    EXPECT_FALSE(folder_.exists("victim/new.txt"));
    EXPECT_EQ(folder_.read("in/a/" + path), "x");
    EXPECT_EQ(folder_.read("in/b/" + path), "x");
}

TEST_F(HostileArchive, cannotWriteThroughItsOwnLinks) {
    const std::string victim = (folder_ / "victim").path();
    const struct {
        const char* what;
        std::vector<TarBytes::Member> members;
        std::string sentence;
    } cases[] = {
        {"link, then a file through it",
         {{.path = "out", .type = '2', .target = victim}, {.path = "out/new.txt", .content = "x"}},
         twoItems("out")},
        {"a relative link",
         {{.path = "out", .type = '2', .target = "../../victim"},
          {.path = "out/kept.txt", .content = "x"}},
         twoItems("out")},
        {"the file first",
         {{.path = "out/new.txt", .content = "x"}, {.path = "out", .type = '2', .target = victim}},
         twoItems("out")},
        {"a folder, then a link in its place",
         {{.path = "out", .type = '5', .mode = 0755},
          {.path = "out", .type = '2', .target = victim},
          {.path = "out/new.txt", .content = "x"}},
         twoItems("out")},
        {"two links in a row",
         {{.path = "a", .type = '2', .target = "b"},
          {.path = "b", .type = '2', .target = victim},
          {.path = "a/new.txt", .content = "x"}},
         twoItems("a")},
        {"a link to a file that is written to",
         {{.path = "k", .type = '2', .target = victim + "/kept.txt"},
          {.path = "k", .content = "x"}},
         twoItems("k")},
        {"a hard link through a link",
         {{.path = "out", .type = '2', .target = victim},
          {.path = "copy", .type = '1', .target = "out/kept.txt"}},
         "This archive couldn’t be read. “copy” in it is a second name of a file that isn’t "
         "there."},
        {"a hard link upwards",
         {{.path = "copy", .type = '1', .target = "../victim/kept.txt"}},
         leadsOut("../victim/kept.txt")},
        {"a hard link from the root",
         {{.path = "copy", .type = '1', .target = victim + "/kept.txt"}},
         "This archive couldn’t be read. “copy” in it is a second name of a file that isn’t "
         "there."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        expectRefused("a.tar.gz", gzipped(TarBytes(c.members).bytes()), c.sentence);
    }
    for (const bool linkFirst : {true, false}) {
        SCOPED_TRACE(linkFirst);
        std::remove((folder_ / "in/a.tar.gz").c_str());
        std::vector<ZipBytes::Member> members = {
            {.name = "out", .content = victim, .mode = 0120777},
            {.name = "out/new.txt", .content = "x"}};
        if (!linkFirst) std::swap(members[0], members[1]);
        expectRefused("a.zip", ZipBytes(members).bytes(), twoItems("out"));
        std::remove((folder_ / "in/a.zip").c_str());
    }
}

TEST_F(HostileArchive, mayHoldLinksThatLeadOutSinceNothingFollowsThem) {
    const URL archive = folder_.file(
        "in/a.tar", TarBytes({{.path = "d/out", .type = '2', .target = "/etc"},
                              {.path = "d/up", .type = '2', .target = "../../victim/kept.txt"},
                              {.path = "d/a.txt", .content = "x"}})
                        .bytes());
    EXPECT_EQ(unpack(archive), "unpacked");
    EXPECT_EQ(tree(folder_ / "in/d"),
              (std::vector<std::string>{"a.txt=x", "out->/etc", "up->../../victim/kept.txt"}));
    EXPECT_EQ(folder_.read("victim/kept.txt"), "kept");
}

TEST_F(HostileArchive, thatPromisesMoreThanItHoldsIsDamaged) {
    const std::string text(5000, 'x');
    const ZipBytes::Member good{.name = "a", .content = text, .isDeflated = true};
    auto huge = good, small = good, wrong = good, twin = good, stored = good;
    huge.size = 0xFFFFFFF0;
    small.size = 100;
    wrong.crc = 1;
    twin.name = "b";
    twin.offset = 0;
    stored.isDeflated = false;
    stored.size = 4999;
    EXPECT_EQ(unpack(folder_.file("in/good.zip", ZipBytes({good}).bytes())), "unpacked");
    std::remove((folder_ / "in/good.zip").c_str());
    std::remove((folder_ / "in/a").c_str());
    const struct {
        const char* what;
        std::vector<ZipBytes::Member> members;
    } cases[] = {
        {"more than its bytes can give", {huge}},
        {"more than it says", {small}},
        {"other bytes than it says", {wrong}},
        {"one run of bytes for two members", {good, twin}},
        {"stored in two sizes", {stored}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        expectRefused("a.zip", ZipBytes(c.members).bytes(), damaged);
    }
}

TEST_F(HostileArchive, largerThanTheDiskIsRefusedBeforeAByteIsWritten) {
    // Zeroes of a thousandth of their size: 64-bit sizes, as a bomb would claim them.
    std::vector<ZipBytes::Member> members;
    const std::string zeroes(3 << 20, '\0');
    for (int i = 0; i < 3; ++i)
        members.push_back({.name = std::to_string(i), .content = zeroes, .isDeflated = true});
    const URL archive = folder_.file("in/a.zip", ZipBytes(members).bytes());
    test::ScopedFreeSpace space(8 << 20);
    EXPECT_EQ(unpack(archive), "Couldn’t unpack “a.zip” because the disk is full.");
    const URL tar = folder_.file(
        "in/b.tar.gz",
        gzipped(TarBytes({{.path = "0", .content = std::string(9 << 20, '\0')}}).bytes()));
    EXPECT_EQ(unpack(tar), "Couldn’t unpack “b.tar.gz” because the disk is full.");
    EXPECT_EQ(tree(folder_ / "in").size(), 2u);
}

TEST_F(HostileArchive, encryptedOnesSaySo) {
    expectRefused("a.zip",
                  ZipBytes({{.name = "plain", .content = "x"},
                            {.name = "secret", .content = "x", .flags = 1}})
                      .bytes(),
                  encrypted);
    std::remove((folder_ / "in/a.zip").c_str());
    expectRefused("b.zip",
                  ZipBytes({{.name = "secret",
                             .content = "x",
                             .method = 99,
                             .extra = test::extraField(0x9901, std::string(7, '\2'))}})
                      .bytes(),
                  encrypted);
    // Their names can be read all the same.
    EXPECT_EQ(ArchiveReader::entries(folder_ / "in/b.zip").at(0).path, "secret");
}

TEST_F(HostileArchive, cutShortAnywhereLeavesNothing) {
    std::string noise;
    for (unsigned i = 0, state = 1; i < 300000; ++i, state = state * 1664525 + 1013904223)
        noise += static_cast<char>(state >> 24);
    const std::string tar =
        TarBytes({{.path = "d/a.txt", .content = noise}, {.path = "d/b.txt", .content = noise}})
            .bytes();
    const std::string whole[] = {gzipped(tar), tar.substr(0, tar.size() - 1024)};
    const char* const names[] = {"a.tar.gz", "a.tar"};
    for (int kind = 0; kind < 2; ++kind) {
        for (const std::size_t length :
             {std::size_t{0}, std::size_t{5}, std::size_t{20}, std::size_t{600},
              whole[kind].size() / 2 + 7, whole[kind].size() * 3 / 4}) {
            SCOPED_TRACE(std::string(names[kind]) + " of " + std::to_string(length));
            const URL archive =
                folder_.file(std::string("in/") + names[kind], whole[kind].substr(0, length));
            EXPECT_TRUE(unpack(archive).starts_with("This archive couldn’t be read. It is "));
            EXPECT_EQ(tree(folder_ / "in").size(), 1u);
        }
        std::remove((folder_ / (std::string("in/") + names[kind])).c_str());
    }
}

TEST_F(HostileArchive, underAWrongNameIsWhatItsContentSays) {
    const TarBytes::Member inTar{.path = "a.txt", .content = "x"};
    const ZipBytes::Member inZip{.name = "b.txt", .content = "y"};
    const std::string tar = gzipped(TarBytes({inTar}).bytes());
    const std::string zip = ZipBytes({inZip}).bytes();
    EXPECT_EQ(unpack(folder_.file("in/tar.zip", tar)), "unpacked");
    EXPECT_EQ(unpack(folder_.file("in/zip.tar", zip)), "unpacked");
    EXPECT_EQ(unpack(folder_.file("in/zip.gz", zip)), "unpacked");
    EXPECT_EQ(folder_.read("in/a.txt"), "x");
    EXPECT_EQ(folder_.read("in/b.txt"), "y");
    EXPECT_EQ(folder_.read("in/b 2.txt"), "y");
    for (const char* name : {"text.zip", "text.tar", "text.gz", "text.7z"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(unpack(folder_.file(std::string("in/") + name, "Only a text.\n# /set\n")),
                  incomplete);
    }
    EXPECT_EQ(unpack(folder_.file("in/text.dmg", "Only a text.")),
              "Tarn can’t open this kind of archive.");
    EXPECT_EQ(unpack(folder_.folder("in/folder.zip")), "Tarn can’t open this kind of archive.");
    EXPECT_EQ(unpack(folder_ / "in/nowhere.zip"),
              "This archive couldn’t be read. It doesn’t exist any more.");
}

}  // namespace
}  // namespace tarn
