#include <filesystem>

#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/ArchiveListing.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/preview/CodeView.h"
#include "Tarn/ui/preview/IconPreview.h"
#include "Tarn/ui/preview/PreviewWidget.h"
#include "Tarn/ui/preview/TextPreview.h"
#include "Tarn/ui/quicklook/QuickLook.h"
#include "tests/support/ArchiveBytes.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

class QuickLookTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"a.txt", "b.txt", "c.txt", "d.txt"})
            folder.file(name, std::string("This is ") + name);
        model = std::make_unique<WindowModel>(app, Location::folder(folder.url()));
        host.resize(900, 600);
        rows = new QLineEdit(&host);  // what has the keyboard below
        quickLook = new QuickLook(model.get(), host);
        tarn::show(host);
        rows->setFocus();
        ASSERT_TRUE(waitFor([this] { return pane().items().count() == 4; }));
    }
    void TearDown() override {
        delete quickLook;
        model.reset();
    }
    PaneModel& pane() { return model->active(); }
    void select(std::initializer_list<const char*> names) {
        std::vector<URL> urls;
        for (const char* name : names) urls.push_back(folder / name);
        pane().select(urls);
    }
    std::string selected() {
        std::string all;
        for (const FileItem& item : pane().selectedItems()) all += item.name + " ";
        return all;
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* target = QApplication::focusWidget();
        QTest::keyClick(target ? target : &host, key, modifiers);
    }
    /// Of the file that is shown, once it is.
    std::string shownText() {
        const auto shown = [this] {
            return qobject_cast<TextPreview*>(quickLook->preview().current());
        };
        if (!waitFor([&] { return quickLook->preview().isSettled() && shown(); })) return {};
        return shown()->view().toPlainText().toStdString();
    }
    std::string title() { return quickLook->title().toStdString(); }
    std::string position() { return quickLook->position().toStdString(); }

    TestFolder folder;
    AppModel app;
    std::unique_ptr<WindowModel> model;
    QWidget host;
    QLineEdit* rows = nullptr;
    QuickLook* quickLook = nullptr;
};

TEST_F(QuickLookTest, showsWhatIsSelectedAndGivesTheKeyboardBack) {
    select({"b.txt"});
    model->setShowsQuickLook(true);
    ASSERT_TRUE(quickLook->isOpen());
    EXPECT_EQ(title(), "b.txt");
    EXPECT_EQ(position(), "2 of 4");
    ASSERT_TRUE(waitFor([this] { return quickLook->preview().isSettled(); }));
    auto* text = qobject_cast<TextPreview*>(quickLook->preview().current());
    ASSERT_TRUE(text);
    EXPECT_EQ(text->view().toPlainText(), QStringLiteral("This is b.txt"));
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Escape}) {
        model->setShowsQuickLook(true);
        ASSERT_TRUE(quickLook->isOpen());
        press(key);
        EXPECT_FALSE(quickLook->isOpen());
        EXPECT_FALSE(model->showsQuickLook());
        EXPECT_EQ(QApplication::focusWidget(), rows);
    }
    EXPECT_TRUE(rows->text().isEmpty());  // no key went through
}

TEST_F(QuickLookTest, cursorKeysMoveOnWithTheSelection) {
    select({"b.txt"});
    quickLook->open();
    press(Qt::Key_Down);
    EXPECT_EQ(title(), "c.txt");
    EXPECT_EQ(selected(), "c.txt ");
    press(Qt::Key_Right);
    press(Qt::Key_Right);  // behind the last there is nothing
    EXPECT_EQ(title(), "d.txt");
    EXPECT_EQ(position(), "4 of 4");
    press(Qt::Key_Left);
    press(Qt::Key_Up);
    EXPECT_EQ(selected(), "b.txt ");
    EXPECT_TRUE(quickLook->isOpen());
}

TEST_F(QuickLookTest, severalItemsAreWalkedWithoutLosingTheSelection) {
    select({"a.txt", "c.txt"});
    quickLook->open();
    EXPECT_EQ(position(), "1 of 2");
    press(Qt::Key_Down);
    EXPECT_EQ(title(), "c.txt");
    press(Qt::Key_Down);
    EXPECT_EQ(title(), "c.txt");
    EXPECT_EQ(selected(), "a.txt c.txt ");
}

