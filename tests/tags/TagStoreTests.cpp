#include <algorithm>

#include <gtest/gtest.h>

#include "TarnCore/base/PropertyList.h"
#include "TarnCore/files/FileItem.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/TransferJob.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/platform/memory/MemoryExtendedAttributes.h"
#include "TarnCore/tags/TagStore.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

using Names = std::vector<std::string>;
using Tags = std::vector<FinderTag>;

const std::string attribute = "com.apple.metadata:_kMDItemUserTags";
const std::string mirror = "xdg.tags";

/// Real files, with attributes in a map, so that the tests run on every disk.
class TagStoreTest : public testing::Test {
protected:
    TestFolder folder;
    std::shared_ptr<MemoryExtendedAttributes> attributes =
        std::make_shared<MemoryExtendedAttributes>();
    ScopedPlatform scope{[&] {
        Platform platform = makeLinuxPlatform();
        platform.attributes = attributes;
        return platform;
    }()};
    const FinderTag work{"Work", TagColor::blue};
    const FinderTag red{"Red", TagColor::red};

    static Names names(const URL& url) {
        const auto item = FileItem::load(url);
        return item ? item->tags : Names{};
    }
};

TEST_F(TagStoreTest, keepsTagsWhereOthersSeeThem) {
    const URL file = folder.file("a\n\xff.txt");
    EXPECT_EQ(TagStore::tags(file), Tags());
    ASSERT_TRUE(TagStore::setTags({work, {"a, b", TagColor::none}, red}, file));
    EXPECT_EQ(attributes->get(file, attribute),
              PropertyList::encode({"Work\n4", "a, b\n0", "Red\n6"}));
    EXPECT_EQ(attributes->get(file, mirror), "Work,Red") << "a comma has no place there";
    EXPECT_EQ(names(file), (Names{"Work", "a, b", "Red"}));
    ASSERT_TRUE(TagStore::setTags({}, file));
    EXPECT_TRUE(attributes->list(file).empty());
}

TEST_F(TagStoreTest, addsAndRemovesWithSteps) {
    const URL file = folder.file("a.txt");
    EXPECT_EQ(TagStore::add(work, file), Step::tags(file, {}, {"Work\n4"}));
    EXPECT_EQ(TagStore::add(work, file), std::nullopt);
    EXPECT_EQ(TagStore::add({"Work", TagColor::green}, file),
              Step::tags(file, {"Work\n4"}, {"Work\n2"}));
    EXPECT_EQ(TagStore::remove("Job", file), std::nullopt);
    EXPECT_EQ(TagStore::add(red, file), Step::tags(file, {"Work\n2"}, {"Work\n2", "Red\n6"}));
    const auto step = TagStore::remove("Work", file);
    ASSERT_TRUE(step);
    EXPECT_EQ(TagStore::tags(file), Tags{red});
    FileOps::revert({*step});
    EXPECT_EQ(TagStore::tags(file), (Tags{{"Work", TagColor::green}, red}));
}

TEST_F(TagStoreTest, saysWhichFileItCouldNotTag) {
    const URL file = folder.file("a.txt");
    attributes->failWith(EROFS);
    try {
        TagStore::add(work, file);
        ADD_FAILURE() << "was tagged";
    } catch (const FileOpError& error) {
        EXPECT_TRUE(std::string(error.what()).starts_with("Couldn’t change tags on “a.txt”"))
            << error.what();
    }
    EXPECT_THROW(TagStore::add(work, folder / "missing"), FileOpError);
}

TEST_F(TagStoreTest, keepsTagsOfOtherFileManagers) {
    const URL file = folder.file("a.txt");
    attributes->set(file, mirror, "Holiday, Red,");
    EXPECT_EQ(TagStore::tags(file), (Tags{{"Holiday", TagColor::none}, red}));
    TagStore::add(work, file);
    EXPECT_EQ(TagStore::tags(file), (Tags{{"Holiday", TagColor::none}, red, work}));
    EXPECT_EQ(attributes->get(file, mirror), "Holiday,Red,Work");
    // Another program adds one beside ours: it is not shown, and not lost either.
    attributes->set(file, mirror, "Holiday,Red,Work,Beach");
    TagStore::remove("Holiday", file);
    EXPECT_EQ(attributes->get(file, mirror), "Red,Work,Beach");
    EXPECT_EQ(TagStore::tags(file), (Tags{red, work}));
}

