#include <filesystem>
#include <set>

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/commands/PaletteEntries.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/model/TabGroup.h"
#include "Tarn/model/UserLists.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/records/AppSettings.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

const TarnCommand& command(std::string_view id) { return *CommandRegistry::command(id); }

/// A window with one tab on a folder that has a few files.
class CommandsTest : public testing::Test {
protected:
    void SetUp() override {
        folder_.file("a.txt", "one");
        folder_.file("b.txt", "two");
        folder_.folder("inside");
        window = &group.open({{{Location::folder(folder_.url()), std::nullopt}}, 0, true, false});
        ASSERT_TRUE(QTest::qWaitFor([this] { return pane().items().count() == 3; }));
    }
    PaneModel& pane() { return window->active(); }
    void select(std::string_view name) { pane().select({folder_ / name}); }
    bool isEnabled(std::string_view id) { return CommandRegistry::isEnabled(command(id), window); }
    bool run(std::string_view id) { return CommandRegistry::run(command(id), *window); }

    TestFolder folder_;
    AppModel app;
    TabGroup group{app};
    WindowModel* window = nullptr;
};

TEST(CommandRegistry, everyCommandRunsOrSaysWhyNot) {
    for (const TarnCommand& command : CommandRegistry::all()) {
        SCOPED_TRACE(command.id);
        EXPECT_EQ(command.unavailable.empty(), static_cast<bool>(command.run));
        EXPECT_TRUE(command.unavailable.empty() || command.unavailable.ends_with('.'));
    }
    EXPECT_EQ(CommandRegistry::command("no.such"), nullptr);
    EXPECT_FALSE(CommandRegistry::isEnabled(command("home"), nullptr)) << "without a window";
}

TEST(CommandRegistry, noKeyRunsTwoCommands) {
    AppSettings settings;
    // Ctrl+C copies, until a person gives it to something else.
    settings.shortcutOverrides["compress"] = {"c", true, false, false, false};
    settings.shortcutOverrides["tags"] = {"delete", true, true, false, false};
    for (const AppSettings& each : {AppSettings(), settings}) {
        std::set<std::string> seen;
        for (const auto& [id, keys] : CommandRegistry::keys(each))
            for (const std::string& key : keys) EXPECT_TRUE(seen.insert(key).second) << key;
    }
    const auto keys = CommandRegistry::keys(settings);
    EXPECT_FALSE(keys.contains("copy"));
    EXPECT_EQ(keys.find("compress")->second, std::vector<std::string>{"Ctrl+C"});
    EXPECT_EQ(keys.find("tags")->second,
              (std::vector<std::string>{"Ctrl+Shift+Del", "Ctrl+Shift+Backspace"}));
    EXPECT_EQ(keys.find("refresh")->second, (std::vector<std::string>{"Ctrl+R", "F5"}));
}

TEST(CommandRegistry, keysAreWrittenAsQtReadsThem) {
    const struct {
        Shortcut shortcut;
        const char* text;
    } cases[] = {
        {{"h", true, true, false, false}, "Ctrl+Shift+H"},
        {{"up", true, false, false, false}, "Ctrl+Up"},
        {{"\\", true, false, true, true}, "Ctrl+Meta+Alt+\\"},
        {{"é", false, false, true, false}, "Alt+É"},
        {{"ß", true, false, false, false}, "Ctrl+ß"},
        {{"+", true, false, false, false}, "Ctrl++"},
        {{"", true, false, false, false}, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(CommandRegistry::portableText(c.shortcut), c.text);
    }
}

TEST_F(CommandsTest, enablingFollowsTheSelectionAndThePlace) {
    EXPECT_FALSE(isEnabled("rename"));
    EXPECT_TRUE(isEnabled("paste")) << "needs no selection";
    EXPECT_FALSE(isEnabled("newFolderSelection"));
    EXPECT_FALSE(isEnabled("otherPane.copy"));
    select("a.txt");
    EXPECT_TRUE(isEnabled("rename"));
    EXPECT_TRUE(isEnabled("newFolderSelection"));
    EXPECT_FALSE(isEnabled("extract")) << "no archive";
    EXPECT_FALSE(isEnabled("copyText")) << "no picture";
    EXPECT_FALSE(isEnabled("otherPane.copy")) << "one pane only";
    EXPECT_FALSE(isEnabled("saveSearch"));
    EXPECT_FALSE(run("saveSearch"));
    EXPECT_FALSE(window->sheet());
    EXPECT_FALSE(isEnabled("tab.next"));
    EXPECT_FALSE(CommandRegistry::obstacle(command("otherPane.copy"), window).isEmpty());

    pane().setSearchText("txt");
    ASSERT_TRUE(QTest::qWaitFor([this] { return pane().showsResults(); }));
    EXPECT_FALSE(isEnabled("paste")) << "results lie in many folders";
    EXPECT_TRUE(isEnabled("saveSearch"));
    pane().clearSearch(true);

    pane().navigate(Location::tags());
    EXPECT_FALSE(isEnabled("paste"));
    EXPECT_FALSE(isEnabled("newFolderSelection"));
    EXPECT_FALSE(isEnabled("terminal"));
    EXPECT_TRUE(isEnabled("home"));
}

TEST_F(CommandsTest, copiesToTheOtherPane) {
    const URL target = folder_.folder("inside");
    ASSERT_TRUE(run("split"));
    ASSERT_TRUE(window->isSplit());
    PaneModel* other = window->otherPane();
    ASSERT_TRUE(other);
    other->navigate(Location::tags());
    select("a.txt");
    EXPECT_FALSE(isEnabled("otherPane.copy")) << "the other one shows no folder";
    other->navigate(Location::folder(target));
    EXPECT_TRUE(run("otherPane.copy"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return folder_.exists("inside/a.txt"); }));
    EXPECT_TRUE(folder_.exists("a.txt"));
    select("b.txt");
    EXPECT_TRUE(run("otherPane.move"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !folder_.exists("b.txt"); }));
    EXPECT_TRUE(folder_.exists("inside/b.txt"));
}

