#include <filesystem>
#include <fstream>
#include <string>

#include <QtTest/QTest>
#include <QtWidgets/QScrollBar>
#include <gtest/gtest.h>

#include "Tarn/ui/pane/PaneView.h"
#include "TarnCore/files/Paths.h"
#include "tests/ui/screens/Screens.h"

namespace tarn {
namespace {

void makeFile(const std::string& name) {
    std::ofstream(Paths::home().appending("Work/Many").appending(name).path()) << name;
}

PaneView* shownView(Stage& stage) {
    for (PaneView* view : stage.window().findChildren<PaneView*>())
        if (view->isVisible()) return view;
    return nullptr;
}

/// The first row on the screen, and how far it is from the top.
struct Top {
    std::string name;
    int y = 0;
    bool operator==(const Top&) const = default;
};
Top topOf(PaneView& view) {
    const auto rows = view.visibleRows();
    if (!rows) return {};
    return {view.pane().items().item(rows->first).name,
            view.visualRect(view.model()->index(rows->first, 0)).top()};
}

TEST(Screens, keepTheFirstRowInItsPlaceWhileOthersCome) {
    for (const ViewMode mode : {ViewMode::list, ViewMode::grid}) {
        SCOPED_TRACE(mode == ViewMode::list ? "list" : "grid");
        Stage stage({"bare", [](Stage&) {}});
        std::filesystem::create_directories(Paths::home().appending("Work/Many").path());
        for (int i = 100; i < 500; ++i) makeFile("m" + std::to_string(i));
        stage.go(Location::folder(Paths::home().appending("Work/Many")), mode);
        stage.wait([&] { return stage.pane().items().count() == 400; });
        PaneView* view = shownView(stage);
        ASSERT_TRUE(view);
        // At the very top one wants to see what comes.
        view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum() / 2 + 7);
        Top before = topOf(*view);
        int batches = 0;
        QObject::connect(&stage.pane(), &PaneModel::rowsChanged, &stage.window(), [&] {
            ++batches;
            // Its line in the grid may begin with another one now.
            const URL file = Paths::home().appending("Work/Many").appending(before.name);
            const int row = stage.pane().items().row(file).value_or(-1);
            EXPECT_EQ(view->visualRect(view->model()->index(row, 0)).top(), before.y)
                << "batch " << batches;
        });
        // Behind, and in front.
        int count = 400;
        for (const char* letter : {"z", "a"}) {
            for (int i = 0; i < 60; ++i) makeFile(letter + std::to_string(i));
            count += 60;
            stage.wait([&] { return stage.pane().items().count() == count; });
        }
        EXPECT_GE(batches, 2);
    }
}

TEST(Screens, keepTheFirstResultInItsPlaceWhileOthersCome) {
    Stage stage({"bare", [](Stage&) {}});
    for (int folder = 0; folder < 60; ++folder) {
        const auto path = Paths::home().appending("Work/Many/" + std::to_string(folder)).path();
        std::filesystem::create_directories(path);
        for (int i = 0; i < 60; ++i)
            std::ofstream(path + "/result " + std::to_string(i * 7 % 60) + ".txt") << i;
    }
    stage.go(Location::folder(Paths::home().appending("Work/Many")));
    stage.pane().setScope(SearchScopeSetting::currentFolder);
    Top before;
    int kept = 0;
    QObject::connect(&stage.pane(), &PaneModel::rowsChanged, &stage.window(), [&] {
        PaneView* view = shownView(stage);
        if (!view || stage.pane().items().isEmpty()) return;
        if (before.name.empty()) {
            // Someone has begun to look at them.
            stage.pane().holdRows();
            view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum() / 2);
            stage.pane().rowsSeen(view->visibleRows()->first, view->visibleRows()->last);
            before = topOf(*view);
            return;
        }
        ++kept;
        EXPECT_EQ(topOf(*view).name, before.name);
        EXPECT_EQ(topOf(*view).y, before.y);
    });
    stage.pane().setSearchText("result");
    stage.wait([&] { return stage.pane().showsResults() && !stage.pane().isSearching(); });
    EXPECT_EQ(stage.pane().items().count(), 3600);
    EXPECT_FALSE(before.name.empty());
}

}  // namespace
}  // namespace tarn
