// Pictures of previews and of the inspector, for looking at: tarn-preview-shots OUT FOLDER
// [NAME...] takes each file of FOLDER (or those named) in quick look and in the inspector, light
// and dark.
#include <cstdio>
#include <cstring>

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/inspector/Inspector.h"
#include "Tarn/ui/preview/PreviewWidget.h"
#include "Tarn/ui/quicklook/QuickLook.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

namespace {

using namespace tarn;

struct Studio {
    BrowserWindow& window;
    QuickLook& quickLook;
    Inspector& inspector;
    QDir out;

    void save(const QPixmap& picture, const QString& name) {
        const QString file = out.filePath(name + QStringLiteral(".png"));
        picture.save(file);
        std::printf("%s\n", qPrintable(file));
    }

    PaneModel& pane() { return window.model().active(); }

    void take(const std::vector<URL>& files, const QString& name, const QString& mode) {
        pane().select(files);
        inspector.show();
        QTest::qWait(50);
        (void)QTest::qWaitFor([this] { return inspector.preview().isSettled(); });
        QTest::qWait(900);
        save(inspector.grab(), QStringLiteral("inspector-%1-%2").arg(name, mode));
        inspector.hide();
        if (files.empty()) return;
        QElapsedTimer time;
        time.start();
        quickLook.open();
        (void)QTest::qWaitFor([this] { return quickLook.preview().isSettled(); });
        std::printf("%s: %lld ms to the first sight\n", qPrintable(name), time.elapsed());
        QTest::qWait(900);
        save(window.grab(), QStringLiteral("quicklook-%1-%2").arg(name, mode));
        quickLook.finish();
    }
};

}  // namespace

int main(int argc, char** argv) {
    Platform::setCurrent(makeLinuxPlatform());
    QApplication qt(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: tarn-preview-shots OUT FOLDER [NAME...]\n");
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    Theme::install(qt);
    AppModel app;
    const URL folder = URL::fromPath(argv[2]);
    auto* window = new BrowserWindow(std::make_unique<WindowModel>(app, Location::folder(folder)));
    window->resize(1100, 760);
    window->show();
    PaneModel& pane = window->model().active();
    (void)QTest::qWaitFor([&pane] { return !pane.isLoading(); });
    QTest::qWait(500);
    QuickLook quickLook(&window->model(), *window);
    Inspector inspector;
    inspector.resize(Metrics::inspectorMinimum, 820);
    inspector.setPane(&window->model(), &pane);
    Studio studio{*window, quickLook, inspector, QDir(QString::fromLocal8Bit(argv[1]))};
    for (const auto mode : {Theme::Mode::light, Theme::Mode::dark}) {
        Theme::shared().setMode(mode);
        const QString word =
            mode == Theme::Mode::dark ? QStringLiteral("dark") : QStringLiteral("light");
        std::vector<URL> all;
        // The pane may look at its folder again meanwhile.
        const SharedRows rows = pane.items().rows();
        for (const FileItem& item : rows->items()) {
            bool wanted = argc == 3;
            for (int i = 3; i < argc; ++i) wanted |= item.name == argv[i];
            if (!wanted) continue;
            all.push_back(item.url);
            studio.take({item.url}, displayText(item.name), word);
        }
        if (argc == 3) {
            studio.take(all, QStringLiteral("several"), word);
            studio.take({}, QStringLiteral("nothing"), word);
        }
    }
    delete window;
    return 0;
}