TEST_F(CommandsTest, tabsAreOpenedClosedAndComeBack) {
    EXPECT_FALSE(isEnabled("tab.next"));
    ASSERT_TRUE(run("tab.new"));
    ASSERT_EQ(group.count(), 2);
    EXPECT_EQ(group.current()->active().location(), Location::folder(folder_.url()));
    EXPECT_TRUE(isEnabled("tab.next"));
    EXPECT_TRUE(run("tab.next"));
    EXPECT_EQ(group.current(), window);
    EXPECT_TRUE(run("tab.previous"));
    group.close(1);
    ASSERT_EQ(group.count(), 1);
    EXPECT_TRUE(run("tab.reopen"));
    EXPECT_EQ(group.count(), 2);
}

TEST_F(CommandsTest, asksWhatItNeedsToKnow) {
    ASSERT_TRUE(run("goToFolder"));
    EXPECT_EQ(window->sheet()->which, WindowSheet::Which::goToFolder);
    ASSERT_TRUE(run("workspace.save"));
    EXPECT_EQ(window->sheet()->which, WindowSheet::Which::saveWorkspace);
    pane().setSearchText("pdfs over 1 mb");
    ASSERT_TRUE(run("saveSearch"));
    EXPECT_EQ(window->sheet()->which, WindowSheet::Which::newSmartFolder);
    EXPECT_EQ(window->sheet()->text, "pdfs over 1 mb in \"" + folder_.url().path() + '"');
}

TEST_F(CommandsTest, revealTellsOfTheSelectionOrThePlace) {
    std::vector<std::vector<URL>> asked;
    QObject::connect(window, &WindowModel::revealRequested, window,
                     [&asked](const std::vector<URL>& urls) { asked.push_back(urls); });
    ASSERT_TRUE(run("reveal"));
    select("a.txt");
    ASSERT_TRUE(run("reveal"));
    EXPECT_EQ(asked, (std::vector<std::vector<URL>>{{folder_.url()}, {folder_ / "a.txt"}}));
}

