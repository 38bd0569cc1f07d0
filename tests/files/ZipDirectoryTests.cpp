#include <algorithm>
#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "TarnCore/base/Deflate.h"
#include "TarnCore/files/ArchiveError.h"
#include "TarnCore/files/ZipDirectory.h"
#include "TarnCore/files/ZipNames.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/MemoryBytes.h"

namespace tarn {
namespace {

using test::extraField;
using test::MemoryBytes;
using test::u32;
using test::u64;
using test::ZipBytes;

ZipDirectory read(const std::string& bytes, std::string_view language = "en_US") {
    return ZipDirectory::read(MemoryBytes(bytes), language);
}

std::string sentence(const std::string& bytes) {
    try {
        read(bytes);
        return "it was read";
    } catch (const ArchiveError& error) {
        return error.what();
    }
}

constexpr const char* incomplete = "This archive couldn’t be read. It is incomplete or damaged.";
constexpr const char* damaged = "This archive couldn’t be read. It is damaged.";

TEST(ZipDirectory, readsNamesInEveryWayTheyAreWritten) {
    const std::string raw =
        "Stra\xe1"
        "e.txt";  // "ß" in the code pages 437 and 850
    const auto unicode = [](std::string_view belongsTo, std::string_view name) {
        return extraField(0x7075, "\1" + u32(crc32(0, belongsTo)) + std::string(name));
    };
    const struct {
        const char* what;
        ZipBytes::Member member;
        const char* language;
        std::string path;
    } cases[] = {
        {"marked as UTF-8", {.name = "Straße", .flags = 0x800, .host = 0}, "ja", "Straße"},
        {"UTF-8 without a mark", {.name = "Straße", .host = 0}, "ja", "Straße"},
        {"bytes of Unix",
         {.name = "a\xff"
                  "b"},
         "en_US",
         "a\xff"
         "b"},
        {"DOS, American", {.name = raw, .host = 0}, "en_US", "Straße.txt"},
        {"DOS, German", {.name = raw, .host = 0}, "de_DE", "Straße.txt"},
        {"DOS, Russian", {.name = "\x8f\xe0\xa8\xa2\xa5\xe2", .host = 0}, "ru_RU", "Привет"},
        {"DOS, Japanese, a backslash in a letter",
         {.name = "\x83\x5c\x83\x74\x83\x67", .host = 11},
         "ja_JP",
         "ソフト"},
        {"DOS, Chinese", {.name = "\xd6\xd0\xce\xc4", .host = 0}, "zh_CN", "中文"},
        {"the Unicode field",
         {.name = raw, .host = 0, .extra = unicode(raw, "Straße!")},
         "en_US",
         "Straße!"},
        {"the Unicode field of another name",
         {.name = "new.txt", .extra = unicode("old.txt", "Straße!")},
         "en_US",
         "new.txt"},
        {"backslashes of DOS", {.name = "docs\\a.txt", .host = 0}, "en_US", "docs/a.txt"},
        {"a backslash of Unix", {.name = "docs\\a.txt"}, "en_US", "docs\\a.txt"},
        {"a line feed", {.name = "two\nlines"}, "en_US", "two\nlines"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto directory = read(ZipBytes({c.member}).bytes(), c.language);
        ASSERT_EQ(directory.members().size(), 1u);
        EXPECT_EQ(directory.members()[0].path, c.path);
    }
}

TEST(ZipNames, chooseTheCodePageOfTheLanguage) {
    const struct {
        const char *language, *raw, *name;
    } cases[] = {
        {"en_US", "\x9b", "¢"},      {"en_GB", "\x9b", "ø"},      {"de", "\x9b", "ø"},
        {"pl", "\x9c", "ť"},         {"el", "\x98", "α"},         {"tr", "\x9f", "ş"},
        {"he", "\x80", "א"},         {"ar", "\x98", "ء"},         {"ru_RU", "\x80", "А"},
        {"ko_KR", "\xb0\xa1", "가"}, {"zh_TW", "\xa4\xa4", "中"}, {"zh_CN", "\xd6\xd0", "中"},
        {"ja_JP", "\x82\xa0", "あ"}, {"tlh", "\x9b", "¢"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.language);
        EXPECT_EQ(ZipNames(c.language).decode(c.raw), c.name);
    }
}

TEST(ZipDirectory, takesTheTimeFromTheBestField) {
    const std::string unixField = extraField(0x5455, "\1" + u32(1700000001));
    const std::string oldField = extraField(0x5855, u32(5) + u32(1600000000));
    // 2023-11-14 22:13:20.5 in steps of 100 ns since 1601
    const std::string ntfsField = extraField(
        0x000A, u32(0) + test::u16(1) + test::u16(24) + u64(133444736005000000) + u64(0) + u64(0));
    const struct {
        const char* what;
        ZipBytes::Member member;
        std::optional<UnixTime> time;
    } cases[] = {
        {"DOS", {.name = "a"}, UnixTime{1710063008}},  // 2024-03-10 09:30:08 in UTC
        {"none", {.name = "a", .dosDate = 0, .dosTime = 0}, std::nullopt},
        {"Unix", {.name = "a", .extra = unixField}, UnixTime{1700000001}},
        {"before 1970",
         {.name = "a", .extra = extraField(0x5455, "\1" + u32(-86400ULL))},
         UnixTime{-86400}},
        {"old Unix", {.name = "a", .extra = oldField}, UnixTime{1600000000}},
        {"NTFS", {.name = "a", .extra = ntfsField}, UnixTime{1700000000, 500000000}},
        {"NTFS and Unix", {.name = "a", .extra = ntfsField + unixField}, UnixTime{1700000001}},
        {"a field that is cut off",
         {.name = "a", .extra = unixField.substr(0, 7)},
         UnixTime{1710063008}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(read(ZipBytes({c.member}).bytes()).members().at(0).modified, c.time);
    }
}

TEST(ZipDirectory, knowsFoldersLinksAndModes) {
    using Type = ZipMember::Type;
    const struct {
        const char* what;
        ZipBytes::Member member;
        Type type;
        std::optional<std::uint32_t> mode;
    } cases[] = {
        {"file", {.name = "a", .mode = 0100640}, Type::file, 0640},
        {"set-user-id is told", {.name = "a", .mode = 0104755}, Type::file, 04755},
        {"folder by its slash", {.name = "a/", .mode = 0}, Type::folder, std::nullopt},
        {"folder by its mode", {.name = "a", .mode = 040700}, Type::folder, 0700},
        {"folder of DOS",
         {.name = "a", .host = 0, .mode = 0, .dosAttributes = 0x10},
         Type::folder,
         std::nullopt},
        {"DOS has no modes", {.name = "a", .host = 0, .mode = 0100600}, Type::file, std::nullopt},
        {"link", {.name = "a", .content = "b", .mode = 0120777}, Type::symlink, 0777},
        {"pipe", {.name = "a", .mode = 0010644}, Type::other, 0644},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto directory = read(ZipBytes({c.member}).bytes());
        EXPECT_EQ(directory.members().at(0).type, c.type);
        EXPECT_EQ(directory.members().at(0).mode, c.mode);
    }
}

TEST(ZipDirectory, findsTheDirectoryWhereverItIs) {
    const std::vector<ZipBytes::Member> members = {{.name = "a", .content = "one"},
                                                   {.name = "b", .content = "two"}};
    const struct {
        const char* what;
        std::function<void(ZipBytes&)> change;
        std::string behind;
    } cases[] = {
        {"plain", [](ZipBytes&) {}, ""},
        {"behind a program", [](ZipBytes& zip) { zip.front = std::string(5000, 'x'); }, ""},
        {"with a comment", [](ZipBytes& zip) { zip.comment = std::string(65535, 'c'); }, ""},
        {"an end record in the comment",
         [](ZipBytes& zip) { zip.comment = "PK\5\6" + std::string(30, '\0'); }, ""},
        {"bytes behind it", [](ZipBytes&) {}, std::string(100, 'z')},
        {"64 bits", [](ZipBytes& zip) { zip.isWide = true; }, ""},
        {"64 bits behind a program",
         [](ZipBytes& zip) {
             zip.isWide = true;
             zip.front = std::string(5000, 'x');
         },
         ""},
        {"a count beyond 16 bits that was cut", [](ZipBytes& zip) { zip.count = 2; }, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ZipBytes zip(members);
        c.change(zip);
        const auto directory = read(zip.bytes() + c.behind);
        ASSERT_EQ(directory.members().size(), 2u);
        EXPECT_EQ(directory.members()[1].path, "b");
        EXPECT_EQ(directory.members()[0].offset, zip.front.size());
        EXPECT_FALSE(directory.hasOverlaps());
    }
    EXPECT_TRUE(read(ZipBytes({}).bytes()).members().empty());
}

TEST(ZipDirectory, widensOnlyTheNumbersThatAreInTheField) {
    const auto directory = read(
        ZipBytes({{.name = "a", .content = "x"}, {.name = "b", .content = "yy", .isWide = true}})
            .bytes());
    EXPECT_EQ(directory.members().at(1).size, 2u);
    EXPECT_EQ(directory.members().at(1).packedSize, 2u);
    EXPECT_EQ(directory.members().at(1).offset, 32u);
}

TEST(ZipDirectory, refusesWhatDoesNotHoldTogether) {
    const ZipBytes::Member member{.name = "a", .content = "one"};
    const std::string good = ZipBytes({member}).bytes();
    auto far = member;
    far.offset = 1000000;
    ZipBytes split({member});
    split.disk = 2;
    ZipBytes miscounted({member});
    miscounted.count = 7;
    EXPECT_EQ(sentence("PK\3\4 and nothing more"), incomplete);
    EXPECT_EQ(sentence(good.substr(0, good.size() - 10)), incomplete);
    EXPECT_EQ(sentence(good.substr(10)), incomplete);
    EXPECT_EQ(sentence(ZipBytes({far}).bytes()), damaged);
    EXPECT_EQ(sentence(miscounted.bytes()), damaged);
    EXPECT_EQ(sentence(split.bytes()),
              "This archive couldn’t be read. It is one part of an archive that was split into "
              "several files.");
}

TEST(ZipDirectory, seesMembersThatShareTheirBytes) {
    const ZipBytes::Member member{.name = "a", .content = "one"};
    auto twin = member;
    twin.name = "b";
    EXPECT_FALSE(read(ZipBytes({member, twin}).bytes()).hasOverlaps());
    twin.offset = 0;
    EXPECT_TRUE(read(ZipBytes({member, twin}).bytes()).hasOverlaps());
    twin.offset = 20;  // Inside of the first.
    EXPECT_TRUE(read(ZipBytes({member, twin}).bytes()).hasOverlaps());
}

}  // namespace
}  // namespace tarn
