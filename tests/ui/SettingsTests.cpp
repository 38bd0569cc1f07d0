#include <algorithm>
#include <set>

#include <QtTest/QTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QStackedWidget>
#include <gtest/gtest.h>

#include "Tarn/commands/DesktopEntry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/ContentIndexService.h"
#include "Tarn/model/OCRLanguages.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/settings/GeneralSection.h"
#include "Tarn/ui/settings/IndexSection.h"
#include "Tarn/ui/settings/SettingsSheet.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

class SettingsTest : public testing::Test {
protected:
    void SetUp() override {
        before = app.settings();
        app.setSettings(AppSettings());
        window =
            new BrowserWindow(std::make_unique<WindowModel>(app, Location::folder(folder.url())));
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->resize(900, 760);
        show(*window);
        QTest::keyClick(window, Qt::Key_Comma, Qt::ControlModifier);
        ASSERT_TRUE(sheet());
        ASSERT_TRUE(sheet()->isVisible());
        sheet()->showPage(section());
    }
    void TearDown() override {
        delete window;
        // The file is shared with the tests after this one.
        app.setSettings(before);
    }
    SettingsSheet* sheet() { return window->findChild<SettingsSheet*>(); }
    IndexSection& section() { return sheet()->index(); }
    QCheckBox* box(int number) { return section().findChildren<QCheckBox*>()[number]; }
    QListWidget* list() { return section().findChild<QListWidget*>(); }
    QPushButton* button(const char* text) {
        for (QPushButton* one : section().findChildren<QPushButton*>())
            if (one->text() == QString::fromUtf8(text)) return one;
        return nullptr;
    }
    QuestionSheet* question() {
        for (QuestionSheet* one : window->findChildren<QuestionSheet*>())
            if (one->isVisible()) return one;
        return nullptr;
    }

    TestFolder folder;
    AppModel app;
    AppSettings before;
    BrowserWindow* window = nullptr;
};

TEST_F(SettingsTest, switchesTakeEffectAtOnce) {
    EXPECT_TRUE(box(0)->isChecked() && box(1)->isChecked());
    QTest::keyClick(box(1), Qt::Key_Space);
    EXPECT_FALSE(app.settings().readTextInImages);
    QTest::keyClick(box(0), Qt::Key_Space);
    EXPECT_FALSE(app.settings().indexFileContents);
    EXPECT_FALSE(list()->isEnabled() || box(1)->isEnabled());
    EXPECT_EQ(app.contentIndex().state(), ContentIndexService::State::off);
    QTest::keyClick(box(0), Qt::Key_Space);
    EXPECT_TRUE(app.settings().indexFileContents && list()->isEnabled());
    auto* budget = section().findChild<QComboBox*>();
    EXPECT_EQ(budget->currentText(), "2 GB");
    QTest::keyClick(budget, Qt::Key_Down);
    EXPECT_EQ(app.settings().indexBudgetMB, 5000);
}

TEST_F(SettingsTest, aFolderIsForgottenAfterAQuestion) {
    ASSERT_EQ(list()->count(), 1);
    EXPECT_EQ(list()->item(0)->text(), "Home");
    section().addFolder(folder.url());
    ASSERT_EQ(list()->count(), 2);
    list()->setCurrentRow(1);
    button("Forget This Folder…")->click();
    ASSERT_TRUE(question());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(app.settings().indexFolders.size(), 2u);
    EXPECT_TRUE(sheet()->isVisible()) << "Escape is for the question alone";
    button("Forget This Folder…")->click();
    QTest::mouseClick(question()->yes(), Qt::LeftButton);
    EXPECT_EQ(app.settings().indexFolders, std::vector<std::string>{"~"});

    section().leaveOut(Paths::home().appending("Private"));
    ASSERT_EQ(list()->count(), 2);
    EXPECT_EQ(list()->item(1)->text(), QStringLiteral("~/Private (left out)"));
    list()->setCurrentRow(1);
    button("Read It Again")->click();
    EXPECT_TRUE(app.settings().indexExcludedFolders.empty());
}

TEST_F(SettingsTest, everyPageIsReachedByTheKeyboardInANarrowWindow) {
    window->resize(420, 760);
    for (int page = 0; page < sheet()->pageCount(); ++page) {
        SCOPED_TRACE(page);
        sheet()->showPage(page);
        sheet()->firstField()->setFocus();
        std::set<QWidget*> reached;
        // Round to where it began, which no page takes longer for.
        for (int i = 0; i < 500 && !reached.contains(sheet()->firstField()); ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached.insert(QApplication::focusWidget());
        }
        EXPECT_TRUE(reached.contains(sheet()->firstField()));
        for (QWidget* part : sheet()->findChildren<QWidget*>()) {
            const bool isControl =
                qobject_cast<QAbstractButton*>(part) || qobject_cast<QComboBox*>(part);
            if (!isControl || !part->isVisible() || !part->isEnabled()) continue;
            EXPECT_TRUE(reached.contains(part))
                << part->metaObject()->className() << " " << qPrintable(part->accessibleName());
        }
    }
}