TEST_F(CommandsTest, copiesTheTextsOfPicturesInTheirOrder) {
    std::filesystem::copy_file(TARN_TEST_PICTURES "/invoice.png", (folder_ / "scan.png").path());
    folder_.file("broken.png", "no picture");
    pane().reload();
    ASSERT_TRUE(QTest::qWaitFor([this] { return pane().items().count() == 5; }));
    pane().select({folder_ / "a.txt"});
    EXPECT_FALSE(isEnabled("copyText"));
    pane().select({folder_ / "a.txt", folder_ / "broken.png"});
    ASSERT_TRUE(run("copyText"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->toast().has_value(); }, 100'000));
    EXPECT_TRUE(window->toast()->isError) << "nothing can be read";
    EXPECT_FALSE(app.clipboard().data());
    window->dismissToast(window->toast()->id);
    pane().select({folder_ / "broken.png", folder_ / "scan.png"});
    ASSERT_TRUE(run("copyText"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->toast().has_value(); }, 100'000));
    EXPECT_FALSE(window->toast()->isError) << window->toast()->message.toStdString();
    ASSERT_TRUE(app.clipboard().data());
    const QString text = app.clipboard().data()->text();
    EXPECT_TRUE(text.contains(QStringLiteral("Invoice 2041"))) << text.toStdString();
}

TEST_F(CommandsTest, copiesPathsInTheFormatOfTheSettings) {
    const AppSettings before = app.settings();
    AppSettings settings = before;
    settings.copyPathFormat = CopyPathFormat::fileURL;
    app.setSettings(settings);
    select("a.txt");
    ASSERT_TRUE(run("copyPath"));
    EXPECT_EQ(app.clipboard().data()->text().toStdString(), (folder_ / "a.txt").string());
    pane().selection().clear();
    ASSERT_TRUE(run("copyPath.quoted"));
    EXPECT_EQ(app.clipboard().data()->text().toStdString(),
              Paths::format(folder_.url(), CopyPathFormat::quoted));
    app.setSettings(before);
}

// ---- The palette

class PaletteTest : public CommandsTest {
protected:
    std::vector<std::string> titles(const PaletteEntries& entries, std::string_view typed) {
        std::vector<std::string> found;
        for (const PaletteRow& row : entries.matching(typed))
            found.push_back(row.entry ? row.entry->title.toStdString()
                                      : "— " + row.heading.toStdString());
        return found;
    }
    std::vector<std::string> titles(std::string_view typed) {
        return titles(PaletteEntries(*window), typed);
    }
};

TEST_F(PaletteTest, withoutATextEveryCommandStandsInItsOrder) {
    const auto all = titles("  ");
    ASSERT_EQ(all.size(), 62u + 4u);
    EXPECT_EQ(all[0], "— Go");
    EXPECT_EQ(all[1], "Go to Home");
    EXPECT_EQ(all.back(), "Previous Song");
}

TEST_F(PaletteTest, theBestMatchIsFirstAndUseDecidesAmongEquals) {
    auto found = titles("copy");
    ASSERT_GE(found.size(), 6u);
    EXPECT_EQ(found[0], "Copy") << "the whole title";
    EXPECT_EQ(found[1], "Copy Path") << "in the order of the menus";
    app.noteUsed("newFolderSelection");
    EXPECT_EQ(titles("new f")[0], "New Folder") << "the other one cannot be run";
    select("a.txt");
    EXPECT_EQ(titles("new f")[0], "New Folder with Selection");
    EXPECT_EQ(titles("new folder")[0], "New Folder") << "however often the other one was used";
}

TEST_F(PaletteTest, runsWhatIsEnabledAndCountsIt) {
    const PaletteEntries entries(*window);
    const auto entry = [&](std::string_view typed) { return *entries.matching(typed)[0].entry; };
    const auto uses = app.usageCount("split");
    ASSERT_TRUE(PaletteEntries::run(entry("split view"), *window));
    EXPECT_TRUE(window->isSplit());
    EXPECT_EQ(app.usageCount("split"), uses + 1);
    const auto rename = entry("rename");
    EXPECT_FALSE(rename.isEnabled);
    EXPECT_FALSE(rename.detail.isEmpty());
    EXPECT_FALSE(PaletteEntries::run(rename, *window)) << "nothing is selected";
    EXPECT_EQ(app.usageCount("rename"), 0);
}

TEST_F(PaletteTest, findsWhatTheWindowDoesAndThePlacesOfTheSidebar) {
    int asked = 0;
    PaletteEntry own;
    own.kind = PaletteEntry::Kind::action;
    own.action = "z-x.settings";
    own.title = QStringLiteral("Settings…");
    own.perform = [&asked] { ++asked; };
    const PaletteEntries entries(*window, {own});
    EXPECT_EQ(titles(entries, "").back(), "Settings…") << "below all commands";
    const auto rows = entries.matching("settings");
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_TRUE(PaletteEntries::run(*rows[0].entry, *window));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(app.usageCount("z-x.settings"), 1);
    own.isEnabled = false;
    EXPECT_FALSE(PaletteEntries::run(own, *window));
    EXPECT_EQ(asked, 1);
    const struct {
        const char* typed;
        Location place;
    } places[] = {
        {"recents", Location::library(LibraryItem::recents)},
        {"orange", Location::tag("Orange")},
        {"large files", Location::smartFolder(app.lists().smartFolders().front().id)},
    };
    for (const auto& c : places) {
        SCOPED_TRACE(c.typed);
        const auto found = entries.matching(c.typed);
        ASSERT_FALSE(found.empty());
        EXPECT_TRUE(PaletteEntries::run(*found.back().entry, *window));
        EXPECT_EQ(pane().location(), c.place);
    }
}

TEST_F(PaletteTest, recentFoldersAndWorkspacesStandBelow) {
    // No name of a temporary folder has these letters.
    const URL folder = folder_.folder("Quarterly z-x");
    app.noteVisited(folder);
    const UUID workspace =
        app.lists().saveWorkspace("z-x work", {window->snapshot(), window->snapshot()});
    const PaletteEntries entries(*window);
    EXPECT_EQ(titles(entries, "z-x"), (std::vector<std::string>{"— Recent Folders", "Quarterly z-x",
                                                                "— Workspaces", "z-x work"}));
    const auto rows = entries.matching("z-x");
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_TRUE(PaletteEntries::run(*rows[1].entry, *window));
    EXPECT_EQ(pane().location(), Location::folder(folder));
    const int before = group.count();
    EXPECT_TRUE(PaletteEntries::run(*rows[3].entry, *window));
    EXPECT_EQ(group.count(), before + 2);
    EXPECT_EQ(group.currentIndex(), 1) << "the first of them is in front";
    app.lists().removeWorkspace(workspace);
}

}  // namespace
}  // namespace tarn
