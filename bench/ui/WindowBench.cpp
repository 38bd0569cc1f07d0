// How the window takes a folder of 100,000 files: tarn-bench-Window [FOLDER [RUNS]].
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include <QtCore/QElapsedTimer>
#include <QtWidgets/QScrollBar>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/theme/FallbackFonts.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "Tarn/ui/window/WatchedApplication.h"
#include "TarnCore/files/SupportDirectory.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "bench/Bench.h"
#include "bench/TreeMaker.h"

namespace {

using namespace tarn;

constexpr std::size_t files = 100'000;
constexpr int frames = 600;

struct Timings {
    std::vector<double> firstRows, allRows, block, sorting, sortBlock, fps;
};

template <class Condition>
void waitUntil(const Condition& condition) {
    while (!condition()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

struct Look {
    const char* title;
    ViewMode mode;
    GroupField groupBy;
};
constexpr Look looks[] = {{"List", ViewMode::list, GroupField::none},
                          {"Grid", ViewMode::grid, GroupField::none},
                          {"List, grouped by date", ViewMode::list, GroupField::modified},
                          {"Grid, grouped by kind", ViewMode::grid, GroupField::kind}};

/// Goes to the folder from an empty one, and measures until rows are on the screen.
void open(WatchedApplication& qt, BrowserWindow& window, const URL& folder, const Look& look,
          Timings& timings) {
    PaneModel& pane = window.model().active();
    double first = 0;
    QElapsedTimer timer;
    const auto shown = QObject::connect(&pane, &PaneModel::rowsChanged, &window, [&] {
        if (first > 0 || pane.items().isEmpty()) return;
        window.repaint();
        first = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
    });
    window.model().app().listings().clear();
    qt.watch().reset();
    timer.start();
    pane.navigate(Location::folder(folder));
    pane.setViewMode(look.mode);
    pane.setGroupBy(look.groupBy);
    const double navigating = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
    waitUntil([&pane] { return !pane.isLoading(); });
    window.repaint();
    timings.allRows.push_back(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
    timings.firstRows.push_back(first);
    timings.block.push_back(std::max(navigating, qt.watch().longest().seconds));
    QObject::disconnect(shown);
}

void sort(WatchedApplication& qt, PaneModel& pane, Timings& timings) {
    const SharedRows before = pane.items().rows();
    qt.watch().reset();
    QElapsedTimer timer;
    timer.start();
    pane.sortBy(SortField::size);
    waitUntil([&] { return pane.items().rows() != before; });
    timings.sorting.push_back(static_cast<double>(timer.nsecsElapsed()) * 1e-9);
    timings.sortBlock.push_back(qt.watch().longest().seconds);
    const SharedRows bySize = pane.items().rows();
    pane.sortBy(SortField::name);
    waitUntil([&] { return pane.items().rows() != bySize; });
}

/// From top to bottom, a wheel step a frame.
void scroll(PaneView* view, Timings& timings) {
    QScrollBar* bar = view->verticalScrollBar();
    QElapsedTimer timer;
    timer.start();
    for (int frame = 0; frame < frames; ++frame) {
        bar->setValue(static_cast<int>(static_cast<qint64>(bar->maximum()) * frame / frames));
        view->viewport()->repaint();
    }
    timings.fps.push_back(frames * 1e9 / static_cast<double>(timer.nsecsElapsed()));
}

}  // namespace

int main(int argc, char** argv) {
    SupportDirectory::useTestFolder();
    Platform::setCurrent(makeLinuxPlatform());
    WatchedApplication qt(argc, argv);
    const std::string folder = argc > 1 ? argv[1] : "/tmp/tarn-bench-flat-100000";
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
    if (!std::filesystem::exists(folder)) bench::TreeMaker().flat(folder, files);
    const std::string empty = folder + "-empty";
    std::filesystem::create_directory(empty);
    Theme::install(qt);
    AppModel app;
    auto* window = new BrowserWindow(
        std::make_unique<WindowModel>(app, Location::folder(URL::fromPath(empty))));
    window->resize(1280, 800);
    window->show();
    PaneModel& pane = window->model().active();
    FallbackFonts fallbacks;
    fallbacks.learn();  // As the program does behind its first rows.
    waitUntil([&fallbacks] { return !fallbacks.isLearning(); });
    for (const Look& look : looks) {
        Timings timings;
        for (int run = 0; run <= runs; ++run) {
            pane.navigate(Location::folder(URL::fromPath(empty)));
            waitUntil([&pane] { return !pane.isLoading(); });
            Timings warmUp;
            Timings& target = run == 0 ? warmUp : timings;
            open(qt, *window, URL::fromPath(folder), look, target);
            sort(qt, pane, target);
            scroll(window->findChild<PaneView*>(look.mode == ViewMode::list
                                                    ? QStringLiteral("paneList")
                                                    : QStringLiteral("paneGrid")),
                   target);
        }
        std::printf("%s, %d items\n", look.title, pane.items().count());
        bench::print("  first rows", bench::summarise(timings.firstRows), "ms", 1000);
        bench::print("  all rows", bench::summarise(timings.allRows), "ms", 1000);
        bench::print("  longest block of the main thread", bench::summarise(timings.block), "ms",
                     1000);
        bench::print("  sorting by size", bench::summarise(timings.sorting), "ms", 1000);
        bench::print("  longest block while sorting", bench::summarise(timings.sortBlock), "ms",
                     1000);
        bench::print("  scrolling", bench::summarise(timings.fps), "frames/s", 1);
    }
    delete window;
    return 0;
}
