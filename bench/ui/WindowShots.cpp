// Pictures of the window for the documents and for looking at: tarn-window-shots OUT [NAME...].
#include <cstdio>

#include <QtCore/QDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

namespace {

using namespace tarn;

struct Shot {
    const char* name;
    Theme::Mode mode;
    ViewMode view;
    QSize size;
    const char* folder;  ///< Inside the home folder.
    const char* search;
    const char* select;  ///< A name in the folder, or none.
};

constexpr Shot shots[] = {
    {"list-light",
     Theme::Mode::light,
     ViewMode::list,
     {1280, 800},
     "Documents",
     "",
     "Lease Agreement.pdf"},
    {"list-dark",
     Theme::Mode::dark,
     ViewMode::list,
     {1280, 800},
     "Documents",
     "",
     "Lease Agreement.pdf"},
    {"search-light",
     Theme::Mode::light,
     ViewMode::list,
     {1280, 800},
     "",
     "pdfs from last week over 5 mb",
     ""},
    {"search-dark",
     Theme::Mode::dark,
     ViewMode::list,
     {1280, 800},
     "",
     "pdfs from last week over 5 mb",
     ""},
    {"text-light",
     Theme::Mode::light,
     ViewMode::list,
     {1280, 800},
     "",
     "containing “total due”",
     "Invoice 2041.txt"},
    {"text-dark",
     Theme::Mode::dark,
     ViewMode::list,
     {1280, 800},
     "",
     "containing “total due”",
     "Invoice 2041.txt"},
    {"text-narrow",
     Theme::Mode::light,
     ViewMode::list,
     {560, 700},
     "",
     "containing “total due”",
     ""},
    {"grid-light", Theme::Mode::light, ViewMode::grid, {1280, 800}, "Pictures", "", "IMG_203.jpg"},
    {"grid-dark", Theme::Mode::dark, ViewMode::grid, {1280, 800}, "Pictures", "", "IMG_203.jpg"},
    {"home-light", Theme::Mode::light, ViewMode::grid, {1280, 800}, "", "", ""},
    {"narrow-light", Theme::Mode::light, ViewMode::list, {690, 700}, "Documents", "", ""},
    {"narrow-dark", Theme::Mode::dark, ViewMode::grid, {400, 700}, "Pictures", "", ""},
    {"middle-light", Theme::Mode::light, ViewMode::list, {760, 600}, "Documents", "", ""},
    {"empty-light", Theme::Mode::light, ViewMode::list, {1000, 640}, "Desktop", "", ""},
    {"nothing-dark",
     Theme::Mode::dark,
     ViewMode::list,
     {1000, 640},
     "Documents",
     "zebra stripes",
     ""},
    {"gone-light", Theme::Mode::light, ViewMode::list, {1000, 640}, "Gone", "", ""},
};

void take(AppModel& app, const Shot& shot, const QString& out) {
    Theme::shared().setMode(shot.mode);
    const URL folder = URL::fromPath(shot.folder, Paths::home());
    auto model = std::make_unique<WindowModel>(app, Location::folder(folder));
    PaneModel& pane = model->active();
    pane.setViewMode(shot.view);
    auto* window = new BrowserWindow(std::move(model));
    window->resize(shot.size);
    window->show();
    const auto isIdle = [&pane] { return !pane.isLoading() && !pane.isSearching(); };
    (void)QTest::qWaitFor(isIdle);
    if (*shot.search) {
        pane.setSearchText(shot.search);
        (void)QTest::qWaitFor(isIdle);
    }
    if (*shot.select) pane.select({folder.appending(shot.select)});
    // Thumbnails and motion have no single end to wait for.
    QTest::qWait(1500);
    const QString file = QDir(out).filePath(QString::fromUtf8(shot.name) + QStringLiteral(".png"));
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
        std::fprintf(stderr, "usage: tarn-window-shots OUT [NAME...]\n");
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    Theme::install(qt);
    AppModel app;
    app.startBackgroundServices(false);
    for (const Shot& shot : shots) {
        bool wanted = argc == 2;
        for (int i = 2; i < argc; ++i) wanted |= QByteArray(argv[i]) == shot.name;
        if (wanted) take(app, shot, QString::fromLocal8Bit(argv[1]));
    }
    return 0;
}
