// Pictures of tabs, two panes, the start screen and the first pages, to be looked at:
// tarn-tab-shots OUT [NAME...]. Shows the home folder; TARN_ISOLATED_ROOT chooses which.
#include <cstdio>
#include <functional>

#include <QtCore/QDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/onboarding/OnboardingSheet.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

namespace {

using namespace tarn;

WindowSnapshot at(const Location& location, ViewMode mode = ViewMode::list) {
    return {{{location, mode}}, 0, true, false};
}

struct Scene {
    const char* name;
    std::function<void(BrowserWindow&)> set;
};

const Scene scenes[] = {
    {"one", [](BrowserWindow&) {}},
    {"tabs",
     [](BrowserWindow& window) {
         window.group().open(at(Location::folder(Paths::pictures()), ViewMode::grid));
     }},
    {"many-tabs",
     [](BrowserWindow& window) {
         for (int i = 0; i < 9; ++i) window.group().open(at(Location::folder(Paths::documents())));
     }},
    {"split",
     [](BrowserWindow& window) {
         window.model().setSplit(true);
         window.model().setActiveIndex(1);
         window.model().active().navigate(Location::folder(Paths::pictures()));
     }},
    {"start", [](BrowserWindow& window) { window.model().active().navigate(Location::home()); }},
    {"first-1",
     [](BrowserWindow& window) {
         auto* sheet = new OnboardingSheet(window.group().app(), window);
         sheet->open(sheet->next());
     }},
    {"first-2",
     [](BrowserWindow& window) {
         auto* sheet = new OnboardingSheet(window.group().app(), window);
         sheet->open(sheet->next());
         sheet->next()->click();
     }},
    {"first-3",
     [](BrowserWindow& window) {
         auto* sheet = new OnboardingSheet(window.group().app(), window);
         sheet->open(sheet->next());
         sheet->next()->click();
         sheet->next()->click();
     }},
    {"sheet",
     [](BrowserWindow& window) {
         window.group().open(at(Location::folder(Paths::pictures())), false);
         window.model().setShowsHistory(true);
     }},
};

void take(AppModel& app, const Scene& scene, Theme::Mode mode, const QSize& size,
          const QString& out) {
    Theme::shared().setMode(mode);
    AppSettings settings = app.settings();
    settings.onboardingPage = 0;
    app.setSettings(settings);
    auto* window = new BrowserWindow(
        std::make_unique<WindowModel>(app, at(Location::folder(Paths::documents()))));
    window->resize(size);
    window->show();
    scene.set(*window);
    const PaneModel& pane = window->model().active();
    (void)QTest::qWaitFor([&pane] { return !pane.isLoading() && !pane.isSearching(); });
    // Thumbnails and motion have no single end to wait for.
    QTest::qWait(700);
    const QString file = QDir(out).filePath(
        QStringLiteral("%1-%2-%3.png")
            .arg(QString::fromUtf8(scene.name))
            .arg(size.width())
            .arg(QString::fromUtf8(mode == Theme::Mode::dark ? "dark" : "light")));
    window->grab().save(file);
    std::printf("%s\n", qPrintable(file));
    window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace

int main(int argc, char** argv) {
    Platform::setCurrent(makeLinuxPlatform());
    QApplication qt(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: tarn-tab-shots OUT [NAME...]\n");
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    Theme::install(qt);
    AppModel app;
    app.startBackgroundServices(false);
    for (const Scene& scene : scenes) {
        bool wanted = argc == 2;
        for (int i = 2; i < argc; ++i) wanted |= QByteArray(argv[i]) == scene.name;
        if (!wanted) continue;
        for (const QSize& size : {QSize(1180, 760), QSize(420, 700)})
            for (const Theme::Mode mode : {Theme::Mode::light, Theme::Mode::dark})
                take(app, scene, mode, size, QString::fromLocal8Bit(argv[1]));
    }
    return 0;
}
