#include <QtTest/QTest>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "TarnCore/archive/ArchiveReader.h"
#include "TarnCore/platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

class PaneArchiveTest : public testing::Test {
protected:
    void SetUp() override {
        folder.file("docs/old/report 2019.txt", "old");
        folder.file("docs/report 10.txt", "ten");
        folder.file("docs/report 9.txt", "nine");
        folder.file("docs/.secret", "s");
        folder.file("docs/line\nfeed.txt", "lf");
        zip = ArchiveReader::compress({folder / "docs"});
        window = std::make_unique<WindowModel>(app, Location::folder(folder.url()));
        settle();
    }
    PaneModel& pane() { return window->active(); }
    void settle() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !pane().isLoading(); }, 10'000));
    }
    void waitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 10'000));
    }
    void open(const std::string& inside) {
        pane().navigate(Location::archive(zip, inside));
        settle();
    }
    void select(const std::string& name) {
        pane().select({URL::fromPath(pane().location().text, zip).appending(name)});
        ASSERT_TRUE(pane().hasSelection()) << name;
    }
    std::vector<std::string> names() {
        std::vector<std::string> names;
        for (const FileItem& item : pane().items().rows()->items()) names.push_back(item.name);
        return names;
    }
    using Names = std::vector<std::string>;

    TestFolder folder;
    AppModel app;
    URL zip;
    std::unique_ptr<WindowModel> window;
};

TEST_F(PaneArchiveTest, opensAsAFolderAndLeadsOutAgain) {
    pane().select({zip});
    ASSERT_TRUE(pane().browse(pane().selectedItems().front()));
    settle();
    EXPECT_EQ(pane().location(), Location::archive(zip, ""));
    EXPECT_EQ(names(), Names{"docs"});
    ASSERT_TRUE(pane().browse(pane().items().item(0)));
    settle();
    EXPECT_EQ(names(), (Names{"old", "line\nfeed.txt", "report 9.txt", "report 10.txt"}));
    pane().sortBy(SortField::name);
    waitFor([this] { return names().at(1) == "report 10.txt"; });
    pane().goUp();
    settle();
    ASSERT_EQ(pane().selectedItems().size(), 1u);
    EXPECT_EQ(pane().selectedItems().front().name, "docs");
    pane().goUp();
    settle();
    EXPECT_EQ(pane().location(), Location::folder(folder.url()));
    EXPECT_EQ(pane().selectedItems().front().url, zip);
    pane().goBack();
    EXPECT_EQ(pane().location(), Location::archive(zip, ""));
}

TEST_F(PaneArchiveTest, hidesWhatIsHidden) {
    open("docs");
    EXPECT_EQ(pane().items().count(), 4);
    pane().setShowsHidden(true);
    waitFor([this] { return pane().items().count() == 5; });
}

TEST_F(PaneArchiveTest, saysWhyAnArchiveCannotBeShown) {
    const std::string bytes = Platform::current().files->readFile(zip, 200);
    const URL broken = folder.file("broken.zip", bytes.substr(0, 150));
    const URL other = folder.file("other.zip", "this is no archive");
    const struct {
        Location place;
        ListingError::Reason reason;
        std::string_view begins;
    } cases[] = {
        {Location::archive(broken, ""), ListingError::Reason::other,
         "This archive couldn’t be read. "},
        {Location::archive(other, ""), ListingError::Reason::other,
         "This archive couldn’t be read. "},
        {Location::archive(folder / "gone.zip", ""), ListingError::Reason::notFound, "“gone.zip”"},
        {Location::archive(zip, "docs/new"), ListingError::Reason::notFound, "“new”"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.begins);
        pane().navigate(c.place);
        settle();
        ASSERT_TRUE(pane().listingError());
        EXPECT_EQ(pane().listingError()->reason(), c.reason);
        EXPECT_TRUE(std::string_view(pane().listingError()->what()).starts_with(c.begins))
            << pane().listingError()->what();
        EXPECT_TRUE(pane().items().isEmpty());
    }
}

TEST_F(PaneArchiveTest, followsTheArchiveWhenItIsReplaced) {
    open("");
    folder.file("more/only.txt", "1");
    const URL other = ArchiveReader::compress({folder / "more"});
    ASSERT_EQ(::rename(other.c_str(), zip.c_str()), 0);
    waitFor([this] { return names() == Names{"more"}; });
}

TEST_F(PaneArchiveTest, membersOpenFromCopiesThatCannotBeWritten) {
    open("docs");
    select("report 9.txt");
    std::vector<URL> opened;
    QObject::connect(window.get(), &WindowModel::openFilesRequested,
                     [&opened](const std::vector<URL>& files) { opened = files; });
    window->openSelection();
    waitFor([&] { return !opened.empty(); });
    ASSERT_EQ(opened.size(), 1u);
    EXPECT_EQ(opened.front().name(), "report 9.txt");
    const auto attributes = Platform::current().files->attributes(opened.front(), Links::keep);
    ASSERT_TRUE(attributes);
    EXPECT_EQ(attributes->mode & 0222u, 0u);
    EXPECT_EQ(Platform::current().files->readFile(opened.front(), 100), "nine");
    EXPECT_FALSE(opened.front().isInside(folder.url()));
}

TEST_F(PaneArchiveTest, nothingInItCanBeChanged) {
    open("docs");
    select("report 9.txt");
    for (const char* id : {"rename", "duplicate", "cut", "compress", "trash", "newFolder", "paste",
                           "newFile", "newFolderSelection"}) {
        SCOPED_TRACE(id);
        EXPECT_FALSE(CommandRegistry::isEnabled(*CommandRegistry::command(id), window.get()));
    }
    for (const char* id : {"open", "copy", "extract", "go.up"})
        EXPECT_TRUE(CommandRegistry::isEnabled(*CommandRegistry::command(id), window.get())) << id;
    pane().beginRename(pane().selectedItems().front().url);
    EXPECT_FALSE(pane().renaming());
}

TEST_F(PaneArchiveTest, unpackingIsRecordedAndCanBeTakenBack) {
    pane().select({zip});
    window->edits().extractSelection();
    waitFor([this] { return folder.exists("docs 2/report 9.txt"); });
    waitFor(
        [this] { return app.history().nextUndoTitle() == QStringLiteral("Extract “docs.zip”"); });
    window->operations().undo();
    waitFor([this] { return !folder.exists("docs 2"); });

    open("docs");
    select("old");
    window->edits().extractMembers(true);
    waitFor([this] { return folder.exists("old/report 2019.txt"); });
    EXPECT_EQ(folder.read("old/report 2019.txt"), "old");
}

}  // namespace
}  // namespace tarn
