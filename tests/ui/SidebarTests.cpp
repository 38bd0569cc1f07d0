#include <condition_variable>

#include <QtCore/QMimeData>
#include <QtGui/QDrag>
#include <QtGui/QDropEvent>
#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/FileMime.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/drag/DropLabel.h"
#include "Tarn/ui/path/CrumbButton.h"
#include "Tarn/ui/sheets/QuestionSheet.h"
#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/sidebar/SidebarActions.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/memory/MemoryDrives.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"
#include "TarnCore/tags/TagStore.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/ScopedPlatform.h"
#include "tests/support/TestFolder.h"
#include "tests/ui/Shown.h"

namespace tarn {
namespace {

using namespace Qt::StringLiterals;

/// Three disks, one of whose servers is dead until it is let go.
class FewVolumes final : public Volumes {
public:
    std::vector<Mount> mounts() const override {
        Mount root;
        root.fileSystem = "ext4";
        Mount stick;
        stick.mountPoint = URL::fromPath("/run/media/ada/STICK");
        stick.fileSystem = "vfat";
        stick.isRemovable = true;
        Mount share;
        share.mountPoint = URL::fromPath("/mnt/share");
        share.fileSystem = "nfs4";
        share.isNetwork = true;
        Mount pseudo;
        pseudo.mountPoint = URL::fromPath("/proc");
        pseudo.isPseudo = true;
        return {root, stick, share, pseudo};
    }
    std::optional<Mount> mountHolding(const URL&) const override { return std::nullopt; }
    std::string displayName(const Mount& mount) const override {
        return mount.mountPoint.isRoot() ? "Computer" : std::string(mount.mountPoint.name());
    }
    std::optional<VolumeSpace> space(const URL& url) const override {
        if (url == URL::fromPath("/mnt/share")) {
            auto held = released_.lock();
            changed_.wait(held.mutex(), [&held] { return *held; });
        }
        return VolumeSpace{1'000'000'000, 250'000'000};
    }
    std::shared_ptr<void> observe(std::function<void()>) override { return nullptr; }
    void letGo() {
        *released_.lock() = true;
        changed_.notify_all();
    }

private:
    Guarded<bool> released_{false};
    mutable std::condition_variable changed_;
};

/// Hears of every drag that has begun, when it goes.
class DragWatcher final : public QObject {
public:
    explicit DragWatcher(std::function<void(const QDrag&)> onDrag) : onDrag_(std::move(onDrag)) {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::DeferredDelete)
            if (const auto* drag = qobject_cast<QDrag*>(watched)) onDrag_(*drag);
        return false;
    }

private:
    std::function<void(const QDrag&)> onDrag_;
};

class SidebarTest : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"Home", "Home/Documents", "Home/Pictures", "Home/Projects"})
            root.folder(name);
        root.file("Home/Music", "a file, no folder");
        app.emplace();
        clear();
    }
    /// The stores are shared with the tests after this one.
    void clear() {
        UserLists& lists = app->lists();
        while (!lists.favorites().empty()) lists.removeFavorite(lists.favorites().back().id);
        while (lists.smartFolders().size() > SmartFolder::builtIns().size())
            lists.removeSmartFolder(lists.smartFolders().back().id);
        while (!lists.servers().empty()) lists.forgetServer(std::string(lists.servers().back()));
        app->setLastLayout({});
    }
    void TearDown() override {
        delete window;
        clear();
        volumes->letGo();
        app.reset();
    }
    Platform services() const {
        Platform all = Platform::current();
        all.volumes = volumes;
        all.drives = std::make_shared<MemoryDrives>(std::make_shared<MemoryVolumes>());
        return all;
    }
    QStringList titles(SidebarSection section) const {
        QStringList all;
        for (int i = 0; i < model().rowCount(); ++i)
            if (model().row(i).section == section &&
                model().row(i).kind != SidebarRow::Kind::heading)
                all << model().row(i).title;
        return all;
    }
    /// A window with everything in it that is looked up later.
    void open() {
        window =
            new BrowserWindow(std::make_unique<WindowModel>(*app, Location::folder(root / "Home")));
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->resize(1000, 1200);
        sidebar = window->findChild<Sidebar*>();
        show(*window);
        ASSERT_TRUE(waitFor([this] {
            return titles(SidebarSection::volumes).size() == 2 &&
                   titles(SidebarSection::favorites).size() >= 3;
        }));
    }
    SidebarModel& model() const { return sidebar->model(); }
    int rowOf(const QString& title) const {
        for (int i = 0; i < model().rowCount(); ++i)
            if (model().row(i).title == title) return i;
        return -1;
    }
    QRect rectOf(const QString& title) const {
        return sidebar->visualRect(model().index(rowOf(title)));
    }
    void giveKeyboard(const QString& title) const {
        sidebar->setFocus(Qt::TabFocusReason);
        sidebar->setCurrentIndex(model().index(rowOf(title)));
    }
    QString keyboardRow() const {
        const QModelIndex index = sidebar->currentIndex();
        return index.isValid() ? model().row(index.row()).title : QString();
    }
    /// What a menu offers, without the keys beside it.
    QStringList menuOf(const QString& title) const {
        QMenu menu;
        window->findChild<SidebarActions*>()->fillMenu(menu, SidebarRow(model().row(rowOf(title))));
        QStringList texts;
        for (const QAction* action : menu.actions())
            if (!action->isSeparator() && action->isEnabled())
                texts << action->text().section(u'\t', 0, 0);
        return texts;
    }
    void pick(const QString& title, const QString& entry) const {
        QMenu menu;
        window->findChild<SidebarActions*>()->fillMenu(menu, SidebarRow(model().row(rowOf(title))));
        for (QAction* action : menu.actions())
            if (action->text().section(u'\t', 0, 0) == entry) action->trigger();
    }
    QString label() const {
        auto* label = window->findChild<DropLabel*>();
        return label && label->isVisible() ? label->text() : QString();
    }
    /// Drags files over a point; true when they may be dropped there.
    bool drag(const QPoint& point, const QMimeData& data,
              Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) const {
        QDragEnterEvent enter(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(sidebar->viewport(), &enter);
        QDragMoveEvent move(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(sidebar->viewport(), &move);
        return move.isAccepted() && move.dropAction() != Qt::IgnoreAction;
    }
    void drop(const QPoint& point, const QMimeData& data,
              Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction) const {
        drag(point, data, actions);
        QDropEvent event(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(sidebar->viewport(), &event);
    }
    /// Presses the button over a widget, moves the pointer far enough for a drag to begin, and lets
    /// what is dragged go at a place in the sidebar. The platform of the tests carries no drags, so
    /// the second half is told to the sidebar.
    void dragByHand(QWidget& from, const QPoint& start, const QPoint& end) const {
        int drags = 0;
        DragWatcher watcher([&](const QDrag& drag) {
            ++drags;
            drop(end, *drag.mimeData(), drag.supportedActions());
        });
        QWindow* handle = window->windowHandle();
        const QPoint origin = from.mapTo(window, start);
        QTest::mousePress(handle, Qt::LeftButton, {}, origin);
        QTest::mouseMove(handle, origin + QPoint(0, QApplication::startDragDistance() + 2));
        QTest::mouseRelease(handle, Qt::LeftButton, {}, origin);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(drags, 1);
    }

    TestFolder root;
    ScopedEnvironment isolation{{"TARN_ISOLATED_ROOT", root.url().path()}};
    std::shared_ptr<FewVolumes> volumes = std::make_shared<FewVolumes>();
    ScopedPlatform platform{services()};
    std::optional<AppModel> app;
    BrowserWindow* window = nullptr;
    Sidebar* sidebar = nullptr;
};

TEST_F(SidebarTest, listsWhatOneGoesTo) {
    app->lists().addFavorite(root / "Home/Projects");
    app->lists().addSmartFolder("Papers", "pdfs", SearchScopeSetting::home);
    app->lists().rememberServer("smb://nas/photos");
    open();
    EXPECT_EQ(titles(SidebarSection::favorites),
              (QStringList{u"Home"_s, u"Documents"_s, u"Pictures"_s, u"Projects"_s}));
    EXPECT_EQ(titles(SidebarSection::smartFolders),
              (QStringList{u"Large Files"_s, u"Screenshots"_s, u"Installers"_s, u"Papers"_s}));
    // The standard ones, those that were met elsewhere, and the way to all.
    EXPECT_GE(titles(SidebarSection::tags).size(), 8);
    EXPECT_EQ(titles(SidebarSection::tags).last(), u"All Tags"_s);
    EXPECT_EQ(titles(SidebarSection::volumes), (QStringList{u"Computer"_s, u"STICK"_s}));
    EXPECT_EQ(titles(SidebarSection::network),
              (QStringList{u"share"_s, u"photos on nas"_s, u"Connect to Server…"_s}));
    EXPECT_EQ(model().row(model().rowCount() - 1).kind, SidebarRow::Kind::trash);

    root.folder("Home/Downloads");
    model().refresh();
    ASSERT_TRUE(
        waitFor([this] { return titles(SidebarSection::favorites).contains(u"Downloads"_s); }));
    // A folder of the user's own choice stands once, where it was put.
    app->lists().addFavorite(root / "Home/Documents", 0);
    EXPECT_EQ(
        titles(SidebarSection::favorites),
        (QStringList{u"Home"_s, u"Downloads"_s, u"Pictures"_s, u"Documents"_s, u"Projects"_s}));
    app->tagColors().remember({"Tax", TagColor::blue});
    EXPECT_TRUE(titles(SidebarSection::tags).contains(u"Tax"_s));
}

TEST_F(SidebarTest, aDeadServerSaysSoOnItsOwnRowOnly) {
    open();
    const int stick = rowOf(u"STICK"_s);
    const int share = rowOf(u"share"_s);
    ASSERT_TRUE(waitFor([&] { return model().row(share).answer == SidebarRow::Answer::silent; }));
    EXPECT_EQ(model().row(share).note(), u"Not responding"_s);
    EXPECT_EQ(model().row(stick).note(), u"250 MB of 1 GB available"_s);
    volumes->letGo();
    EXPECT_TRUE(waitFor([&] { return model().row(share).answer == SidebarRow::Answer::ready; }));
}

TEST_F(SidebarTest, theTrashTellsWhatIsInIt) {
    open();
    EXPECT_EQ(model().row(rowOf(u"Trash"_s)).note(), QString());
    app->trash().measure();
    ASSERT_TRUE(waitFor([this] { return model().row(rowOf(u"Trash"_s)).note() == u"Empty"_s; }));
    window->model().operations().trash({root.file("Home/old.txt", std::string(3000, 'x'))});
    ASSERT_TRUE(waitFor(
        [this] { return model().row(rowOf(u"Trash"_s)).note().startsWith(u"1 item · "_s); }));
}

TEST_F(SidebarTest, arrowsReachEveryRowAndEnterChooses) {
    open();
    std::optional<Location> chosen;
    QObject::connect(sidebar, &Sidebar::chosen,
                     [&chosen](const Location& location) { chosen = location; });
    giveKeyboard(u"Installers"_s);
    QTest::keyClick(sidebar, Qt::Key_Down);
    EXPECT_EQ(keyboardRow(), u"Tags"_s);
    QTest::keyClick(sidebar, Qt::Key_Down);
    QTest::keyClick(sidebar, Qt::Key_Return);
    EXPECT_EQ(chosen, Location::tag(FinderTag::standard()[0].name));
    giveKeyboard(u"Trash"_s);
    QTest::keyClick(sidebar, Qt::Key_Space);
    EXPECT_EQ(chosen, Location::folder(Paths::trash()));
    for (int i = 0; i < model().rowCount(); ++i)
        EXPECT_GE(sidebar->visualRect(model().index(i)).height(), 24);
}

TEST_F(SidebarTest, sectionsFoldByKeyAndClickAndStaySo) {
    open();
    giveKeyboard(u"STICK"_s);
    QTest::keyClick(sidebar, Qt::Key_Left);
    EXPECT_EQ(titles(SidebarSection::volumes), QStringList());
    EXPECT_EQ(keyboardRow(), u"Locations"_s);
    EXPECT_EQ(model().row(rowOf(u"Locations"_s)).note(), u"Folded"_s);
    QTest::keyClick(sidebar, Qt::Key_Return);
    EXPECT_EQ(titles(SidebarSection::volumes).size(), 2);
    QTest::mouseClick(sidebar->viewport(), Qt::LeftButton, {}, rectOf(u"Tags"_s).center());
    EXPECT_EQ(titles(SidebarSection::tags), QStringList());
    ASSERT_TRUE(waitFor([this] {
        return window->group().layout().foldedSections == std::vector<std::string>{"tags"};
    }));
    app->saveSession();
    delete std::exchange(window, nullptr);
    open();
    // Where nothing is remembered for a window, it begins as the last one was.
    EXPECT_EQ(titles(SidebarSection::tags), QStringList());
    EXPECT_GE(rowOf(u"Tags"_s), 0);
}

TEST_F(SidebarTest, theUsersRowsAreRenamedMovedAndRemovedByKeys) {
    for (const char* name : {"Home/a", "Home/b", "Home/c"})
        app->lists().addFavorite(root.folder(name));
    open();
    const auto own = [this] { return titles(SidebarSection::favorites).mid(3); };
    giveKeyboard(u"c"_s);
    QTest::keyClick(sidebar, Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(sidebar, Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(sidebar, Qt::Key_Up, Qt::AltModifier);  // It is the first by then.
    EXPECT_EQ(own(), (QStringList{u"c"_s, u"a"_s, u"b"_s}));
    EXPECT_EQ(keyboardRow(), u"c"_s);
    QTest::keyClick(sidebar, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(own(), (QStringList{u"a"_s, u"c"_s, u"b"_s}));
    QTest::keyClick(sidebar, Qt::Key_F2);
    ASSERT_TRUE(window->model().sheet());
    EXPECT_EQ(window->model().sheet()->favorite->path, (root / "Home/c").path());
    window->model().closeSheet();
    giveKeyboard(u"c"_s);
    QTest::keyClick(sidebar, Qt::Key_Delete);
    EXPECT_EQ(own(), (QStringList{u"a"_s, u"b"_s}));
    // The places that every sidebar has stay.
    giveKeyboard(u"Documents"_s);
    QTest::keyClick(sidebar, Qt::Key_Delete);
    EXPECT_GE(rowOf(u"Documents"_s), 0);
    EXPECT_TRUE(root.exists("Home/Documents"));
}

TEST_F(SidebarTest, aRowsMenuHasWhatCanBeDoneWithIt) {
    app->lists().addFavorite(root.folder("Home/a"));
    app->lists().addFavorite(root.folder("Home/b"));
    app->lists().addSmartFolder("Papers", "pdfs", SearchScopeSetting::home);
    app->lists().rememberServer("smb://nas/photos");
    open();
    const QStringList opening = {u"Open"_s, u"Open in New Tab"_s, u"Open in New Window"_s};
    const struct {
        const char16_t* row;
        QStringList entries;
    } cases[] = {
        {u"Documents", opening},
        {u"Large Files", opening},
        {u"Red", opening},
        {u"Computer", opening},
        {u"a", opening + QStringList{u"Rename…"_s, u"Move Down"_s, u"Remove from Favourites"_s}},
        {u"b", opening + QStringList{u"Rename…"_s, u"Move Up"_s, u"Remove from Favourites"_s}},
        {u"Papers", opening + QStringList{u"Edit…"_s, u"Delete…"_s}},
        {u"STICK", opening + QStringList{u"Eject"_s}},
        {u"photos on nas", {u"Connect"_s, u"Forget"_s}},
        {u"Favourites", {u"Add “Home”"_s, u"Fold"_s}},
        {u"Smart Folders", {u"New Smart Folder…"_s, u"Fold"_s}},
        {u"Network", {u"Connect to Server…"_s, u"Fold"_s}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(QString::fromUtf16(c.row).toStdString());
        EXPECT_EQ(menuOf(QString::fromUtf16(c.row)), c.entries);
    }
    pick(u"Favourites"_s, u"Add “Home”"_s);
    EXPECT_EQ(app->lists().favorites().size(), 3u);
    EXPECT_EQ(menuOf(u"Favourites"_s), QStringList{u"Fold"_s});
    pick(u"Papers"_s, u"Edit…"_s);
    EXPECT_EQ(window->model().sheet()->smartFolder->query, "pdfs");
    window->model().closeSheet();
    pick(u"Papers"_s, u"Delete…"_s);
    auto* question = window->findChild<QuestionSheet*>();
    ASSERT_TRUE(question);
    question->yes()->click();
    EXPECT_EQ(rowOf(u"Papers"_s), -1);
    pick(u"photos on nas"_s, u"Forget"_s);
    EXPECT_TRUE(app->lists().servers().empty());
}

TEST_F(SidebarTest, theButtonOfAVolumeEjectsItAndDoesNotGoThere) {
    open();
    QSignalSpy chosen(sidebar, &Sidebar::chosen);
    QSignalSpy wanted(sidebar, &Sidebar::actionWanted);
    for (const bool isMirrored : {false, true}) {
        SCOPED_TRACE(isMirrored);
        sidebar->setLayoutDirection(isMirrored ? Qt::RightToLeft : Qt::LeftToRight);
        ASSERT_TRUE(waitFor([this] { return model().row(rowOf(u"STICK"_s)).isEjectable(); }));
        const QModelIndex stick = model().index(rowOf(u"STICK"_s));
        const QRect button = sidebar->ejectButton(stick);
        const QRect row = sidebar->visualRect(stick);
        EXPECT_TRUE(row.contains(button));
        EXPECT_EQ(button.center().x() < row.center().x(), isMirrored);
        wanted.clear();
        QTest::mouseClick(sidebar->viewport(), Qt::LeftButton, {}, button.center());
        ASSERT_EQ(wanted.count(), 1);
        EXPECT_EQ(wanted[0][0].value<SidebarAction>(), SidebarAction::eject);
    }
    EXPECT_EQ(chosen.count(), 0);
    wanted.clear();
    giveKeyboard(u"share"_s);
    QTest::keyClick(sidebar, Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(wanted.count(), 1);
    EXPECT_TRUE(sidebar->ejectButton(model().index(rowOf(u"Computer"_s))).isEmpty());
}

TEST_F(SidebarTest, foldersThatAreDroppedBetweenFavoritesBecomeSome) {
    app->lists().addFavorite(root.folder("Home/a"));
    app->lists().addFavorite(root.folder("Home/b"));
    root.folder("Home/new");
    root.file("Home/x.txt", "");
    open();
    const auto own = [this] { return titles(SidebarSection::favorites).mid(3); };
    const auto folder = FileMime::makeDrag({root / "Home/new"});
    const QPoint between = rectOf(u"b"_s).topLeft() + QPoint(60, 1);
    ASSERT_TRUE(drag(between, *folder));
    EXPECT_EQ(label(), u"Add to Favourites"_s);
    drop(between, *folder);
    ASSERT_TRUE(waitFor([&] { return own() == QStringList({u"a"_s, u"new"_s, u"b"_s}); }));
    EXPECT_TRUE(root.exists("Home/new"));
    // Above the places that are always there it is the first.
    drop(rectOf(u"Favourites"_s).center(), *folder);
    ASSERT_TRUE(waitFor([&] { return own() == QStringList({u"new"_s, u"a"_s, u"b"_s}); }));
    const auto file = FileMime::makeDrag({root / "Home/x.txt"});
    drop(between, *file);
    ASSERT_TRUE(waitFor([this] { return window->model().toast().has_value(); }));
    EXPECT_EQ(window->model().toast()->message, u"Only folders can be favourites."_s);
    EXPECT_EQ(own().size(), 3);
}

TEST_F(SidebarTest, filesThatAreDroppedOnARowGoThereOrGetItsTag) {
    root.file("Home/x.txt", "");
    open();
    const auto data = FileMime::makeDrag({root / "Home/x.txt"});
    ASSERT_TRUE(drag(rectOf(u"Red"_s).center(), *data));
    EXPECT_EQ(label(), u"Tag with “Red”"_s);
    drop(rectOf(u"Red"_s).center(), *data);
    ASSERT_TRUE(waitFor([this] { return !TagStore::tags(root / "Home/x.txt").empty(); }));
    EXPECT_EQ(TagStore::tags(root / "Home/x.txt")[0].name, "Red");
    EXPECT_FALSE(drag(rectOf(u"Large Files"_s).center(), *data));
    EXPECT_FALSE(drag(rectOf(u"Connect to Server…"_s).center(), *data));
    EXPECT_EQ(label(), QString());
    ASSERT_TRUE(drag(rectOf(u"Documents"_s).center(), *data));
    EXPECT_EQ(label(), u"Move to “Documents”"_s);
    drop(rectOf(u"Documents"_s).center(), *data);
    ASSERT_TRUE(waitFor([this] { return root.exists("Home/Documents/x.txt"); }));
}

TEST_F(SidebarTest, rowsOfTheUserAreDraggedToOtherPlaces) {
    for (const char* name : {"Home/a", "Home/b", "Home/c"})
        app->lists().addFavorite(root.folder(name));
    open();
    const auto own = [this] { return titles(SidebarSection::favorites).mid(3); };
    dragByHand(*sidebar->viewport(), rectOf(u"a"_s).center(),
               rectOf(u"c"_s).bottomLeft() + QPoint(60, -2));
    EXPECT_EQ(own(), (QStringList{u"b"_s, u"c"_s, u"a"_s}));
    dragByHand(*sidebar->viewport(), rectOf(u"a"_s).center(),
               rectOf(u"c"_s).topLeft() + QPoint(60, 2));
    EXPECT_EQ(own(), (QStringList{u"b"_s, u"a"_s, u"c"_s}));
    // Out of its section nothing becomes of it; no folder is moved by that.
    dragByHand(*sidebar->viewport(), rectOf(u"b"_s).center(), rectOf(u"STICK"_s).center());
    EXPECT_EQ(own(), (QStringList{u"b"_s, u"a"_s, u"c"_s}));
    EXPECT_TRUE(root.exists("Home/b"));
}

TEST_F(SidebarTest, aCrumbIsDraggedToTheFavorites) {
    open();
    CrumbButton* crumb = nullptr;
    for (auto* one : window->findChildren<CrumbButton*>())
        if (one->isVisible()) crumb = one;
    ASSERT_TRUE(crumb);
    dragByHand(*crumb, crumb->rect().center(), rectOf(u"Favourites"_s).center());
    ASSERT_TRUE(waitFor([this] { return app->lists().favorite(root / "Home") != nullptr; }));
}

}  // namespace
}  // namespace tarn
