#include <cerrno>

#include "TarnCore/ops/FileOps.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(FileNames, splitFindsTheExtensionPeopleMean) {
    const struct {
        const char* name;
        NameParts parts;
    } cases[] = {
        {"IMG_0001.CR2", {"IMG_0001", "CR2"}},    // case is kept
        {"backup.tar.GZ", {"backup", "tar.GZ"}},  // one extension, not two
        {"a.tar.bz2", {"a", "tar.bz2"}},
        {"a.b.tar.zst", {"a.b", "tar.zst"}},
        {"tar.gz", {"tar", "gz"}},
        {".tar.gz", {".tar", "gz"}},     // nothing before the suffix
        {".profile", {".profile", ""}},  // a dot-file has no extension
        {".config.json", {".config", "json"}},
        {"file.", {"file.", ""}},
        {"..", {"..", ""}},
        {"Notes 2024.final draft", {"Notes 2024.final draft", ""}},
        {"å.ééééééé", {"å", "ééééééé"}},  // 7 characters, 14 bytes
        {"a.123456789012", {"a", "123456789012"}},
        {"a.verylongextension", {"a.verylongextension", ""}},
        {"a.1234567890123", {"a.1234567890123", ""}},
        {"line\nfeed.\xff", {"line\nfeed", "\xff"}},
        {"", {"", ""}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(FileOps::split(c.name), c.parts);
        EXPECT_EQ(FileOps::join(c.parts.base, c.parts.ext), c.name);
    }
}

std::optional<FileOpError::Reason> refusal(std::string_view name) {
    try {
        FileOps::validate(name);
        return std::nullopt;
    } catch (const FileOpError& error) {
        return error.reason();
    }
}

TEST(FileNames, validateRefusesNothingAndSeparators) {
    using Reason = FileOpError::Reason;
    const struct {
        std::string name;
        std::optional<Reason> reason;
    } cases[] = {
        {"", Reason::emptyName},
        {" \t\n\u00A0", Reason::emptyName},
        {"a:b", Reason::invalidCharacters},
        {"a/b", Reason::invalidCharacters},
        {std::string("a\0b", 3), Reason::invalidCharacters},
        {" a ", std::nullopt},
        {"CON", std::nullopt},
        {"line\nfeed", std::nullopt},
        {"\xff", std::nullopt},
        {std::string(300, 'x'), std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(refusal(c.name), c.reason);
    }
}

TEST(FileNames, uniqueURLCountsOnFromTheNumberThatIsThere) {
    const struct {
        std::vector<const char*> taken;
        const char* wanted;
        const char* free;
    } cases[] = {
        {{}, "Report.pdf", "Report.pdf"},
        {{"Report.pdf"}, "Report.pdf", "Report 2.pdf"},
        {{"Report.pdf", "Report 2.pdf"}, "Report.pdf", "Report 3.pdf"},
        {{"Report 2.pdf"}, "Report 2.pdf", "Report 3.pdf"},
        {{"Photo 7.jpg"}, "Photo 7.jpg", "Photo 8.jpg"},
        {{"Photo 99.jpg"}, "Photo 99.jpg", "Photo 100.jpg"},
        {{"Photo 007.jpg"}, "Photo 007.jpg", "Photo 007 2.jpg"},
        {{"Build 123"}, "Build 123", "Build 123 2"},
        {{"Photo7.jpg"}, "Photo7.jpg", "Photo7 2.jpg"},
        {{"7.jpg"}, "7.jpg", "7 2.jpg"},
        {{"a.tar.gz"}, "a.tar.gz", "a 2.tar.gz"},
        {{".profile"}, ".profile", ".profile 2"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.wanted);
        const TestFolder folder;
        for (const char* name : c.taken) folder.file(name);
        EXPECT_EQ(FileOps::uniqueURL(folder / c.wanted), folder / c.free);
    }
}

TEST(FileNames, aLinkThatLeadsNowhereTakesItsName) {
    const TestFolder folder;
    folder.link("gone", "nowhere");
    EXPECT_TRUE(FileOps::exists(folder / "gone"));
    EXPECT_EQ(FileOps::uniqueURL(folder / "gone"), folder / "gone 2");
}

TEST(FileNames, uniqueURLThrowsWhenTheFolderCannotBeLookedAt) {
    const MemoryPlatform machine;
    const ScopedPlatform scoped(machine.services());
    const URL url = URL::fromPath("/locked/a");
    machine.files->addFolder(url.parent());
    machine.files->failWith(url.parent(), EACCES);
    EXPECT_THROW(FileOps::uniqueURL(url), std::system_error);
}

TEST(FileNames, copyNameDoesNotReadNumbers) {
    const TestFolder folder;
    for (const char* name : {"Report.pdf", "Report 2.pdf", "x.tar.gz", "Folder.d"})
        folder.file(name);
    EXPECT_EQ(FileOps::copyName(folder / "Report.pdf"), folder / "Report copy.pdf");
    folder.file("Report copy.pdf");
    EXPECT_EQ(FileOps::copyName(folder / "Report.pdf"), folder / "Report copy 2.pdf");
    EXPECT_EQ(FileOps::copyName(folder / "Report copy.pdf"), folder / "Report copy copy.pdf");
    EXPECT_EQ(FileOps::copyName(folder / "Report 2.pdf"), folder / "Report 2 copy.pdf");
    EXPECT_EQ(FileOps::copyName(folder / "x.tar.gz"), folder / "x copy.tar.gz");
}

TEST(FileNames, longNamesAreCutAtACharacterToMakeRoom) {
    const TestFolder folder;
    std::string longest;
    while (longest.size() + 2 <= 250) longest += "é";
    longest += "a.pdf";  // 255 bytes
    longest.resize(255);
    folder.file(longest);
    for (const URL& url :
         {FileOps::uniqueURL(folder / longest), FileOps::copyName(folder / longest)}) {
        SCOPED_TRACE(url.name());
        EXPECT_LE(url.name().size(), 255U);
        folder.file(url.name());
        EXPECT_TRUE(folder.exists(url.name()));
        EXPECT_NE(url.name().find("é "), std::string_view::npos) << "not cut inside a character";
    }
}

}  // namespace
}  // namespace tarn