TEST_F(TagStoreTest, aTagOfBrokenTextGoesAgain) {
    const URL file = folder.file("a.txt");
    const Step step = FileOps::setTags({"br\xffken", "Work\n4"}, file);
    EXPECT_TRUE(attributes->get(file, mirror));
    FileOps::revert({step});
    EXPECT_EQ(attributes->get(file, mirror), std::nullopt);
    // One that another program has left is ours to remove once it is shown.
    attributes->set(file, mirror, "r\xff");
    const Step other = FileOps::setTags({}, file);
    EXPECT_EQ(attributes->get(file, mirror), std::nullopt);
    EXPECT_EQ(TagStore::tags(file), Tags());
}

TEST_F(TagStoreTest, rewritesATagOnManyFiles) {
    const URL a = folder.file("a"), b = folder.file("b"), c = folder.file("c");
    TagStore::setTags({work, red}, a);
    TagStore::setTags({red}, b);
    TagStore::setTags({{"Job", TagColor::green}, work}, c);
    const FinderTag job{"Job", TagColor::purple};
    EXPECT_EQ(TagStore::rewrite("Work", job, {a, b, c}).size(), 2u);
    EXPECT_EQ(TagStore::tags(a), (Tags{job, red}));
    EXPECT_EQ(TagStore::tags(b), Tags{red});
    EXPECT_EQ(TagStore::tags(c), Tags{job}) << "a name is there once";
    EXPECT_EQ(TagStore::rewrite("Job", std::nullopt, {a, b, c}).size(), 2u);
    EXPECT_EQ(TagStore::tags(c), Tags());
}

TEST_F(TagStoreTest, linksAndDisksWithoutAttributesAreTaggedToo) {
    const URL file = folder.file("a.txt");
    const URL link = folder.link("link", "a.txt");
    ASSERT_TRUE(TagStore::add(work, link));
    EXPECT_EQ(TagStore::tags(file), Tags()) << "the target is another item";
    EXPECT_EQ(TagStore::tags(link), Tags{work});
    EXPECT_EQ(names(link), Names{"Work"});

    attributes->failWith(ENOTSUP);
    ASSERT_TRUE(TagStore::add(red, file));
    EXPECT_EQ(names(file), Names{"Red"});
    // They follow the file, by whomever it is moved.
    folder.folder("sub");
    FileOps::move(file, folder / "sub/b.txt");
    EXPECT_EQ(TagStore::tags(folder / "sub/b.txt"), Tags{red});
    FileOps::move(folder / "sub", folder / "other");
    EXPECT_EQ(TagStore::tags(folder / "other/b.txt"), Tags{red});
    ASSERT_EQ(rename((folder / "other/b.txt").c_str(), (folder / "c.txt").c_str()), 0);
    EXPECT_EQ(TagStore::tags(folder / "c.txt"), Tags{red});
    const auto step = TagStore::remove("Red", folder / "c.txt");
    EXPECT_EQ(TagStore::tags(folder / "c.txt"), Tags());
    ASSERT_TRUE(step);
    FileOps::revert({*step});
    EXPECT_EQ(TagStore::tags(folder / "c.txt"), Tags{red});
}

TEST_F(TagStoreTest, aTransferTakesTheListAlong) {
    const URL link = folder.link("link", "nowhere");
    const URL target = folder.folder("target");
    ASSERT_TRUE(TagStore::add(work, link));
    TransferJob(TransferKind::move, {link}, target).run();
    // By its path, that is, also when the disk numbers its files anew.
    const std::string list = Platform::current().files->readFile(
        SupportDirectory::location().appending("tags-elsewhere.json"), 1 << 20);
    EXPECT_NE(list.find(target.appending("link").path() + "\""), list.npos) << list;
    EXPECT_EQ(TagStore::tags(target.appending("link")), Tags{work});
}

