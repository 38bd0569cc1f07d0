#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TarnCore/base/PropertyList.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

const URL somewhere = URL::fromPath("/home/ada/Report.txt");

TEST(FileItem, takesFoldersLinksAndPackagesApart) {
    using Values = ResourceValues;
    const struct {
        const char* what;
        Values values;
        bool isDirectory;
        std::optional<std::int64_t> size;
    } cases[] = {
        {"file", {.fileSize = 7}, false, 7},
        {"empty file", {.fileSize = 0}, false, 0},
        {"file of unknown size", {}, false, 0},
        {"folder", {.isDirectory = true, .fileSize = 4096}, true, std::nullopt},
        {"package", {.isDirectory = true, .isPackage = true, .fileSize = 9}, false, 9},
        {"link to a folder",
         {.isSymlink = true, .linkTargetIsDirectory = true},
         true,
         std::nullopt},
        {"link to a file",
         {.isSymlink = true, .fileSize = 3, .linkTargetIsDirectory = false},
         false,
         3},
        {"dangling link keeps its own flag",
         {.isDirectory = true, .isSymlink = true},
         true,
         std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const FileItem item = FileItem::make(somewhere, c.values);
        EXPECT_EQ(item.isDirectory, c.isDirectory);
        EXPECT_EQ(item.size, c.size);
        EXPECT_EQ(item.kindDescription == "Folder", c.isDirectory);
    }
}

TEST(FileItem, cloudStateFollowsTheWorstNews) {
    using Values = ResourceValues;
    const struct {
        Values values;
        CloudStatus status;
    } cases[] = {
        {{.isDownloading = true, .hasUploadingError = true}, CloudStatus::local},
        {{.isUbiquitous = true}, CloudStatus::downloaded},
        {{.isUbiquitous = true, .isNotDownloaded = true}, CloudStatus::cloudOnly},
        {{.isUbiquitous = true, .isUploading = true, .isNotDownloaded = true},
         CloudStatus::uploading},
        {{.isUbiquitous = true, .isDownloading = true, .isUploading = true},
         CloudStatus::downloading},
        {{.isUbiquitous = true, .isDownloading = true, .hasDownloadingError = true},
         CloudStatus::error},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.status));
        EXPECT_EQ(FileItem::make(somewhere, c.values).cloud, c.status);
    }
}

TEST(FileItem, loadsWhatTheDiskTells) {
    const TestFolder root;
    const Date modified = *Date::fromISO8601("2024-02-29T10:20:30Z");
    const URL url = root.file("Übersicht.TAR.GZ", "12345", modified);
    const auto item = FileItem::load(url);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->url, url);
    EXPECT_EQ(item->name, "Übersicht.TAR.GZ");
    EXPECT_EQ(item->fileExtension(), "gz");
    EXPECT_EQ(item->size, 5);
    EXPECT_EQ(item->modified, modified);
    EXPECT_EQ(item->added, item->created);
    EXPECT_TRUE(item->isBrowsable());
    EXPECT_FALSE(item->isHidden);
    EXPECT_EQ(item->kind, FileKind::archive);
    EXPECT_FALSE(FileItem::load(root / "missing"));
}

TEST(FileItem, hiddenByDotOrByTheFoldersList) {
    const TestFolder root;
    root.file(".hidden", "secret.txt\n\n  spaced \nbroken \xff name\nno feed at the end");
    for (const char* name :
         {".profile", "secret.txt", "  spaced ", "broken \xff name", "no feed at the end"}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(FileItem::load(root.file(name))->isHidden);
    }
    for (const char* name : {"spaced", "secret.txt2", "Secret.txt"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(FileItem::load(root.file(name))->isHidden);
    }
}

/// Sets an attribute, or skips the test where the disk keeps none.
#define SET_ATTRIBUTE_OR_SKIP(url, name, value)                             \
    try {                                                                   \
        Platform::current().attributes->set(url, std::string(name), value); \
    } catch (const std::system_error& error) {                              \
        GTEST_SKIP() << "no extended attributes here: " << error.what();    \
    }

TEST(FileItem, tagsAndAddedDateComeFromAttributes) {
    const TestFolder root;
    const auto& attributes = Platform::current().attributes;
    const URL tagged = root.file("tagged");
    SET_ATTRIBUTE_OR_SKIP(tagged, "com.apple.metadata:_kMDItemUserTags",
                          PropertyList::encode({"Work\n4", "Red", "Odd\n9", "Grün\n2"}));
    attributes->set(tagged, "xdg.tags", "Other");
    attributes->set(tagged, "tarn.added", "725760000.5");
    auto item = FileItem::load(tagged);
    EXPECT_EQ(item->tags, (std::vector<std::string>{"Work", "Red", "Odd\n9", "Grün"}));
    EXPECT_EQ(item->added, Date{725760000.5});

    const URL mirrored = root.file("mirrored");
    attributes->set(mirrored, "xdg.tags", "Alpha, Beta ,,Gamma");
    attributes->set(mirrored, "tarn.added", "yesterday");
    item = FileItem::load(mirrored);
    EXPECT_EQ(item->tags, (std::vector<std::string>{"Alpha", "Beta", "Gamma"}));
    EXPECT_EQ(item->added, item->created);

    const URL broken = root.file("broken");
    attributes->set(broken, "com.apple.metadata:_kMDItemUserTags", "bplist00 but no more");
    EXPECT_TRUE(FileItem::load(broken)->tags.empty());

    // A link is not its target.
    EXPECT_TRUE(FileItem::load(root.link("link", "tagged"))->tags.empty());
}

TEST(FileItem, jsonReadsBackAndBothWritersAgree) {
    FileItem item;
    item.url = URL::fromPath("/tmp/broken \xff & “quoted”\n.txt");
    item.name = item.url.name();
    item.size = 9'007'199'254'740'993;
    item.modified = Date{0.1};
    item.created = Date{-1e9};
    item.typeIdentifier = "public.plain-text";
    item.kindDescription = "plain text document";
    item.tags = {"Work", "Zwei\nZeilen"};
    item.kind = FileKind::document;
    item.isHidden = true;

    std::string text;
    JSONWriter writer(text);
    write(writer, item);
    const JSON document = JSON::parse(text);
    EXPECT_EQ(document, JSON(item));
    EXPECT_EQ(document.get<FileItem>(), item);
    EXPECT_FALSE(document.contains("added"));
    EXPECT_FALSE(document.contains("volumeID"));
}

}  // namespace
}  // namespace tarn
