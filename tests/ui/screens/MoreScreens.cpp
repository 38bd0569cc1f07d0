#include "tests/ui/screens/MoreScreens.h"

#include <algorithm>
#include <memory>

#include <QtCore/QMimeData>
#include <QtGui/QDragEnterEvent>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>

#include "Tarn/model/FileMime.h"
#include "Tarn/model/WindowEdits.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/model/records/Favorites.h"
#include "Tarn/ui/menus/WindowActions.h"
#include "Tarn/ui/pane/NewFileMenu.h"
#include "Tarn/ui/pane/PaneMenu.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/pane/RenameEditor.h"
#include "Tarn/ui/quicksearch/QuickSearchPanel.h"
#include "Tarn/ui/settings/SettingsSheet.h"
#include "Tarn/ui/settings/ShortcutField.h"
#include "Tarn/ui/sheets/PermissionsSheet.h"
#include "Tarn/ui/sheets/RenameWorkspaceSheet.h"
#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/tags/TagMenu.h"
#include "TarnCore/files/Paths.h"
#include "tests/ui/screens/Screens.h"

namespace tarn {
namespace {

const auto work = ScreenHome::work;

void documents(Stage& stage) { stage.go(Location::folder(Paths::documents())); }

QLineEdit& field() {
    auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    Q_ASSERT(edit);
    return *edit;
}

void palette(Stage& stage, const char* typed) {
    documents(stage);
    stage.app().lists().saveWorkspace("Court files", {stage.model().snapshot()});
    stage.model().setShowsPalette(true);
    QTest::keyClicks(QApplication::focusWidget(), QString::fromUtf8(typed));
}

void refusedName(Stage& stage) {
    documents(stage);
    stage.pane().beginRename(Paths::documents().appending("Notes.txt"));
    field().setText(QStringLiteral("Talk.odp"));
    QTest::keyClick(&field(), Qt::Key_Return);
    auto* editor = stage.window().findChild<RenameEditor*>();
    stage.wait([&] { return editor && !editor->problem().isEmpty(); });
}

void folders(Stage& stage) {
    stage.go(Location::folder(Paths::home().appending("Work")));
    auto& operations = stage.model().operations();
    operations.copyTo({Paths::documents().appending("Letters")}, work("Holiday"));
    stage.wait([&] { return stage.app().transfers().activeCount() == 0; });
    stage.go(Location::folder(work("Holiday")));
    operations.copyTo({Paths::documents().appending("Letters")}, work("Holiday"));
    stage.wait([&] { return stage.app().transfers().asking() != nullptr; });
}

void toast(Stage& stage) {
    stage.go(Location::folder(work("Holiday")));
    stage.model().operations().moveTo({work("Holiday/IMG_2041.jpg"), work("Holiday/plan.odt")},
                                      Paths::home().appending("Work"));
    stage.wait([&] { return stage.model().toast().has_value(); });
}

void complaint(Stage& stage) {
    stage.go(Location::folder(work("Holiday")));
    stage.model().operations().rename(work("Holiday/plan.odt"), "IMG_2041.jpg");
    stage.wait([&] { return stage.model().toast().has_value(); });
}

void drop(Stage& stage) {
    documents(stage);
    auto* view = stage.window().findChild<PaneView*>(QStringLiteral("paneList"));
    const auto row = stage.pane().items().row(Paths::documents().appending("Projects"));
    const QPoint point = view->visualRect(stage.pane().items().index(row.value_or(0), 0)).center();
    const auto data = FileMime::makeDrag({work("Holiday/plan.odt"), work("Phone/IMG_2041.jpg")});
    QDragEnterEvent enter(point, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &enter);
}

void takenShortcut(Stage& stage) {
    documents(stage);
    QTest::keyClick(&stage.window(), Qt::Key_Comma, Qt::ControlModifier);
    auto* sheet = stage.window().findChild<SettingsSheet*>();
    sheet->showPage(4);
    auto* keys = sheet->findChild<ShortcutField*>(QStringLiteral("go.forward"));
    keys->setFocus();
    QTest::keyClick(keys, Qt::Key_Return);
    QTest::keyClick(keys, Qt::Key_D, Qt::ControlModifier);
}

void permissions(Stage& stage) {
    documents(stage);
    stage.select({"Letters", "Notes.txt"});
    stage.model().edits().askPermissions();
    auto* sheet = stage.window().findChild<PermissionsSheet*>();
    const auto boxes = sheet->findChildren<QCheckBox*>();
    stage.wait([&] {
        return std::any_of(boxes.begin(), boxes.end(),
                           [](const QCheckBox* box) { return box->isChecked(); });
    });
    ItemPermissions found;
    found.count = 2;
    found.all = 0644;
    found.any = 0755;
    found.hasFiles = found.hasFolders = found.canChange = true;
    found.owner = QStringLiteral("robin");
    found.group = QStringLiteral("staff");
    sheet->show(found);
}

void eject(Stage& stage) {
    documents(stage);
    WindowSheet sheet;
    sheet.which = WindowSheet::Which::eject;
    for (const Volume& volume : stage.app().volumes())
        if (volume.isRemovable) sheet.volume = volume;
    const std::string point = "/media/STICK/";
    sheet.processes = {
        {4711, "vim", {point + "Notes/Packing list for the mountains, second version.txt"}},
        {5120,
         "rhythmbox",
         {point + "1.flac", point + "2.flac", point + "3.flac", point + "4.flac",
          point + "5.flac"}},
        {812, "bash", {"/media/STICK"}}};
    sheet.message = "Couldn’t eject “STICK” because it is in use.";
    stage.model().showSheet(sheet);
}

void connect(Stage& stage, const char* address) {
    documents(stage);
    WindowSheet sheet;
    sheet.which = WindowSheet::Which::connectServer;
    stage.model().showSheet(sheet);
    if (!*address) return;
    field().setText(QString::fromUtf8(address));
    QTest::keyClick(&field(), Qt::Key_Return);
}

void renameFavorite(Stage& stage) {
    documents(stage);
    WindowSheet sheet;
    sheet.which = WindowSheet::Which::renameFavorite;
    sheet.favorite = Favorites::make(Paths::documents(), "Papers");
    stage.model().showSheet(sheet);
}

void renameWorkspace(Stage& stage) {
    auto& lists = stage.app().lists();
    lists.saveWorkspace("Garden", {stage.model().snapshot()});
    const UUID files = lists.saveWorkspace("Court files", {stage.model().snapshot()});
    stage.go(Location::home());
    auto* sheet = new RenameWorkspaceSheet(stage.window(), lists, *lists.workspace(files));
    sheet->open(sheet->firstField());
    field().setText(QStringLiteral("garden"));
}

const Screen rarer[] = {
    {"palette-empty", [](Stage& s) { palette(s, ""); }},
    {"palette-nothing", [](Stage& s) { palette(s, "qqqq"); }},
    {"rename-refused", refusedName},
    {"conflict-folders", folders, true},
    {"toast", toast},
    {"complaint", complaint},
    {"drop", drop},
    {"shortcut-taken", takenShortcut},
    {"eject", eject},
    {"permissions", permissions},
    {"connect", [](Stage& s) { connect(s, ""); }},
    {"connect-failed", [](Stage& s) { connect(s, "build.example.net"); }},
    {"connect-question", [](Stage& s) { connect(s, "sftp://build.example.org"); }},
    {"rename-favorite", renameFavorite},
    {"rename-workspace", renameWorkspace},
};

void popUp(Stage& stage, QMenu* menu) {
    menu->popup(stage.window().mapToGlobal(QPoint(stage.window().width() / 3, 150)));
}

/// A window of its own, in front of the other.
void quickSearch(Stage& stage, const char* typed) {
    documents(stage);
    auto* panel = new QuickSearchPanel(stage.app());
    // The app goes after the window.
    QObject::connect(&stage.window(), &QObject::destroyed, panel, [panel] { delete panel; });
    panel->prepare();
    panel->move(
        stage.window().mapToGlobal(QPoint((stage.window().width() - panel->width()) / 2, 120)));
    panel->show();
    panel->activateWindow();
    stage.wait([panel] { return panel->isActiveWindow(); });
    QTest::keyClicks(panel->findChild<QLineEdit*>(), QString::fromUtf8(typed));
    stage.wait(
        [&] { return !*typed || (panel->pane().showsResults() && !panel->pane().isSearching()); });
}

const Screen popups[] = {
    {"quick-search", [](Stage& s) { quickSearch(s, ""); }},
    {"quick-search-results", [](Stage& s) { quickSearch(s, "files from 2026 over 1 kb"); }},
    {"quick-search-nothing", [](Stage& s) { quickSearch(s, "qwertz"); }},
    {"menu",
     [](Stage& s) {
         documents(s);
         s.select({"Lease Agreement.pdf"});
         popUp(s, PaneMenu::make(s.model(), &s.window()).release());
     }},
    {"menu-place",
     [](Stage& s) {
         documents(s);
         popUp(s, PaneMenu::make(s.model(), &s.window()).release());
     }},
    {"menu-tags",
     [](Stage& s) {
         documents(s);
         s.select({"Lease Agreement.pdf", "Talk.odp"});
         auto* menu = new QMenu(&s.window());
         TagMenu::addNames(*menu, s.model());
         popUp(s, menu);
     }},
    {"menu-new",
     [](Stage& s) {
         documents(s);
         popUp(s, new NewFileMenu(s.model(), &s.window()));
     }},
    {"path-offers",
     [](Stage& s) {
         documents(s);
         QTest::keyClick(&s.window(), Qt::Key_L, Qt::ControlModifier);
         QTest::keyClicks(&field(), QStringLiteral("~/"));
         s.wait([] { return QApplication::activePopupWidget() != nullptr; });
     }},
};

}  // namespace

std::span<const Screen> rarerScreens() { return rarer; }
std::span<const Screen> popupScreens() { return popups; }

}  // namespace tarn
