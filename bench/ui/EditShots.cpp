// Pictures of changing files in the window, for looking at: tarn-edit-shots OUT [NAME...].
#include <cstdio>
#include <functional>

#include <QtCore/QDir>
#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/pane/NewFileMenu.h"
#include "Tarn/ui/pane/PaneMenu.h"
#include "Tarn/ui/pane/RenameEditor.h"
#include "Tarn/ui/rename/RenameSheet.h"
#include "Tarn/ui/tags/TagMenu.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

namespace {

using namespace tarn;

struct Scene {
    BrowserWindow& window;
    PaneModel& pane;
    QWidget* over = nullptr;  ///< Drawn on top of the window, where it stands.
    QPoint at;
};

void settle(PaneModel& pane) {
    (void)QTest::qWaitFor([&pane] { return !pane.isLoading(); });
    QTest::qWait(700);
}

void selectNamed(PaneModel& pane, std::initializer_list<const char*> names) {
    std::vector<URL> urls;
    for (const char* name : names) urls.push_back(pane.location().url.appending(name));
    pane.select(urls);
}

void renameSheet(Scene& scene) {
    std::vector<URL> urls;
    for (const FileItem& item : scene.pane.items().rows()->items())
        if (!item.isDirectory) urls.push_back(item.url);
    scene.window.model().showSheet({WindowSheet::Which::batchRename, urls});
    auto* sheet = scene.window.findChild<RenameSheet*>();
    RuleDraft draft;
    draft.find = "^(IMG|DSC)_?(\\d+)";
    draft.replace = "Lake $2";
    draft.regex = true;
    sheet->model().setDraft(0, draft);
    sheet->model().addDraft(4);
    sheet->showRules();
    QTest::qWait(300);
    for (QToolButton* button : sheet->findChildren<QToolButton*>())
        if (button->text() == QStringLiteral("Show First")) button->click();
}

const struct {
    const char* name;
    ViewMode view;
    const char* folder;  ///< Inside the home folder.
    std::function<void(Scene&)> arrange;
} scenes[] = {
    {"tags-list", ViewMode::list, "Documents",
     [](Scene& s) { selectNamed(s.pane, {"Lease Agreement.pdf"}); }},
    {"tags-grid", ViewMode::grid, "Pictures", [](Scene&) {}},
    {"rename-list", ViewMode::list, "Documents",
     [](Scene& s) {
         s.pane.beginRename(s.pane.location().url.appending("Lease Agreement.pdf"));
         if (auto* editor = s.window.findChild<RenameEditor*>())
             editor->refuse(QStringLiteral(
                 "The name “Budget.xlsx” is already taken. Please choose a different name."));
     }},
    {"rename-grid", ViewMode::grid, "Pictures",
     [](Scene& s) { s.pane.beginRename(s.pane.items().item(2).url); }},
    {"rename-sheet", ViewMode::list, "Camera", renameSheet},
    {"new-tag", ViewMode::list, "Documents",
     [](Scene& s) {
         selectNamed(s.pane, {"Lease Agreement.pdf"});
         s.window.model().showSheet({WindowSheet::Which::newTag, {}});
     }},
    {"menu", ViewMode::list, "Documents",
     [](Scene& s) {
         selectNamed(s.pane, {"Lease Agreement.pdf"});
         s.over = PaneMenu::make(s.window.model(), &s.window).release();
         s.at = {420, 150};
     }},
    {"menu-empty", ViewMode::list, "Documents",
     [](Scene& s) {
         s.over = PaneMenu::make(s.window.model(), &s.window).release();
         s.at = {420, 250};
     }},
    {"menu-tags", ViewMode::list, "Documents",
     [](Scene& s) {
         selectNamed(s.pane, {"Lease Agreement.pdf", "Budget.xlsx"});
         auto* menu = new QMenu(&s.window);
         TagMenu::addNames(*menu, s.window.model());
         s.over = menu;
         s.at = {420, 150};
     }},
    {"menu-new", ViewMode::list, "Documents",
     [](Scene& s) {
         s.over = new NewFileMenu(s.window.model(), &s.window);
         s.at = {400, 150};
     }},
    {"archive", ViewMode::list, "",
     [](Scene& s) {
         s.pane.navigate(Location::archive(Paths::home().appending("Survey.zip"), "Survey/raw"));
         settle(s.pane);
     }},
    {"archive-broken", ViewMode::list, "",
     [](Scene& s) {
         s.pane.navigate(Location::archive(Paths::home().appending("Broken.zip"), ""));
         settle(s.pane);
     }},
};

void take(AppModel& app, std::size_t index, Theme::Mode mode, QSize size, const QString& out) {
    const auto& scene = scenes[index];
    Theme::shared().setMode(mode);
    const URL folder = URL::fromPath(scene.folder, Paths::home());
    auto* window = new BrowserWindow(std::make_unique<WindowModel>(app, Location::folder(folder)));
    PaneModel& pane = window->model().active();
    pane.setViewMode(scene.view);
    window->resize(size);
    window->show();
    settle(pane);
    Scene made{*window, pane, nullptr, {}};
    scene.arrange(made);
    QTest::qWait(500);
    QPixmap picture = window->grab();
    if (made.over) {
        made.over->ensurePolished();
        made.over->adjustSize();
        auto* menu = static_cast<QMenu*>(made.over);
        menu->popup(window->mapToGlobal(made.at));
        QTest::qWait(300);
        const QPixmap menuPicture = menu->grab();
        QPainter(&picture).drawPixmap(made.at, menuPicture);
        menu->close();
    }
    const QString file = QDir(out).filePath(
        QStringLiteral("%1-%2-%3.png")
            .arg(QString::fromUtf8(scene.name),
                 mode == Theme::Mode::dark ? QStringLiteral("dark") : QStringLiteral("light"))
            .arg(size.width()));
    picture.save(file);
    std::printf("%s\n", qPrintable(file));
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace

int main(int argc, char** argv) {
    Platform::setCurrent(makeLinuxPlatform());
    QApplication qt(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: tarn-edit-shots OUT [NAME...]\n");
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    Theme::install(qt);
    AppModel app;
    const QString out = QString::fromLocal8Bit(argv[1]);
    for (std::size_t i = 0; i < std::size(scenes); ++i) {
        bool wanted = argc == 2;
        for (int k = 2; k < argc; ++k) wanted |= QByteArray(argv[k]) == scenes[i].name;
        if (!wanted) continue;
        take(app, i, Theme::Mode::light, {1100, 760}, out);
        take(app, i, Theme::Mode::dark, {900, 700}, out);
        take(app, i, Theme::Mode::light, {700, 640}, out);
    }
    return 0;
}
