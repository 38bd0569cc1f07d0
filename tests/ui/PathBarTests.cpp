#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QCompleter>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>
#include <gtest/gtest.h>

#include "Tarn/ui/path/CrumbButton.h"
#include "Tarn/ui/path/PathBar.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

QStringList shownCrumbs(const PathBar& bar) {
    QStringList names;
    for (const auto* crumb : bar.findChildren<CrumbButton*>())
        if (crumb->isVisible()) names << crumb->text();
    return names;
}

CrumbButton* crumb(const PathBar& bar, const QString& name) {
    for (auto* button : bar.findChildren<CrumbButton*>())
        if (button->text() == name && button->isVisible()) return button;
    return nullptr;
}

QToolButton* foldedButton(const PathBar& bar) {
    return bar.findChild<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
}

class PathBarTest : public testing::Test {
protected:
    void SetUp() override {
        bar.resize(900, 32);
        show(bar);
        QObject::connect(&bar, &PathBar::folderChosen, [this](const URL& url) { folder = url; });
        QObject::connect(&bar, &PathBar::fileChosen, [this](const URL& url) { file = url; });
    }
    QLineEdit& edit() { return *bar.findChild<QLineEdit*>(); }
    void type(const QString& text) {
        bar.beginEditing();
        QTest::keyClicks(&edit(), text);
        QTest::keyClick(&edit(), Qt::Key_Return);
    }

    TestFolder root;
    PathBar bar;
    std::optional<URL> folder;
    std::optional<URL> file;
};

TEST_F(PathBarTest, showsTheWayAndLeadsToEachFolder) {
    bar.setLocation(URL::fromPath("/usr/share/doc"));
    EXPECT_EQ(shownCrumbs(bar), (QStringList{u"Computer"_s, u"usr"_s, u"share"_s, u"doc"_s}));
    QTest::mouseClick(crumb(bar, u"share"_s), Qt::LeftButton);
    EXPECT_EQ(folder, URL::fromPath("/usr/share"));

    bar.setLocation(Paths::home().appending("a"));
    EXPECT_EQ(shownCrumbs(bar), (QStringList{u"Home"_s, u"a"_s}));
}

TEST_F(PathBarTest, foldsOnTheLeftAndKeepsWhereOneIs) {
    bar.setLocation(URL::fromPath("/srv/projects/lakes/survey/pictures/raw"));
    EXPECT_FALSE(foldedButton(bar)->isVisible());
    for (const int width : {420, 300, 200}) {
        SCOPED_TRACE(width);
        bar.resize(width, 32);
        const QStringList names = shownCrumbs(bar);
        ASSERT_FALSE(names.isEmpty());
        EXPECT_EQ(names.last(), u"raw"_s);
        EXPECT_FALSE(names.contains(u"Computer"_s));
        EXPECT_TRUE(foldedButton(bar)->isVisible());
        for (const auto* button : bar.findChildren<CrumbButton*>())
            EXPECT_TRUE(!button->isVisible() || button->geometry().right() <= width);
    }
}

TEST_F(PathBarTest, aClickBesideTheCrumbsEdits) {
    bar.setLocation(URL::fromPath("/usr"));
    QTest::mouseClick(&bar, Qt::LeftButton, {}, {bar.width() - 10, 16});
    EXPECT_TRUE(bar.isEditing());
    EXPECT_EQ(edit().text(), u"/usr"_s);
    EXPECT_EQ(edit().selectedText(), u"/usr"_s);
    QTest::keyClick(&edit(), Qt::Key_Escape);
    EXPECT_FALSE(bar.isEditing());
    EXPECT_EQ(shownCrumbs(bar), (QStringList{u"Computer"_s, u"usr"_s}));
    EXPECT_FALSE(folder);
}

TEST_F(PathBarTest, enterGoesToAFolderOrAFile) {
    const URL deep = root.folder("deep/er");
    const URL note = root.file("deep/note.txt", "x");
    bar.setLocation(root.url());
    type(u"deep/er"_s);
    ASSERT_TRUE(waitFor([this] { return folder.has_value(); }));
    EXPECT_EQ(*folder, deep);
    EXPECT_FALSE(bar.isEditing());
    type(QString::fromStdString(note.path()));
    ASSERT_TRUE(waitFor([this] { return file.has_value(); }));
    EXPECT_EQ(*file, note);
}

TEST_F(PathBarTest, anOfferContinuesTheWholePath) {
    const URL deep = root.folder("one/deep");
    bar.setLocation(URL());
    bar.beginEditing();
    QTest::keyClicks(&edit(), QString::fromStdString(deep.path()));
    auto* completer = edit().findChild<QCompleter*>();
    ASSERT_TRUE(waitFor([&] { return completer->popup()->isVisible(); }));
    QTest::keyClick(completer->popup(), Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return folder.has_value(); })) << edit().text().toStdString();
    EXPECT_EQ(*folder, deep);

    bar.beginEditing();
    QTest::keyClicks(&edit(), QString::fromStdString(root.url().path() + "/o"));
    ASSERT_TRUE(waitFor([&] { return completer->popup()->isVisible(); }));
    QTest::keyClick(completer->popup(), Qt::Key_Down);
    QTest::keyClick(completer->popup(), Qt::Key_Return);
    EXPECT_EQ(edit().text().toStdString(), root.url().path() + "/one/");
}

TEST_F(PathBarTest, returnGoesToWhatIsTypedAndNotToAnOffer) {
    const URL one = root.folder("one");
    root.folder("one/deep");
    bar.setLocation(URL());
    bar.beginEditing();
    QTest::keyClicks(&edit(), QString::fromStdString(one.path() + "/"));
    auto* completer = edit().findChild<QCompleter*>();
    ASSERT_TRUE(waitFor([&] { return completer->popup()->isVisible(); }));
    QTest::keyClick(completer->popup(), Qt::Key_Return);
    ASSERT_TRUE(waitFor([this] { return folder.has_value(); })) << edit().text().toStdString();
    EXPECT_EQ(*folder, one);
}

TEST_F(PathBarTest, whatIsNotThereStaysInTheField) {
    bar.setLocation(root.url());
    type(u"no such folder"_s);
    ASSERT_TRUE(waitFor([this] { return !edit().toolTip().isEmpty(); }));
    EXPECT_TRUE(bar.isEditing());
    EXPECT_EQ(edit().text(), u"no such folder"_s);
    EXPECT_FALSE(folder || file);
}

TEST_F(PathBarTest, aNameThatIsNotTextLeadsBackToItself) {
    const URL odd = root.folder("broken \xff\xfe name\nwith lines");
    bar.setLocation(odd);
    bar.beginEditing();
    EXPECT_FALSE(edit().text().contains(u'\n'));
    QTest::keyClick(&edit(), Qt::Key_Return);
    EXPECT_EQ(folder, odd);
}

TEST_F(PathBarTest, tabCompletesWhatTheFoldersShare) {
    root.folder("Reports 2025");
    root.folder("Reports 2026");
    bar.setLocation(root.url());
    bar.beginEditing();
    QTest::keyClicks(&edit(), u"Rep"_s);
    ASSERT_TRUE(waitFor([this] {
        QTest::keyClick(&edit(), Qt::Key_Tab);
        return edit().text() == u"Reports 202"_s;
    })) << edit().text().toStdString();
}

}  // namespace
}  // namespace tarn
