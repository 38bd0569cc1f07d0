#include <gtest/gtest.h>

#include "TarnCore/files/FileKind.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(FileKind, extensionsBeatTypesAndFoldersBeatBoth) {
    const struct {
        const char* what;
        std::optional<std::string_view> type;
        const char* ext;
        bool isDirectory;
        bool isPackage;
        FileKind kind;
    } cases[] = {
        {"application bundle", "com.apple.application-bundle", "app", false, true, FileKind::app},
        {"plain directory x.app", "public.folder", "app", true, false, FileKind::app},
        {"directory backup.zip", "public.folder", "zip", true, false, FileKind::folder},
        {"archive", "public.zip-archive", "zip", false, false, FileKind::archive},
        {"installer package", "com.apple.installer-package-archive", "pkg", false, true,
         FileKind::archive},
        {"json is text by type", "public.json", "json", false, false, FileKind::code},
        {"upper case", std::nullopt, "CR2", false, false, FileKind::image},
        {"markdown without a type", std::nullopt, "MD", false, false, FileKind::document},
        {"package that is no application", "com.apple.rtfd", "rtfd", false, true,
         FileKind::document},
        {"by conformance", "public.jpeg", "jpg", false, false, FileKind::image},
        {"by conformance, odd extension", "public.mpeg-4", "", false, false, FileKind::video},
        {"audio", "public.mp3", "mp3", false, false, FileKind::audio},
        {"nothing known", std::nullopt, "qqq", false, false, FileKind::other},
        {"type that means nothing", "public.data", "", false, false, FileKind::other},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(FileKinds::classify(c.type, c.ext, c.isDirectory, c.isPackage), c.kind);
    }
}

TEST(FileKind, classifiesWhatIsOnTheDisk) {
    const TestFolder root;
    root.folder("backup.zip");
    root.folder("Old.app");
    root.file("a.PNG");
    root.link("way", "backup.zip");
    root.link("dangling.txt", "nowhere");
    const struct {
        const char* name;
        FileKind kind;
    } cases[] = {{"backup.zip", FileKind::folder},     {"Old.app", FileKind::app},
                 {"a.PNG", FileKind::image},           {"way", FileKind::folder},
                 {"dangling.txt", FileKind::document}, {"missing.txt", FileKind::other}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(FileKinds::classify(root / c.name), c.kind);
    }
}

TEST(FileKind, rawValuesReadBack) {
    for (const FileKind kind : allFileKinds)
        EXPECT_EQ(FileKinds::fromRawValue(FileKinds::rawValue(kind)), kind);
    EXPECT_EQ(FileKinds::fromRawValue("Folder"), std::nullopt);
}

}  // namespace
}  // namespace tarn