TEST_F(QuickLookTest, followsTheSelectionAndClosesWithoutOne) {
    select({"a.txt"});
    quickLook->open();
    select({"d.txt"});
    EXPECT_TRUE(waitFor([this] { return title() == "d.txt"; }));
    pane().selection().clearSelection();
    EXPECT_TRUE(waitFor([this] { return !quickLook->isOpen(); }));
    EXPECT_FALSE(model->showsQuickLook());
    quickLook->open();
    EXPECT_FALSE(quickLook->isOpen());
}

TEST_F(QuickLookTest, returnOpensTheFile) {
    select({"a.txt", "c.txt"});
    quickLook->open();
    press(Qt::Key_Down);
    std::vector<URL> opened;
    QObject::connect(model.get(), &WindowModel::openFilesRequested, &host,
                     [&opened](const std::vector<URL>& files) { opened = files; });
    press(Qt::Key_Return);
    EXPECT_FALSE(quickLook->isOpen());
    EXPECT_EQ(opened, std::vector<URL>{folder / "c.txt"});
}

TEST_F(QuickLookTest, goesThroughWhatIsInUnfoldedFolders) {
    folder.file("in/deep.txt", "Deep inside");
    ASSERT_TRUE(waitFor([this] { return pane().items().count() == 5; }));
    pane().setViewMode(ViewMode::list);
    pane().loadChildren(folder / "in");
    ASSERT_TRUE(waitFor([this] { return pane().items().count() == 6; }));
    select({"in"});
    quickLook->open();
    press(Qt::Key_Down);
    EXPECT_EQ(title(), "deep.txt");
    EXPECT_EQ(position(), "2 of 6");
    EXPECT_EQ(selected(), "deep.txt ");
    EXPECT_EQ(shownText(), "Deep inside");
    press(Qt::Key_Down);
    EXPECT_EQ(title(), "a.txt");
}

TEST_F(QuickLookTest, showsWhatIsInMembersOfAnArchive) {
    test::ZipBytes bytes({{"broken.txt", "other", false, 0, 0xFFFF, 3, 0100644, 0, 0, 0, {}, {}, 1},
                          {"inner.txt", "Read me"},
                          {"link.txt", "/etc/passwd", false, 0, 0xFFFF, 3, 0120777},
                          {"sub/", "", false, 0, 0xFFFF, 3, 0040755}});
    const URL archive = folder.file("box.zip", bytes.bytes());
    pane().navigate(Location::archive(archive, ""));
    ASSERT_TRUE(waitFor([this] { return !pane().isLoading(); }));
    const auto lookAt = [&](const char* member) {
        quickLook->finish();
        pane().select({ArchiveListing::url(archive, member)});
        quickLook->open();
        EXPECT_EQ(title(), member);
    };
    lookAt("inner.txt");
    EXPECT_EQ(shownText(), "Read me");
    const URL file = quickLook->preview().current()->item().url;
    EXPECT_TRUE(std::filesystem::exists(file.path()));
    quickLook->finish();
    EXPECT_TRUE(waitFor([&] { return !std::filesystem::exists(file.path()); }));

    lookAt("broken.txt");
    auto* icon = quickLook->preview().findChild<IconPreview*>();
    EXPECT_TRUE(waitFor([&] { return icon->isVisible() && !icon->sentence().isEmpty(); }));
    for (const char* member : {"link.txt", "sub"}) {
        SCOPED_TRACE(member);
        lookAt(member);
        EXPECT_TRUE(waitFor([&] { return quickLook->preview().isSettled(); }));
        EXPECT_EQ(quickLook->preview().current(), icon);
        EXPECT_TRUE(icon->sentence().isEmpty());
    }
}

TEST_F(QuickLookTest, theKeyboardStaysInsideAndAClickBesideLeaves) {
    select({"a.txt"});
    quickLook->open();
    for (int i = 0; i < 12; ++i) {
        press(Qt::Key_Tab);
        ASSERT_TRUE(QApplication::focusWidget());
        EXPECT_TRUE(quickLook->isAncestorOf(QApplication::focusWidget()));
    }
    QTest::mouseClick(quickLook, Qt::LeftButton, {}, {4, 4});
    EXPECT_FALSE(quickLook->isOpen());
}

}  // namespace
}  // namespace tarn
