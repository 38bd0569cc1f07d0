// How soon a search shows something while it is typed: tarn-bench-Typing [FOLDER [RUNS]]. A folder
// that does not exist becomes a home folder of 300,000 files. Times begin when nothing has been
// typed for as long as PaneModel waits.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <QtCore/QElapsedTimer>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/search/SearchField.h"
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

constexpr std::size_t files = 300'000;

struct Look {
    const char* title;
    ViewMode mode;
    GroupField groupBy;
};
constexpr Look looks[] = {{"List", ViewMode::list, GroupField::none},
                          {"List, grouped by kind", ViewMode::list, GroupField::kind},
                          {"Grid", ViewMode::grid, GroupField::none}};

/// Many results, some, and more than are kept.
constexpr const char* words[] = {"invoice", "budget 2023", "e"};

struct Timings {
    std::vector<double> first, whole, block;
};

template <class Condition>
void waitUntil(const Condition& condition) {
    while (!condition()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

class Typist {
public:
    Typist(WatchedApplication& qt, BrowserWindow& window)
        : qt_(qt), window_(window), field_(*window.findChild<SearchField*>()) {
        QObject::connect(&pane(), &PaneModel::rowsChanged, &window, [this] { look(); });
    }

    /// One more letter, or all of a word, after which one waits for what is found.
    void type(const std::string& text, Timings& timings) {
        first_ = 0;
        before_ = pane().rowOrder().search;
        qt_.watch().reset();
        timer_.start();
        field_.setText(QString::fromStdString(text));
        waitUntil([&] {
            const bool isAsked = pane().query() && pane().query()->raw == text;
            return isAsked && !pane().isSearching() && !pane().isLoading();
        });
        const double whole = sinceDue();
        window_.repaint();
        if (first_ > 0) timings.first.push_back(first_);
        timings.whole.push_back(whole);
        timings.block.push_back(qt_.watch().longest().seconds);
    }
    void clear() {
        field_.clear();
        waitUntil([this] { return !pane().showsResults() && !pane().isLoading(); });
    }

private:
    PaneModel& pane() { return window_.model().active(); }
    double sinceDue() const {
        return static_cast<double>(timer_.nsecsElapsed()) * 1e-9 - PaneModel::searchDelay;
    }
    void look() {
        if (first_ > 0 || !pane().showsResults() || pane().items().isEmpty()) return;
        if (pane().rowOrder().search == before_) return;  // Those of the letters before.
        window_.repaint();
        first_ = sinceDue();
    }

    WatchedApplication& qt_;
    BrowserWindow& window_;
    SearchField& field_;
    QElapsedTimer timer_;
    double first_ = 0;
    std::uint64_t before_ = 0;  ///< Whose results were shown when the text was typed.
};

void print(const std::string& title, const Timings& timings) {
    std::printf("%s\n", title.c_str());
    if (!timings.first.empty())
        bench::print("  first results painted", bench::summarise(timings.first), "ms", 1000);
    bench::print("  all results", bench::summarise(timings.whole), "ms", 1000);
    bench::print("  longest block of the main thread", bench::summarise(timings.block), "ms", 1000);
}

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);  // Who waits sees each line at once.
    SupportDirectory::useTestFolder();
    Platform::setCurrent(makeLinuxPlatform());
    WatchedApplication qt(argc, argv);
    const std::string folder = argc > 1 ? argv[1] : "/tmp/tarn-bench-home-300000";
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
    if (!std::filesystem::exists(folder)) bench::TreeMaker().home(folder, files);
    Theme::install(qt);
    AppModel app;
    auto* window = new BrowserWindow(
        std::make_unique<WindowModel>(app, Location::folder(URL::fromPath(folder))));
    window->resize(1280, 800);
    window->show();
    PaneModel& pane = window->model().active();
    pane.setScope(SearchScopeSetting::currentFolder);
    FallbackFonts fallbacks;
    fallbacks.learn();  // As the program does behind its first rows.
    waitUntil([&] { return !pane.isLoading() && !fallbacks.isLearning(); });
    Typist typist(qt, *window);
    for (const Look& look : looks) {
        pane.setViewMode(look.mode);
        pane.setGroupBy(look.groupBy);
        for (const std::string word : words) {
            Timings whole, letters, warmUp;
            for (int run = 0; run <= runs; ++run) {
                typist.clear();
                typist.type(word, run == 0 ? warmUp : whole);
            }
            typist.clear();
            for (std::size_t length = 1; word.size() > 1 && length <= word.size(); ++length)
                if (word[length - 1] != ' ') typist.type(word.substr(0, length), letters);
            print(std::string(look.title) + ", “" + word + "”, " +
                      std::to_string(pane.items().count()) + " results",
                  whole);
            if (!letters.whole.empty()) print("  letter by letter", letters);
            typist.clear();
        }
    }
    delete window;
    return 0;
}
