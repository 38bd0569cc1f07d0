#include <algorithm>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/ItemGathering.h"
#include "TarnCore/files/ListedFolder.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "tests/support/ScopedPlatform.h"
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

/// The attributes of a disk that keeps none.
class RefusingAttributes final : public ExtendedAttributes {
public:
    mutable int asked = 0;
    std::optional<std::string> get(const URL&, const std::string&) const override { refuse(); }
    void set(const URL&, const std::string&, const std::string&) override { refuse(); }
    void remove(const URL&, const std::string&) override { refuse(); }
    std::vector<std::string> list(const URL&) const override { refuse(); }

private:
    [[noreturn]] void refuse() const {
        ++asked;
        throw std::system_error(ENOTSUP, std::generic_category());
    }
};

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

TEST(DirectoryLister, mapsWhatTheDiskRefuses) {
    MemoryPlatform machine;
    const ScopedPlatform platform(machine.services());
    const URL folder = URL::fromPath("/home/closed");
    machine.files->addFile(folder.appending("a.txt"));
    const struct {
        int errnum;
        ListingError::Reason reason;
        const char* sentence;
    } cases[] = {
        {EACCES, ListingError::Reason::permissionDenied, "Tarn isn’t allowed to open “closed”."},
        {EPERM, ListingError::Reason::permissionDenied, "Tarn isn’t allowed to open “closed”."},
        {ENOENT, ListingError::Reason::notFound, "“closed” doesn’t exist any more."},
        {EIO, ListingError::Reason::other, nullptr},
        {ESTALE, ListingError::Reason::other, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.errnum);
        machine.files->failWith(folder, c.errnum);
        const auto error = errorOf(folder);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->reason(), c.reason);
        EXPECT_EQ(error->isPermission(), c.reason == ListingError::Reason::permissionDenied);
        EXPECT_EQ(std::string(error->what()),
                  c.sentence ? c.sentence : systemErrorSentence(c.errnum));
    }
}

TEST(DirectoryLister, itemsThatVanishMeanwhileAreLeftOut) {
    MemoryPlatform machine;
    const ScopedPlatform platform(machine.services());
    const URL folder = URL::fromPath("/home/busy");
    for (const char* name : {"a", "gone", "unreadable", "z"})
        machine.files->addFile(folder.appending(name));
    machine.files->addLink(folder.appending("link"), "gone");
    machine.files->failWith(folder.appending("gone"), ENOENT);
    machine.files->failWith(folder.appending("unreadable"), EACCES);
    machine.files->setBatchSize(2);
    EXPECT_THAT(namesOf(DirectoryLister::list(folder, false)),
                UnorderedElementsAre("a", "z", "link"));
}

TEST(DirectoryLister, aDiskWithoutAttributesIsAskedForThemOnce) {
    MemoryPlatform machine;
    const auto refusing = std::make_shared<RefusingAttributes>();
    Platform services = machine.services();
    services.attributes = refusing;
    const ScopedPlatform platform(services);
    const URL folder = URL::fromPath("/media/stick");
    for (int i = 0; i < 50; ++i) machine.files->addFile(folder.appending(std::to_string(i)));
    EXPECT_EQ(DirectoryLister::list(folder, false).size(), 50U);
    EXPECT_EQ(refusing->asked, 1);
}

TEST(DirectoryLister, manyThreadsKeepTheOrderOfTheDisk) {
    const TestFolder root;
    constexpr std::size_t count = ItemGathering::parallelFrom + 7;
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
    using DirectoryLister::AttributeReading;
    const auto tagsListed = [&](AttributeReading reading = AttributeReading::deferredWhenMany) {
        for (const FileItem& item : DirectoryLister::list(root.url(), false, {}, reading))
            if (item.url == tagged) return item.tags;
        return std::vector<std::string>{"missing"};
    };
    for (std::size_t i = 1; i < DirectoryLister::deferTagsAbove; ++i) root.file(std::to_string(i));
    EXPECT_THAT(tagsListed(), ElementsAre("Work"));
    root.file("one more");
    EXPECT_THAT(tagsListed(), ElementsAre());
    EXPECT_THAT(tagsListed(AttributeReading::always), ElementsAre("Work"));

    const auto tags = DirectoryLister::loadTags(
        {root / "1", tagged, root / "gone", root.link("link", "0 tagged")});
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

TEST(ListedFolder, itsFirstNamesAreThoseOfTheWholeOrder) {
    MemoryPlatform machine;  // Whose folders are read in two stretches.
    const ScopedPlatform platform(machine.services());
    const URL folder = URL::fromPath("/home/many");
    machine.files->setBatchSize(3);
    for (int i = 0; i < 40; ++i) {
        const std::string number = std::to_string(i * 7 % 40);
        machine.files->addFile(folder.appending("File " + number));
        if (i % 4 == 0) machine.files->addFile(folder.appending("FILE " + number));
        if (i % 8 == 0) machine.files->addFolder(folder.appending("z folder " + number));
        if (i % 8 == 4) machine.files->addFolder(folder.appending("Notes " + number + ".pages"));
        if (i % 10 == 0) machine.files->addLink(folder.appending("link " + number), "z folder 0");
        if (i % 10 == 5) machine.files->addLink(folder.appending("dead " + number), "gone");
    }
    for (const bool ascending : {true, false}) {
        for (const bool foldersFirst : {true, false}) {
            const SortOrder order{SortField::size, ascending, foldersFirst};
            for (const std::size_t count : {std::size_t{1}, std::size_t{12}, std::size_t{500}}) {
                SCOPED_TRACE(testing::Message() << ascending << foldersFirst << " " << count);
                const ListedFolder listed(folder, false, {},
                                          ListedFolder::Beginning{order, count, 50});
                std::vector<std::uint32_t> all = order.sortedIndexes(listed.names());
                ASSERT_EQ(all.size(), 68U);
                all.resize(std::min(count, all.size()));
                EXPECT_EQ(listed.first(), all);
            }
        }
    }
    const ListedFolder small(folder, false, {}, ListedFolder::Beginning{{}, 12, 68});
    EXPECT_TRUE(small.first().empty()) << "not worth it";
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
