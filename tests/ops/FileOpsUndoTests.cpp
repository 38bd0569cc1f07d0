#include <map>
#include <random>
#include <set>

#include "TarnCore/base/Text.h"
#include "TarnCore/files/ResourceReader.h"
#include "TarnCore/ops/FileOps.h"
#include "TarnCore/ops/OperationHistory.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/platform/memory/MemoryExtendedAttributes.h"
#include "TarnCore/platform/memory/MemoryFileSystem.h"
#include "TarnCore/platform/memory/MemoryPlatform.h"
#include "TarnCore/platform/memory/MemoryTrash.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

/// Names, contents and tags of everything below a folder, and not when it came there.
using Tree = std::map<std::string, std::string>;

Tree treeBelow(const URL& root) {
    const Platform& platform = Platform::current();
    Tree tree;
    std::vector<URL> folders = {root};
    while (!folders.empty()) {
        const URL folder = folders.back();
        folders.pop_back();
        const auto reader = platform.files->openFolder(folder);
        for (auto batch = reader->read(); !batch.empty(); batch = reader->read())
            for (const FolderEntry& entry : batch) {
                const URL url = folder.appending(entry.view());
                std::string& text = tree[url.path().substr(root.path().size())];
                const auto item = platform.files->requireAttributes(url, Links::keep);
                text = std::to_string(static_cast<int>(entry.type)) + " " +
                       std::to_string(item.inode) + " ";
                if (entry.type == FileType::symlink) {
                    text += platform.files->linkTarget(url);
                    continue;
                }
                if (entry.type == FileType::directory)
                    folders.push_back(url);
                else
                    text += platform.files->readFile(url, 1000);
                for (const std::string& name : platform.attributes->list(url))
                    if (name != ResourceReader::addedAttribute)
                        text += " " + name + "=" + platform.attributes->get(url, name).value_or("");
            }
    }
    return tree;
}

std::string sentence(const std::function<void()>& body) {
    try {
        body();
        return {};
    } catch (const FileOpError& error) {
        return error.what();
    }
}

TEST(FileOpsUndo, exchangesNamesBack) {
    const TestFolder folder;
    folder.file("a", "A");
    folder.file("b", "B");
    folder.file("c", "C");
    const FileOps::Moves moves = {
        {folder / "a", folder / "b"}, {folder / "b", folder / "c"}, {folder / "c", folder / "a"}};
    FileOps::swapSafeMove(moves);
    EXPECT_EQ(folder.read("b"), "A");
    std::vector<Step> steps;
    for (const auto& [from, to] : moves) steps.push_back(Step::move(from, to));
    EXPECT_TRUE(FileOps::canRevert(steps));
    FileOps::revert(steps);
    EXPECT_EQ(folder.read("a") + folder.read("b") + folder.read("c"), "ABC");
    FileOps::reapply(steps);
    EXPECT_EQ(folder.read("a") + folder.read("b") + folder.read("c"), "CAB");
}

TEST(FileOpsUndo, refusesBeforeItMovesAnything) {
    const TestFolder folder;
    folder.file("new/a", "A");
    folder.file("new/b", "B");
    folder.file("old/b", "in the way");
    const std::vector<Step> steps = {Step::move(folder / "old/a", folder / "new/a"),
                                     Step::move(folder / "old/b", folder / "new/b")};
    EXPECT_FALSE(FileOps::canRevert(steps));
    EXPECT_EQ(sentence([&] { FileOps::revert(steps); }),
              "The name “b” is already taken. Please choose a different name.");
    EXPECT_EQ(folder.read("new/a"), "A");
    Platform::current().files->removeFile(folder / "new/a");
    EXPECT_EQ(sentence([&] { FileOps::revert(steps); }),
              "“a” can’t be found. It may have been moved or deleted.");
}

