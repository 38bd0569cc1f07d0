// Pictures of the palette and of the settings of shortcuts, for looking at:
// tarn-command-shots OUT [NAME...].
#include <cstdio>
#include <functional>

#include <QtCore/QDir>
#include <QtGui/QKeyEvent>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/UserLists.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/menus/WindowActions.h"
#include "Tarn/ui/palette/GoToFolderSheet.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/settings/ShortcutField.h"
#include "Tarn/ui/settings/ShortcutSection.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Theme.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

namespace {

using namespace tarn;

struct Scene {
    AppModel& app;
    QWidget& window;
    WindowModel& model;
    WindowActions& actions;
};

void showPalette(Scene& scene, const char* typed) {
    scene.model.setShowsPalette(true);
    QTest::keyClicks(QApplication::focusWidget(), typed);
}

ShortcutSection* showSection(Scene& scene) {
    auto* scroll = new QScrollArea(&scene.window);
    auto* section = new ShortcutSection(scene.app);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    section->setContentsMargins(Metrics::space24, Metrics::space24, Metrics::space24,
                                Metrics::space24);
    scroll->setWidget(section);
    scroll->setGeometry(scene.window.rect());
    scroll->show();
    return section;
}

void record(ShortcutSection& section, const char* id, Qt::Key key,
            Qt::KeyboardModifiers modifiers) {
    auto* field = section.findChild<ShortcutField*>(QString::fromUtf8(id));
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Return);
    QTest::keyClick(field, key, modifiers);
}

const struct {
    const char* name;
    std::function<void(Scene&)> arrange;
} scenes[] = {
    {"palette-empty", [](Scene& s) { showPalette(s, ""); }},
    {"palette-typed", [](Scene& s) { showPalette(s, "co"); }},
    {"palette-words", [](Scene& s) { showPalette(s, "go d"); }},
    {"palette-nothing", [](Scene& s) { showPalette(s, "qqqq"); }},
    {"go-to-folder",
     [](Scene& s) {
         auto* sheet = new GoToFolderSheet(s.window, s.model);
         sheet->open(sheet->firstField());
     }},
    {"shortcuts", [](Scene& s) { showSection(s); }},
    {"shortcuts-taken",
     [](Scene& s) {
         ShortcutSection* section = showSection(s);
         record(*section, "go.forward", Qt::Key_D, Qt::ControlModifier);
         QTest::keyClick(section->findChild<ShortcutField*>(QStringLiteral("editPath")),
                         Qt::Key_Return);
     }},
    {"menu",
     [](Scene& s) {
         auto* menu = new QMenu(&s.window);
         s.actions.fillGroup(*menu, "File");
         menu->popup(s.window.mapToGlobal(QPoint(40, 20)));
         QTest::qWait(100);
         QPixmap picture = menu->grab();
         menu->hide();
         auto* shown = new QLabel(&s.window);
         shown->setPixmap(picture);
         shown->adjustSize();
         shown->move(40, 20);
         shown->show();
     }},
};

}  // namespace

int main(int argc, char** argv) {
    Platform::setCurrent(makeLinuxPlatform());
    QApplication qt(argc, argv);
    if (argc < 2) return std::puts("tarn-command-shots OUT [NAME...]"), 2;
    Theme::install(qt);
    const QString out = QString::fromUtf8(argv[1]);
    QDir().mkpath(out);
    for (const auto mode : {Theme::Mode::light, Theme::Mode::dark}) {
        Theme::shared().setMode(mode);
        for (const QSize size : {QSize(1000, 700), QSize(480, 600)}) {
            for (const auto& scene : scenes) {
                bool isWanted = argc == 2;
                for (int i = 2; i < argc; ++i)
                    isWanted = isWanted || argv[i] == std::string_view(scene.name);
                if (!isWanted) continue;
                AppModel app;
                app.noteVisited(Paths::documents());
                app.noteVisited(Paths::documents().appending("Contracts"));
                TabGroup group(app);
                WindowModel& model = group.open(
                    {{{Location::folder(Paths::documents()), ViewMode::list}}, 0, true, false});
                const UUID workspace = app.lists().saveWorkspace("Court files", {model.snapshot()});
                QWidget window;
                auto* column = new QVBoxLayout(&window);
                column->setContentsMargins(0, Metrics::toolbarHeight, 0, 0);
                auto* pane = new PaneWidget(model, model.active(), &window);
                column->addWidget(pane);
                WindowActions actions(app, window);
                actions.addPane(*pane);
                actions.setWindow(&model);
                window.resize(size);
                window.show();
                window.activateWindow();
                (void)QTest::qWaitForWindowActive(&window);
                (void)QTest::qWaitFor([&model] { return !model.active().isLoading(); });
                const AppSettings before = app.settings();
                Scene made{app, window, model, actions};
                scene.arrange(made);
                QTest::qWait(250);
                const QString file = QStringLiteral("%1/%2-%3-%4.png")
                                         .arg(out, QString::fromUtf8(scene.name),
                                              mode == Theme::Mode::dark ? QStringLiteral("dark")
                                                                        : QStringLiteral("light"))
                                         .arg(size.width());
                if (!window.grab().save(file)) return std::puts("cannot write"), 1;
                app.setSettings(before);
                app.lists().removeWorkspace(workspace);
                actions.setWindow(nullptr);
                delete pane;
            }
        }
    }
    return 0;
}
