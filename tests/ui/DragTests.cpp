#include <QtGui/QDropEvent>
#include <QtTest/QTest>
#include <QtWidgets/QTabBar>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/FileMime.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/drag/DropLabel.h"
#include "Tarn/ui/drag/FileDrag.h"
#include "Tarn/ui/drag/FileDrop.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/path/CrumbButton.h"
#include "Tarn/ui/states/StatePage.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

TEST(FileDrop, whatItDoesDependsOnDisksKeysAndTheSource) {
    const URL here = URL::fromPath("/disk/folder");
    const URL file = URL::fromPath("/disk/a.txt");
    const URL far = URL::fromPath("/stick/b.txt");
    const URL trash = Paths::trash();
    const auto volumes = std::make_shared<MemoryVolumes>();
    std::vector<Mount> mounts(3);
    mounts[1].mountPoint = URL::fromPath("/disk");
    mounts[2].mountPoint = URL::fromPath("/stick");
    volumes->setMounts(mounts);
    Platform platform = Platform::current();
    platform.volumes = volumes;
    const ScopedPlatform scoped(platform);
    using Verb = FileDrop::Verb;
    const Qt::DropActions both = Qt::CopyAction | Qt::MoveAction;
    const struct {
        const char* what;
        std::vector<URL> urls;
        URL folder;
        Qt::KeyboardModifiers keys;
        Qt::DropActions possible;
        std::optional<Verb> verb;
    } cases[] = {
        {"same disk", {file}, here, Qt::NoModifier, both, Verb::move},
        {"other disk", {far}, here, Qt::NoModifier, both, Verb::copy},
        {"one from another disk", {file, far}, here, Qt::NoModifier, both, Verb::copy},
        {"Ctrl", {file}, here, Qt::ControlModifier, both, Verb::copy},
        {"Shift", {far}, here, Qt::ShiftModifier, both, Verb::move},
        {"the source lends only", {file}, here, Qt::ShiftModifier, Qt::CopyAction, Verb::copy},
        {"into itself", {here}, here, Qt::NoModifier, both, std::nullopt},
        {"into its own inside", {here.parent()}, here, Qt::ControlModifier, both, std::nullopt},
        {"where it is", {here.appending("x")}, here, Qt::NoModifier, both, std::nullopt},
        {"a copy where it is", {here.appending("x")}, here, Qt::ControlModifier, both, Verb::copy},
        {"the Trash", {file}, trash, Qt::ControlModifier, both, Verb::trash},
        {"trashed already", {trash.appending("x")}, trash, Qt::NoModifier, both, std::nullopt},
        {"out of the Trash", {trash.appending("x")}, here, Qt::ShiftModifier, both, Verb::move},
        {"nothing", {}, here, Qt::NoModifier, both, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto data = FileMime::makeDrag(c.urls);
        QDropEvent event({}, c.possible, data.get(), Qt::LeftButton, c.keys);
        const auto drop = FileDrop::of(event, c.folder);
        EXPECT_EQ(drop.has_value(), c.verb.has_value());
        if (!drop || !c.verb) continue;
        EXPECT_EQ(drop->verb, *c.verb);
        drop->accept(event);
        EXPECT_TRUE(event.isAccepted());
        EXPECT_TRUE(c.possible.testFlag(event.dropAction()));
    }
}

TEST(FileDrag, theImageStacksThreeAndCountsTheRest) {
    std::vector<FileItem> items(3);
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].name = std::to_string(i);
        items[i].url = URL::fromPath("/" + items[i].name);
    }
    const QPixmap one = FileDrag::image({items[0]}, {}, 2);
    EXPECT_EQ(one.devicePixelRatio(), 2);
    const QPixmap three = FileDrag::image(items, {}, 2);
    EXPECT_GT(three.width(), one.width());
    auto many = items;
    many.resize(40, items[0]);
    EXPECT_EQ(FileDrag::image(many, {}, 2).size(), three.size());
    EXPECT_NE(FileDrag::image(many, {}, 2).toImage(), three.toImage());
}