TEST(FileOpsUndo, notesWhenAnItemCameToAnotherFolderOnly) {
    MemoryPlatform machine(Date{700});
    const ScopedPlatform scope(machine.services());
    const auto added = [&](const URL& url) {
        return machine.attributes->get(url, std::string(ResourceReader::addedAttribute));
    };
    const URL first = URL::fromPath("/one/a"), second = URL::fromPath("/two/a"),
              third = URL::fromPath("/two/b"), link = URL::fromPath("/two/link");
    for (const char* folder : {"/one", "/two"}) machine.files->addFolder(URL::fromPath(folder));
    machine.files->addFile(first, "A");
    machine.files->addFile(URL::fromPath("/one/stays"), "");
    machine.files->createLink(URL::fromPath("/one/link"), "/one/stays");
    FileOps::reapply({Step::move(first, second), Step::move(URL::fromPath("/one/link"), link)});
    EXPECT_EQ(added(second), std::to_string(Date{700}.seconds));
    EXPECT_FALSE(added(link)) << "it would be the target's";
    machine.attributes->set(second, std::string(ResourceReader::addedAttribute), "1");
    FileOps::reapply({Step::move(second, third)});
    EXPECT_EQ(added(third), "1") << "it has only another name";
    machine.attributes->failWith(ENOTSUP);
    FileOps::revert({Step::move(first, third)});
    EXPECT_TRUE(FileOps::exists(first));
}

TEST(FileOpsUndo, makesTheFoldersAgainThatAreGone) {
    const TestFolder folder;
    folder.file("new/a", "A");
    FileOps::revert({Step::move(folder / "gone/deep/a", folder / "new/a")});
    EXPECT_EQ(folder.read("gone/deep/a"), "A");
}

TEST(FileOpsUndo, trashedItemsComeBackAndAreForgotten) {
    const TestFolder folder;
    const URL item = folder.file("a", "A");
    const std::vector<Step> trashed = FileOps::trash(std::vector{item});
    const URL place = std::get<Step::Move>(trashed[0].change).to;
    const Trash& trash = *Platform::current().trash;
    EXPECT_EQ(trash.origin(place)->url, item);
    FileOps::revert(trashed);
    EXPECT_EQ(folder.read("a"), "A");
    EXPECT_EQ(trash.origin(place), std::nullopt);
    const std::vector<Step> again = FileOps::reapply(trashed);
    EXPECT_EQ(trash.origin(std::get<Step::Move>(again[0].change).to)->url, item)
        << "redone as the Trash wants it";
    FileOps::revert(again);
    EXPECT_EQ(folder.read("a"), "A");
}

TEST(FileOpsUndo, aMadeFolderGoesToTheTrashAndBack) {
    const TestFolder folder;
    const URL inside = folder.file("item", "x");
    const FileChange change = FileOps::createFolder({inside}, folder.url(), "New");
    const std::vector<Step> undone = FileOps::revert(change.steps);
    EXPECT_EQ(folder.read("item"), "x");
    EXPECT_FALSE(folder.exists("New"));
    EXPECT_TRUE(std::get<Step::Create>(undone[0].change).trashedAt);
    const std::vector<Step> redone = FileOps::reapply(undone);
    EXPECT_EQ(folder.read("New/item"), "x");
    EXPECT_EQ(redone, change.steps);
}

TEST(FileOpsUndo, saysWhyAnItemCannotGoToTheTrash) {
    const MemoryPlatform machine;
    const ScopedPlatform scoped(machine.services());
    const URL item = URL::fromPath("/disk/a");
    machine.files->addFile(item);
    const struct {
        int errnum;
        const char* sentence;
    } cases[] = {
        {EXDEV, "Couldn’t move “a” to the Trash because its disk has no Trash that can be used."},
        {EROFS, "Couldn’t move “a” to the Trash because the disk is read-only."},
        {EACCES, "Couldn’t move “a” to the Trash because you don’t have permission."},
    };
    for (const auto& c : cases) {
        machine.trash->failWith(c.errnum);
        EXPECT_EQ(sentence([&] { FileOps::trash(item); }), c.sentence);
        EXPECT_TRUE(FileOps::exists(item));
    }
}

