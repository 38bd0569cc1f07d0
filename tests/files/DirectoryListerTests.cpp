#include <algorithm>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

std::vector<std::string> namesOf(const std::vector<FileItem>& items) {
    std::vector<std::string> names;
    for (const FileItem& item : items) names.push_back(item.name);
    return names;
}

std::optional<ListingError> errorOf(const URL& folder) {
    try {
        DirectoryLister::list(folder, false);
    } catch (const ListingError& error) {
        return error;
    }
    return std::nullopt;
}

TEST(DirectoryLister, listsOneLevelWithAwkwardNames) {
    const TestFolder root;
    const std::string longest(255, 'x');
    root.file("line\nfeed");
    root.file("broken \xff utf-8");
    root.file(longest);
    root.file("case");
    root.file("CASE");
    root.file("folder/inside");
    root.file("Photos.app/inside");
    root.file(".dot");
    root.file("listed");
    root.file(".hidden", "listed\n");
    root.link("loop", "loop");
    root.link("to folder", "folder");

    const auto items = DirectoryLister::list(root.url(), false);
    EXPECT_THAT(namesOf(items),
                UnorderedElementsAre("line\nfeed", "broken \xff utf-8", longest, "case", "CASE",
                                     "folder", "Photos.app", "loop", "to folder"));
    for (const FileItem& item : items) {
        SCOPED_TRACE(item.name);
        EXPECT_EQ(item.url, root / item.name);
        EXPECT_EQ(item, *FileItem::load(item.url));
    }
    EXPECT_EQ(DirectoryLister::list(root.url(), true).size(), items.size() + 3);
}

TEST(DirectoryLister, saysWhyAFolderCannotBeListed) {
    const TestFolder root;
    root.file("file.txt");
    root.link("loop", "loop");
    EXPECT_EQ(errorOf(root / "gone"), ListingError::notFound("gone"));
    EXPECT_EQ(errorOf(root / "file.txt/below"), ListingError::notFound("below"));
    EXPECT_EQ(errorOf(root / "loop"), ListingError::notFound("loop"));
    EXPECT_EQ(errorOf(root / "file.txt"), ListingError::notAFolder("file.txt"));
    EXPECT_STREQ(errorOf(root / "gone")->what(), "“gone” doesn’t exist any more.");
    EXPECT_STREQ(errorOf(root / "file.txt")->what(), "“file.txt” isn’t a folder.");
    EXPECT_STREQ(errorOf(root / "bro\xffken")->what(), "“bro\uFFFDken” doesn’t exist any more.");
}

TEST(DirectoryLister, closedFolderIsAMatterOfPermission) {
    if (geteuid() == 0) GTEST_SKIP() << "root may open every folder";
    const TestFolder root;
    const URL closed = root.folder("closed");
    std::filesystem::permissions(closed.path(), std::filesystem::perms::none);
    const auto error = errorOf(closed);
    std::filesystem::permissions(closed.path(), std::filesystem::perms::owner_all);
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->isPermission());
    EXPECT_STREQ(error->what(), "Tarn isn’t allowed to open “closed”.");
}

TEST(DirectoryLister, manyThreadsKeepTheOrderOfTheDisk) {
    const TestFolder root;
    constexpr std::size_t count = DirectoryLister::parallelFrom + 7;
    for (std::size_t i = 0; i < count; ++i) root.file("file " + std::to_string(i));
    std::vector<std::string> inDiskOrder;
    for (const ListedName& name : DirectoryLister::names(root.url(), false))
        inDiskOrder.push_back(name.name);
    ASSERT_EQ(inDiskOrder.size(), count);
    const auto items = DirectoryLister::list(root.url(), false);
    EXPECT_EQ(namesOf(items), inDiskOrder);

    // Known URLs keep their order too, and those that are gone leave no hole.
    std::vector<URL> urls;
    for (const FileItem& item : items) urls.push_back(item.url);
    std::reverse(urls.begin(), urls.end());
    urls.insert(urls.begin() + 100, root / "gone");
    std::reverse(inDiskOrder.begin(), inDiskOrder.end());
    EXPECT_EQ(namesOf(DirectoryLister::load(urls, {})), inDiskOrder);
}

TEST(DirectoryLister, tagsWaitInLargeFolders) {
    const TestFolder root;
    const URL tagged = root.file("0 tagged");
    try {
        Platform::current().attributes->set(tagged, "xdg.tags", "Work");
    } catch (const std::system_error& error) {
        GTEST_SKIP() << "no extended attributes here: " << error.what();
    }
    const auto tagsListed = [&] {
        for (const FileItem& item : DirectoryLister::list(root.url(), false))
            if (item.url == tagged) return item.tags;
        return std::vector<std::string>{"missing"};
    };
    for (std::size_t i = 1; i < DirectoryLister::deferTagsAbove; ++i) root.file(std::to_string(i));
    EXPECT_THAT(tagsListed(), ElementsAre("Work"));
    root.file("one more");
    EXPECT_THAT(tagsListed(), ElementsAre());

    const auto tags = DirectoryLister::loadTags({root / "1", tagged, root / "gone"});
    EXPECT_EQ(tags.size(), 1U);
    EXPECT_THAT(tags.at(tagged), ElementsAre("Work"));
}

TEST(DirectoryLister, cancelledListingReturnsWhatItHas) {
    const TestFolder root;
    for (int i = 0; i < 10; ++i) root.file(std::to_string(i));
    const CancelToken token;
    token.cancel();
    EXPECT_TRUE(DirectoryLister::list(root.url(), false, token).empty());
}

TEST(DirectoryLister, bareNamesKnowFoldersFromFiles) {
    const TestFolder root;
    root.folder("folder");
    root.folder("Notes.pages");
    root.file("file");
    root.file(".dot");
    root.link("to folder", "folder");
    root.link("to package", "Notes.pages");
    root.link("dangling", "nowhere");
    std::vector<ListedName> fromItems;
    for (const FileItem& item : DirectoryLister::list(root.url(), true))
        fromItems.push_back({item.name, item.isDirectory});
    EXPECT_EQ(DirectoryLister::names(root.url(), true), fromItems);
}

}  // namespace
}  // namespace tarn