TEST_F(SettingsTest, whatIsChosenIsStoredAndWhatIsStoredShows) {
    sheet()->showPage(sheet()->general());
    const auto list = [this](const char* name) -> QComboBox* {
        for (QComboBox* one : sheet()->findChildren<QComboBox*>())
            if (one->accessibleName() == QString::fromUtf8(name)) return one;
        return nullptr;
    };
    const auto choose = [&list](const char* name, int index) {
        list(name)->setCurrentIndex(index);
        emit list(name)->activated(index);
    };
    choose("Appearance", 2);
    EXPECT_EQ(app.settings().appearance, Appearance::dark);
    choose("“Copy Path” copies", 1);
    EXPECT_EQ(app.settings().copyPathFormat, CopyPathFormat::tilde);
    choose("Show folders as", 1);
    EXPECT_EQ(app.settings().defaultView, ViewMode::list);
    choose("A search looks in", 2);
    EXPECT_EQ(app.settings().defaultSearchScope, SearchScopeSetting::thisMac);

    AppSettings changed = app.settings();
    changed.appearance = Appearance::light;
    changed.defaultSearchScope = SearchScopeSetting::home;
    changed.foldersFirst = false;
    app.setSettings(changed);
    EXPECT_EQ(list("Appearance")->currentIndex(), 1);
    EXPECT_EQ(list("A search looks in")->currentIndex(), 1);
    const auto boxes = sheet()->findChildren<QCheckBox*>();
    const auto first = std::find_if(boxes.begin(), boxes.end(), [](const QCheckBox* one) {
        return one->text() == QStringLiteral("Folders first");
    });
    ASSERT_NE(first, boxes.end());
    EXPECT_FALSE((*first)->isChecked());
    (*first)->click();
    EXPECT_TRUE(app.settings().foldersFirst);
}

TEST_F(SettingsTest, programsAreThoseThatAreInstalled) {
    DesktopEntry terminal;
    terminal.id = "org.x.term.desktop";
    terminal.name = "Terminal";
    terminal.isTerminal = true;
    DesktopEntry editor;
    editor.id = "kde-edit.desktop";
    editor.name = "Edit";
    editor.isEditor = true;
    AppSettings settings = app.settings();
    settings.terminalApp = "gone.desktop";
    app.setSettings(settings);
    sheet()->general().takeApps({terminal, editor, DesktopEntry()});
    QStringList shown;
    QComboBox* editors = nullptr;
    for (QComboBox* one : sheet()->general().findChildren<QComboBox*>()) {
        if (one->accessibleName() == QStringLiteral("“Open in Editor” uses")) editors = one;
        if (one->accessibleName() != QStringLiteral("“Open in Terminal” uses")) continue;
        for (int i = 0; i < one->count(); ++i) shown << one->itemText(i);
        EXPECT_EQ(one->currentText(), QStringLiteral("gone.desktop"));
    }
    EXPECT_EQ(shown, (QStringList{QStringLiteral("what the desktop uses"),
                                  QStringLiteral("Terminal"), QStringLiteral("gone.desktop")}));
    ASSERT_TRUE(editors);
    EXPECT_EQ(editors->count(), 2);
    editors->setCurrentIndex(1);
    emit editors->activated(1);
    EXPECT_EQ(app.settings().editorApp, "kde-edit.desktop");
}

TEST(OCRLanguages, areThoseWithData) {
    const TestFolder folder;
    for (const char* name :
         {"eng", "deu", "chi_sim", "chi_sim_vert", "osd", "equ", "srp_latn", "grc"})
        folder.file(std::string(name) + ".traineddata");
    folder.file("fra.txt");
    const auto languages = OCRLanguages::in(folder.url().path());
    std::vector<std::string> tags;
    for (const auto& language : languages) tags.push_back(language.tag);
    EXPECT_EQ(tags.size(), 5U);
    EXPECT_TRUE(std::ranges::is_permutation(
        tags, std::vector<std::string>{"zh-Hans", "en", "de", "grc", "sr-Latn"}));
    const auto english = std::ranges::find(languages, "en", &OCRLanguages::Language::tag);
    ASSERT_NE(english, languages.end());
    EXPECT_EQ(english->title, "English");
    EXPECT_TRUE(OCRLanguages::isSame("en-US", "en"));
    EXPECT_TRUE(OCRLanguages::isSame("zh-CN", "zh-Hans"));
    EXPECT_FALSE(OCRLanguages::isSame("enm", "en"));
    EXPECT_FALSE(OCRLanguages::isSame("x", "y"));
}

}  // namespace
}  // namespace tarn
