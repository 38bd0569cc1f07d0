#include <QtTest/QTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/Favorites.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/sheets/NewSmartFolderSheet.h"
#include "Tarn/ui/sheets/RenameFavoriteSheet.h"
#include "Tarn/ui/sheets/SaveWorkspaceSheet.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/SheetTest.h"

namespace tarn {
namespace {

class ListSheetTest : public SheetTest {
protected:
    ListSheetTest() {
        clear();
        window.resize(700, 560);
    }
    ~ListSheetTest() override { clear(); }
    /// The files are shared with the tests after this one.
    void clear() {
        UserLists& lists = app.lists();
        while (lists.smartFolders().size() > SmartFolder::builtIns().size())
            lists.removeSmartFolder(lists.smartFolders().back().id);
        while (!lists.workspaces().empty()) lists.removeWorkspace(lists.workspaces().back().id);
        while (!lists.favorites().empty()) lists.removeFavorite(lists.favorites().back().id);
    }
    QWidget* focused() { return QApplication::focusWidget(); }

    TestFolder folder;
    AppModel app;
    WindowModel model{app, Location::folder(folder.url())};
};

TEST_F(ListSheetTest, aSearchBecomesASmartFolder) {
    open(new NewSmartFolderSheet(window, model, "invoice pdfs over 5 mb",
                                 SearchScopeSetting::thisMac));
    auto* chips = sheet->findChild<ChipRow*>();
    ASSERT_EQ(chips->chips().size(), 2u);
    EXPECT_EQ(chips->chips()[0].label, "PDFs");
    EXPECT_TRUE(says(QStringLiteral("Names with “invoice”")));
    EXPECT_FALSE(button("Save")->isEnabled());
    QTest::keyClicks(focused(), "installers");
    EXPECT_TRUE(says(QStringLiteral("There is a smart folder called “Installers” already.")));
    EXPECT_FALSE(button("Save")->isEnabled());
    QTest::keyClick(focused(), Qt::Key_Return);
    ASSERT_TRUE(sheet->isVisible());
    QTest::keyClicks(focused(), " big");
    QTest::keyClick(focused(), Qt::Key_Return);
    EXPECT_FALSE(sheet && sheet->isVisible());
    const SmartFolder& made = app.lists().smartFolders().back();
    EXPECT_EQ(made.name, "installers big");
    EXPECT_EQ(made.query, "invoice pdfs over 5 mb");
    EXPECT_EQ(made.scope, SearchScopeSetting::thisMac);
}

TEST_F(ListSheetTest, withoutASearchTheQueryIsAskedForFirst) {
    open(new NewSmartFolderSheet(window, model, "", SearchScopeSetting::home));
    QTest::keyClicks(focused(), "screenshots from yesterday");
    auto* chips = sheet->findChild<ChipRow*>();
    EXPECT_EQ(chips->chips().size(), 2u);
    QTest::keyClick(focused(), Qt::Key_Escape);
    EXPECT_FALSE(sheet && sheet->isVisible());
    EXPECT_EQ(app.lists().smartFolders().size(), SmartFolder::builtIns().size());
}

TEST_F(ListSheetTest, aWorkspaceIsSavedAndReplaced) {
    TabGroup group(app);
    WindowModel& tab = group.open(model.snapshot(), true);
    group.open(model.snapshot(), false);
    open(new SaveWorkspaceSheet(window, tab));
    EXPECT_TRUE(says(QStringLiteral("The 2 tabs of this window are kept under this name.")));
    EXPECT_FALSE(button("Save")->isEnabled());
    QTest::keyClicks(focused(), "Taxes");
    QTest::keyClick(focused(), Qt::Key_Return);
    ASSERT_EQ(app.lists().workspaces().size(), 1u);
    EXPECT_EQ(app.lists().workspaces()[0].tabs.size(), 2u);

    open(new SaveWorkspaceSheet(window, model));
    QTest::keyClicks(focused(), "taxes");
    EXPECT_TRUE(says(QStringLiteral("Takes the place of “Taxes”.")));
    button("Replace")->click();
    ASSERT_EQ(app.lists().workspaces().size(), 1u);
    EXPECT_EQ(app.lists().workspaces()[0].tabs.size(), 1u);
}

TEST_F(ListSheetTest, aFavoriteIsRenamedAndGetsItsOwnNameBack) {
    app.lists().addFavorite(folder.folder("Papers"));
    const auto name = [this] { return Favorites::title(app.lists().favorites()[0]); };
    open(new RenameFavoriteSheet(window, model, app.lists().favorites()[0]));
    QTest::keyClicks(focused(), "Paperwork");
    QTest::keyClick(focused(), Qt::Key_Return);
    EXPECT_EQ(name(), "Paperwork");
    open(new RenameFavoriteSheet(window, model, app.lists().favorites()[0]));
    QTest::keyClick(focused(), Qt::Key_Delete);
    EXPECT_TRUE(says(QStringLiteral("The sidebar shows the folder’s own name again.")));
    button("Rename")->click();
    EXPECT_EQ(name(), "Papers");
}

}  // namespace
}  // namespace tarn
