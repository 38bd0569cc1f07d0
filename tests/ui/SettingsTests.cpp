#include <set>

#include <QtTest/QTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ContentIndexService.h"
#include "Tarn/model/OCRLanguages.h"
#include "Tarn/model/WindowModel.h"
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

TEST_F(SettingsTest, everyPartIsReachedByTheKeyboardAndEscapeCloses) {
    std::set<QWidget*> reached;
    for (int i = 0; i < 30; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(sheet()->isAncestorOf(QApplication::focusWidget()));
        reached.insert(QApplication::focusWidget());
    }
    for (QWidget* part : section().findChildren<QWidget*>()) {
        if ((part->focusPolicy() & Qt::TabFocus) != Qt::TabFocus || !part->isEnabled()) continue;
        if (part->parentWidget() != &section()) continue;
        EXPECT_TRUE(reached.contains(part)) << part->metaObject()->className();
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(sheet()->isVisible());
}

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