TEST_F(TagStoreTest, aCopyHasTheTagsOfTheList) {
    const URL link = folder.link("from/link", "nowhere");
    ASSERT_TRUE(TagStore::add(work, link));
    std::vector<URL> sources = {folder / "from"};
    attributes->failWith(ENOTSUP);
    for (int i = 0; i < 10; ++i) {
        sources.push_back(folder.file(std::to_string(i), "x"));
        ASSERT_TRUE(TagStore::add(red, sources.back()));
    }
    attributes->failWith(0);
    const URL target = folder.folder("target");
    TransferJob job(TransferKind::copy, sources, target);
    job.run();
    EXPECT_EQ(TagStore::tags(link), Tags{work}) << "the original keeps them";
    EXPECT_EQ(TagStore::tags(target.appending("from/link")), Tags{work});
    EXPECT_EQ(TagStore::tags(target.appending("7")), Tags{red});
    EXPECT_TRUE(attributes->get(target.appending("7"), mirror)) << "kept by the disk that can";
    const URL twin = FileOps::duplicate(link).url;
    EXPECT_EQ(TagStore::tags(twin), Tags{work});
    FileOps::trash(target.appending("from"));
    EXPECT_EQ(TagStore::tags(link), Tags{work});
}

TEST_F(TagStoreTest, aNewFileDoesNotInheritTheTagsOfItsName) {
    attributes->failWith(ENOTSUP);
    const URL file = folder.file("a.txt");
    const URL kept = folder.file("kept");  // So that the inode is not used again at once.
    ASSERT_TRUE(TagStore::add(work, file));
    ASSERT_EQ(rename(file.c_str(), (folder / "elsewhere").c_str()), 0);
    folder.file("a.txt", "another");
    EXPECT_EQ(TagStore::tags(file), Tags());
    EXPECT_EQ(TagStore::tags(folder / "elsewhere"), Tags{work});
}

/// Searches walk the home folder, which is a test's own.
class TagSearchTest : public TagStoreTest {
protected:
    ScopedEnvironment isolation{{"TARN_ISOLATED_ROOT", folder.url().path()}};
    URL home(std::string_view name) const { return folder.file("Home/" + std::string(name)); }
};

TEST_F(TagSearchTest, findsTaggedFilesAndFoldersWhateverTheCase) {
    const URL a = home("Documents/a\n\xff"), b = home("b"), hidden = home(".config/c");
    const URL trashed = home(".Trash/d"), other = home("other");
    const URL tagged = folder.folder("Home/tagged");
    const URL link = folder.link("Home/link", "b");
    for (const URL& url : {a, hidden, trashed, tagged, link}) TagStore::setTags({work}, url);
    TagStore::setTags({{"WORK", TagColor::none}, red}, b);
    TagStore::setTags({{"Workshop", TagColor::none}}, other);
    std::vector<URL> expected = {a, b, hidden, tagged, link};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(TagStore::filesWithTag("work", 100), expected);
    EXPECT_EQ(TagStore::filesWithTag("work", 2).size(), 2u);
    EXPECT_TRUE(TagStore::filesWithTag("nothing", 100).empty());
}

TEST_F(TagSearchTest, listsEveryTagOnceInDisplayOrder) {
    TagStore::setTags({{"öffentlich", TagColor::none}}, home("a"));
    TagStore::setTags({{"Zebra", TagColor::none}, {"apple", TagColor::green}}, home("b"));
    TagStore::setTags({{"Zebra", TagColor::yellow}}, home("c"));
    TagStore::remember({"Registered", TagColor::purple});
    Names all;
    for (const FinderTag& tag : TagStore::allTags()) {
        // Tests that ran before in this process may have left these.
        if (tag.name == "Job" || tag.name == "Work" || tag.name == "Project") continue;
        all.push_back(tag.name + " " + std::to_string(static_cast<int>(tag.color)));
    }
    EXPECT_EQ(all, (Names{"apple 2", "Blue 4", "Gray 1", "Green 2", "öffentlich 0", "Orange 7",
                          "Purple 3", "Red 6", "Registered 3", "Yellow 5", "Zebra 5"}));
}

TEST(TagRegistry, remembersColours) {
    EXPECT_EQ(TagStore::color("Red"), TagColor::red);
    EXPECT_EQ(TagStore::color("red"), TagColor::none);
    EXPECT_EQ(TagStore::color("Project"), TagColor::none);
    TagStore::remember({"Project", TagColor::green});
    TagStore::remember({"Project", TagColor::purple});
    EXPECT_EQ(TagStore::color("Project"), TagColor::purple);
}

}  // namespace
}  // namespace tarn