class DropTest : public testing::Test {
protected:
    void SetUp() override {
        folder.file("a.txt", "a");
        folder.file("b.txt", "b");
        folder.folder("sub");
        folder.folder("sub/empty");
        outside.file("from afar.txt", "far");
        go(folder.url());
        show(*window);
        settle();
        pane().setViewMode(ViewMode::list);
    }
    void TearDown() override { delete window; }
    void go(const URL& to) {
        delete window;
        window = new BrowserWindow(std::make_unique<WindowModel>(app, Location::folder(to)));
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->resize(900, 640);
    }
    void settle() {
        ASSERT_TRUE(waitFor([this] { return !pane().isLoading(); }));
        QCoreApplication::processEvents();
    }
    PaneModel& pane() { return window->model().active(); }
    QWidget* rows() { return window->findChild<PaneView*>(QStringLiteral("paneList"))->viewport(); }
    QPoint middleOf(const char* name) {
        auto* view = window->findChild<PaneView*>(QStringLiteral("paneList"));
        const auto row = pane().items().row(folder / name);
        return view->visualRect(pane().items().index(row.value_or(-1), 0)).center();
    }
    QString label() {
        auto* label = window->findChild<DropLabel*>();
        return label && label->isVisible() ? label->text() : QString();
    }
    /// Drags over a point; true when it may be dropped there.
    bool drag(QWidget* widget, const QPoint& point, const QMimeData& data,
              Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QDragEnterEvent enter(point, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(widget, &enter);
        QDragMoveEvent move(point, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(widget, &move);
        return move.isAccepted() && move.dropAction() != Qt::IgnoreAction;
    }
    void drop(QWidget* widget, const QPoint& point, const QMimeData& data,
              Qt::KeyboardModifiers keys = Qt::NoModifier) {
        QDropEvent event(point, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(widget, &event);
    }

    TestFolder folder;
    TestFolder outside;
    AppModel app;
    BrowserWindow* window = nullptr;
};

TEST_F(DropTest, aRowOnAFolderMovesThereAndCanBeTakenBack) {
    const auto data = FileMime::makeDrag({folder / "a.txt"});
    ASSERT_TRUE(drag(rows(), middleOf("sub"), *data));
    EXPECT_EQ(label(), QStringLiteral("Move to “sub”"));
    ASSERT_TRUE(drag(rows(), middleOf("sub"), *data, Qt::ControlModifier));
    EXPECT_EQ(label(), QStringLiteral("Copy to “sub”"));
    // Where it is already there is nothing to do.
    EXPECT_FALSE(drag(rows(), middleOf("b.txt"), *data));
    EXPECT_EQ(label(), QString());
    ASSERT_TRUE(drag(rows(), middleOf("sub"), *data));
    drop(rows(), middleOf("sub"), *data);
    EXPECT_EQ(label(), QString());
    ASSERT_TRUE(waitFor([this] { return window->model().toast().has_value(); }));
    EXPECT_EQ(window->model().toast()->message, QStringLiteral("Moved “a.txt” to “sub”"));
    EXPECT_TRUE(window->model().toast()->undoable);
    EXPECT_EQ(folder.read("sub/a.txt"), "a");
}

TEST_F(DropTest, anotherProgramsFilesArriveOnEmptySpace) {
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"),
                 QByteArray::fromStdString((outside / "from afar.txt").string() + "\r\n"));
    const QPoint below = rows()->rect().bottomLeft() + QPoint(40, -40);
    ASSERT_TRUE(drag(rows(), below, data, Qt::ControlModifier));
    drop(rows(), below, data, Qt::ControlModifier);
    ASSERT_TRUE(waitFor([this] { return folder.exists("from afar.txt"); }));
    EXPECT_TRUE(outside.exists("from afar.txt"));
    QMimeData text;
    text.setText(QStringLiteral("/etc/hosts"));
    EXPECT_FALSE(drag(rows(), below, text));
}

TEST_F(DropTest, aCrumbTakesFilesForItsFolder) {
    pane().navigate(Location::folder(folder / "sub"));
    settle();
    const auto data = FileMime::makeDrag({outside / "from afar.txt"});
    CrumbButton* crumb = nullptr;
    for (auto* one : window->findChildren<CrumbButton*>())
        if (one->isVisible() &&
            one->text() == QString::fromStdString(std::string(folder.url().name())))
            crumb = one;
    ASSERT_TRUE(crumb);
    ASSERT_TRUE(drag(crumb, crumb->rect().center(), *data));
    EXPECT_TRUE(label().startsWith(QStringLiteral("Move to “")));
    drop(crumb, crumb->rect().center(), *data);
    ASSERT_TRUE(waitFor([this] { return folder.exists("from afar.txt"); }));
}

TEST_F(DropTest, aTabTakesFilesForTheFolderThatItShows) {
    window->group().open(window->model().snapshot());
    pane().navigate(Location::folder(folder / "sub"));
    settle();
    auto& bar = *window->findChild<QTabBar*>();
    const auto data = FileMime::makeDrag({folder / "a.txt"});
    // Where it is already, and where it can go.
    EXPECT_FALSE(drag(&bar, bar.tabRect(0).center(), *data));
    ASSERT_TRUE(drag(&bar, bar.tabRect(1).center(), *data));
    EXPECT_EQ(label(), QStringLiteral("Move to “sub”"));
    drop(&bar, bar.tabRect(1).center(), *data);
    ASSERT_TRUE(waitFor([this] { return folder.exists("sub/a.txt"); }));
    EXPECT_FALSE(folder.exists("a.txt"));
    EXPECT_EQ(label(), QString());
}

TEST_F(DropTest, whatIsHeldOverAFolderGoesIntoIt) {
    const auto data = FileMime::makeDrag({folder / "a.txt"});
    ASSERT_TRUE(drag(rows(), middleOf("sub"), *data));
    ASSERT_TRUE(waitFor([this] { return pane().location() == Location::folder(folder / "sub"); }));
    settle();
    // The pointer has not moved.
    drop(rows(), QPoint(20, 200), *data);
    ASSERT_TRUE(waitFor([this] { return folder.exists("sub/a.txt"); }));
}

TEST_F(DropTest, besideAnUnfoldedFoldersChildrenThatFolderIsMeant) {
    folder.file("sub/child.txt");
    pane().loadChildren(folder / "sub");
    ASSERT_TRUE(
        waitFor([this] { return pane().items().row(folder / "sub/child.txt").has_value(); }));
    const auto data = FileMime::makeDrag({folder / "a.txt"});
    const struct {
        const char* row;
        const char* label;
    } cases[] = {
        {"sub/child.txt", "Move to “sub”"},
        {"sub/empty", "Move to “empty”"},
        {"sub", "Move to “sub”"},
        {"b.txt", ""},  // The folder of the pane, where it is already.
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.row);
        EXPECT_EQ(drag(rows(), middleOf(c.row), *data), *c.label != 0);
        EXPECT_EQ(label(), QString::fromUtf8(c.label));
    }
    // A folder does not go into itself by way of what is in it.
    const auto itself = FileMime::makeDrag({folder / "sub"});
    EXPECT_FALSE(drag(rows(), middleOf("sub/child.txt"), *itself));
    EXPECT_FALSE(drag(rows(), middleOf("sub/empty"), *itself));
    ASSERT_TRUE(drag(rows(), middleOf("sub/child.txt"), *data));
    drop(rows(), middleOf("sub/child.txt"), *data);
    ASSERT_TRUE(waitFor([this] { return folder.exists("sub/a.txt"); }));
}

TEST_F(DropTest, anEmptyFolderTakesFiles) {
    pane().navigate(Location::folder(folder / "sub/empty"));
    auto* page = window->findChild<StatePage*>();
    ASSERT_TRUE(waitFor([page] { return page->isVisible(); }));
    const auto data = FileMime::makeDrag({folder / "b.txt"});
    ASSERT_TRUE(drag(page->parentWidget(), page->rect().center(), *data));
    drop(page->parentWidget(), page->rect().center(), *data);
    ASSERT_TRUE(waitFor([this] { return folder.exists("sub/empty/b.txt"); }));
}

TEST_F(DropTest, aDragBeginsOnlyAfterTheThreshold) {
    EXPECT_EQ(QApplication::startDragDistance(), Metrics::dragThreshold);
    for (int row = 0; row < pane().items().count(); ++row)
        EXPECT_TRUE(pane().items().flags(pane().items().index(row, 0)) & Qt::ItemIsDragEnabled);
}

}  // namespace
}  // namespace tarn
