#include <filesystem>
#include <optional>

#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <gtest/gtest.h>

#include "Tarn/model/UserLists.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/states/SkeletonRows.h"
#include "Tarn/ui/states/StatePage.h"
#include "Tarn/ui/states/StatusPill.h"
#include "TarnCore/files/Paths.h"
#include "tests/ui/Shown.h"
#include "tests/ui/screens/BusyPool.h"
#include "tests/ui/screens/Screens.h"

namespace tarn {
namespace {

const Screen bare = {"bare", [](Stage&) {}};

template <class Part>
Part* shown(Stage& stage) {
    for (Part* part : stage.window().findChildren<Part*>())
        if (part->isVisible()) return part;
    return nullptr;
}

/// Pixels that are not as the ground is.
int drawnIn(QWidget& widget) {
    const QImage picture = widget.grab().toImage();
    const QRgb ground = picture.pixel(0, 0);
    int drawn = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) drawn += picture.pixel(x, y) != ground;
    return drawn;
}

/// The page says something in words that can be seen, and offers a way out where one is due.
void expectPage(Stage& stage, bool hasAction, const char* title = nullptr) {
    // Where reading took long enough to be shown, that stays for a moment.
    ASSERT_TRUE(waitFor([&stage] { return shown<StatePage>(stage) != nullptr; }));
    auto* page = shown<StatePage>(stage);
    EXPECT_FALSE(page->content().symbol.empty());
    EXPECT_FALSE(page->content().title.isEmpty());
    if (title) {
        EXPECT_EQ(page->content().title.toStdString(), title);
    }
    EXPECT_FALSE(page->content().sentence.isEmpty());
    EXPECT_EQ(page->accessibleName(), page->content().title);
    auto* button = page->findChild<QPushButton*>();
    EXPECT_EQ(button->isVisible(), hasAction);
    EXPECT_GT(drawnIn(*page), 500);
}

Location nowhere() { return Location::folder(Paths::home().appending("Gone")); }
Location archive(const char* name) { return Location::archive(Paths::home().appending(name), ""); }

/// A saved search that finds nothing.
Location emptySmartFolder(Stage& stage) {
    return Location::smartFolder(
        stage.app().lists().addSmartFolder("Nothing", "qwertz", SearchScopeSetting::home));
}

TEST(Screens, sayWhyTheyAreEmpty) {
    const struct {
        const char* name;
        std::function<Location(Stage&)> place;
        bool hasAction;
        const char* title = nullptr;
    } cases[] = {
        {"folder", [](Stage&) { return Location::folder(Paths::home().appending("Empty")); }, true},
        {"trash", [](Stage&) { return Location::folder(Paths::trash()); }, false},
        {"archive", [](Stage&) { return archive("Nothing.zip"); }, true},
        {"recents", [](Stage&) { return Location::library(LibraryItem::recents); }, false,
         "No Recent Files"},
        {"videos", [](Stage&) { return Location::library(LibraryItem::videos); }, false,
         "No Videos"},
        {"music", [](Stage&) { return Location::library(LibraryItem::music); }, false},
        {"apps", [](Stage&) { return Location::library(LibraryItem::apps); }, false},
        {"smart folder", emptySmartFolder, false},
        {"tag", [](Stage&) { return Location::tag("Nothing"); }, false, "Nothing Tagged “Nothing”"},
        {"source", [](Stage&) { return Location::source("Nowhere"); }, false,
         "Nothing from Nowhere"},
        {"cleanup", [](Stage&) { return Location::cleanup(); }, true},
        {"duplicates", [](Stage&) { return Location::duplicates(); }, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Stage stage(bare);
        std::filesystem::remove(
            Paths::home().appending("Work/Phone/Summer in the Mountains.mov").path());
        stage.go(c.place(stage));
        stage.settle();
        expectPage(stage, c.hasAction, c.title);
    }
}

TEST(Screens, sayWhenThereAreNoSources) {
    const auto away = Paths::home().parent().appending("Away").path();
    std::filesystem::rename(Paths::downloads().path(), away);
    {
        Stage stage(bare);
        stage.go(Location::sources());
        stage.settle();
        expectPage(stage, false);
    }
    std::filesystem::rename(away, Paths::downloads().path());
}

TEST(Screens, sayWhatWentWrong) {
    const struct {
        const char* name;
        Location place;
    } cases[] = {
        {"folder", nowhere()},
        {"no folder", Location::folder(Paths::documents().appending("Notes.txt"))},
        {"archive", archive("Broken.zip")},
        {"no archive", archive("Gone.zip")},
        {"smart folder", Location::smartFolder(UUID::random())},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Stage stage(bare);
        stage.go(c.place);
        stage.settle();
        expectPage(stage, true);
    }
}

TEST(Screens, sayThatNothingWasFound) {
    Stage stage(bare);
    const Location places[] = {
        Location::folder(Paths::documents()),
        archive("Nothing.zip"),
        Location::library(LibraryItem::documents),
        emptySmartFolder(stage),
        Location::tag("Work"),
        Location::source("Slack"),
        Location::home(),
        Location::sources(),
        Location::tags(),
    };
    for (const Location& place : places) {
        SCOPED_TRACE(place.title());
        stage.go(place);
        stage.pane().setSearchText("qwertz");
        stage.wait([&] { return stage.pane().showsResults() && !stage.pane().isSearching(); });
        stage.settle();
        expectPage(stage, true);
        stage.pane().clearSearch(false);
    }
}

TEST(Screens, tellThatTheyAreLoading) {
    const Location places[] = {Location::folder(Paths::documents()), archive("Broken.zip"),
                               Location::sources(), Location::tags()};
    int seen = 0;
    for (const Location& place : places) {
        SCOPED_TRACE(place.title());
        Stage stage(bare);
        const BusyPool busy;
        stage.pane().navigate(place);
        // The tags that everybody has are there at once, and sources may be.
        stage.wait(
            [&] { return shown<SkeletonRows>(stage) || stage.pane().overview().rowCount() > 0; });
        auto* rows = shown<SkeletonRows>(stage);
        if (!rows) continue;
        EXPECT_FALSE(rows->accessibleName().isEmpty());
        EXPECT_GT(drawnIn(*rows), 500);
        ++seen;
    }
    EXPECT_GE(seen, 2);
}

}  // namespace
}  // namespace tarn