TEST(FileOpsUndo, tagsAreWrittenBackAsTheyWere) {
    const TestFolder folder;
    const URL file = folder.file("a");
    const std::vector<std::string> before = {"Work\n4", "Plain"};
    try {
        FileOps::writeTags(before, file);
    } catch (const FileOpError&) {
        GTEST_SKIP() << "The disk of the temporary folder keeps no attributes.";
    }
    const Tree tree = treeBelow(folder.url());
    const Step step = FileOps::setTags({"Red\n6"}, file);
    EXPECT_EQ(step, Step::tags(file, before, {"Red\n6"}));
    FileOps::revert({step});
    EXPECT_EQ(treeBelow(folder.url()), tree);
    EXPECT_EQ(sentence([&] { FileOps::writeTags({}, folder / "gone"); }),
              "“gone” can’t be found. It may have been moved or deleted.");
}

/// Random changes, with the program restarted in between, and everything undone at the end.
class RandomChanges : public testing::TestWithParam<unsigned> {
protected:
    std::size_t pick(std::size_t count) { return random_() % count; }

    URL someItem(bool folder) {
        std::vector<URL> found;
        for (const auto& [path, text] : treeBelow(root_.url()))
            if (const URL url = URL::fromPath(root_.url().path() + path);
                FileOps::isDirectory(url) == folder)
                found.push_back(url);
        return found.empty() ? root_.url() : found[pick(found.size())];
    }
    std::string newName() {
        static const std::vector<std::string> names = {
            "a", "A", "b.txt", "b 2.txt", "ü", "\xff", "line\nfeed", "x.tar.gz", " y", "B.TXT"};
        return names[pick(names.size())];
    }
    HistoryEntry change() {
        HistoryEntry entry;
        const URL item = someItem(pick(3) == 0);
        if (item == root_.url()) return entry;
        try {
            switch (pick(6)) {
                case 0:
                    entry.steps = FileOps::rename(item, newName()).steps;
                    break;
                case 1:
                    entry.steps = FileOps::trash(std::vector{item});
                    break;
                case 2:
                    entry.steps = FileOps::createFolder(item.parent(), newName()).steps;
                    break;
                case 3:
                    entry.steps = FileOps::createFolder({item}, item.parent(), newName()).steps;
                    break;
                case 4:
                    entry.steps = {FileOps::setTags({Text::sanitized(newName()) + "\n3"}, item)};
                    break;
                default:
                    entry.steps = FileOps::duplicate(item).steps;
            }
        } catch (const FileOpError&) {
            // Refused: nothing has changed.
        }
        return entry;
    }

    TestFolder root_;
    TestFolder stores_;
    std::mt19937 random_{GetParam()};
};

TEST_P(RandomChanges, areAllUndoneAcrossRestarts) {
    for (const char* name : {"a", "b.txt", "folder/c", "folder/deep/d", "folder/deep/e.tar.gz"})
        root_.file(name, name);
    root_.link("link", "folder/c");
    const Tree before = treeBelow(root_.url());
    const URL file = stores_ / "undo-history.json";
    std::size_t recorded = 0;
    for (int restart = 0; restart < 4; ++restart) {
        OperationHistory history(file);
        for (int i = 0; i < 8; ++i) {
            const HistoryEntry entry = change();
            recorded += entry.steps.empty() ? 0 : 1;
            history.record(entry);
            if (pick(4) == 0 && history.canUndo()) {
                const Tree done = treeBelow(root_.url());
                ASSERT_TRUE(history.undo());
                ASSERT_TRUE(history.redo());
                EXPECT_EQ(treeBelow(root_.url()), done);
            }
        }
    }
    EXPECT_GT(recorded, 5U);
    OperationHistory history(file);
    EXPECT_EQ(history.undoStack().size(), recorded);
    while (history.undo()) {
    }
    EXPECT_EQ(treeBelow(root_.url()), before);
}
INSTANTIATE_TEST_SUITE_P(FileOpsUndo, RandomChanges, testing::Range(1U, 13U));

}  // namespace
}  // namespace tarn
