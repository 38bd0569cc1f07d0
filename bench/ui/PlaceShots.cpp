// Pictures of panes that are grouped, unfolded, or queries: tarn-place-shots OUT. The home folder
// is made afresh in OUT/home.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <QtCore/QDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/pane/PaneWidget.h"
#include "Tarn/ui/theme/Theme.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/sources/SourceResolver.h"
#include "TarnCore/tags/TagStore.h"

namespace {

using namespace tarn;

URL file(const char* name, int size, int daysAgo) {
    const URL url = Paths::home().appending(name);
    std::filesystem::create_directories(url.parent().path());
    std::ofstream(url.path()) << std::string(static_cast<std::size_t>(size), 'x');
    std::filesystem::last_write_time(url.path(), std::filesystem::file_time_type::clock::now() -
                                                     std::chrono::hours(24 * daysAgo));
    return url;
}

void makeHome() {
    const char* const work[] = {"Documents/Budget.ods",
                                "Documents/Lease Agreement.pdf",
                                "Documents/Letters/Landlord.odt",
                                "Documents/Letters/Bank.odt",
                                "Documents/Letters/Old/2019.odt",
                                "Documents/Notes.txt",
                                "Documents/Projects/Garden/Plan.pdf",
                                "Documents/Projects/Garden/Seeds.csv",
                                "Documents/Projects/Roof.pdf",
                                "Documents/Talk.odp",
                                "Documents/Scan 0001.png",
                                "Documents/Archive.zip"};
    int age = 0;
    for (const char* name : work) file(name, 4000 + age * 90'000, (age * age) / 2), ++age;
    TagStore::setTags({{"Work", TagColor::blue}, {"Important", TagColor::red}},
                      Paths::home().appending("Documents/Budget.ods"));
    TagStore::setTags({{"Work", TagColor::blue}}, Paths::home().appending("Documents/Talk.odp"));
    SourceResolver::setWhereFroms(file("Downloads/invoice.pdf", 52'000, 3),
                                  {"https://files.slack.com/files/invoice.pdf"});
    SourceResolver::setWhereFroms(file("Downloads/setup.zip", 2'400'000, 8),
                                  {"https://github.com/some/where/setup.zip"});
    SourceResolver::setWhereFroms(file("Downloads/paper.pdf", 830'000, 40),
                                  {"https://example.org/paper.pdf"});
}

struct Shot {
    const char* name;
    Location place;
    ViewMode view;
    GroupField groupBy = GroupField::none;
    bool unfolds = false;
    QSize size = {900, 620};
};

void take(AppModel& app, const Shot& shot, Theme::Mode mode, const QString& out) {
    Theme::shared().setMode(mode);
    WindowModel model(app, shot.place);
    PaneModel& pane = model.active();
    pane.setViewMode(shot.view);
    pane.setGroupBy(shot.groupBy);
    PaneWidget widget(model, pane);
    widget.resize(shot.size);
    static_cast<QWidget&>(widget).show();
    const auto isIdle = [&pane] {
        return !pane.isLoading() && !pane.isSearching() && !pane.overview().isLoading();
    };
    (void)QTest::qWaitFor(isIdle, 10'000);
    if (shot.unfolds) {
        pane.loadChildren(Paths::documents().appending("Letters"));
        pane.loadChildren(Paths::documents().appending("Projects"));
        pane.loadChildren(Paths::documents().appending("Projects/Garden"));
        (void)QTest::qWaitFor([&pane] { return pane.items().count() >= 14; }, 10'000);
    }
    widget.enter();
    QTest::qWait(700);
    const QString file = QDir(out).filePath(
        QString::fromUtf8(shot.name) +
        (mode == Theme::Mode::dark ? QStringLiteral("-dark.png") : QStringLiteral("-light.png")));
    widget.grab().save(file);
    std::printf("%s\n", qPrintable(file));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: tarn-place-shots OUT\n");
        return 2;
    }
    const std::string root = std::filesystem::absolute(argv[1]).string() + "/root";
    std::filesystem::remove_all(root);
    setenv("TARN_ISOLATED_ROOT", root.c_str(), 1);
    Paths::reload();
    Platform::setCurrent(makeLinuxPlatform());
    QApplication qt(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Theme::install(qt);
    makeHome();
    AppModel app;
    const Location documents = Location::folder(Paths::documents());
    const Shot shots[] = {
        {"grouped-list", documents, ViewMode::list, GroupField::kind},
        {"grouped-dates", documents, ViewMode::list, GroupField::modified},
        {"grouped-grid", documents, ViewMode::grid, GroupField::kind},
        {"tree", documents, ViewMode::list, GroupField::none, true},
        {"tree-grouped", documents, ViewMode::list, GroupField::size, true},
        {"library", Location::library(LibraryItem::documents), ViewMode::list},
        {"library-empty", Location::library(LibraryItem::videos), ViewMode::grid},
        {"tag", Location::tag("Work"), ViewMode::list},
        {"smart-missing", Location::smartFolder(UUID()), ViewMode::grid},
        {"tags", Location::tags(), ViewMode::grid},
        {"sources", Location::sources(), ViewMode::grid},
        {"narrow", documents, ViewMode::grid, GroupField::kind, false, {380, 560}},
    };
    for (const Shot& shot : shots)
        for (const Theme::Mode mode : {Theme::Mode::light, Theme::Mode::dark})
            take(app, shot, mode, QString::fromLocal8Bit(argv[1]));
    return 0;
}
