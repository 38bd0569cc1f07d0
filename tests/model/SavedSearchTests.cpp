#include <filesystem>

#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/PaneModel.h"
#include "Tarn/model/SavedSearch.h"
#include "TarnCore/files/Paths.h"
#include "tests/support/TestFolder.h"

namespace tarn {
namespace {

TEST(SavedSearch, findsTheSameFromAnywhere) {
    TestFolder outside;
    const URL quoted = outside.folder("a \"b\" c");
    const URL taxes = Paths::home().appending("Taxes 2024");
    std::filesystem::create_directories(taxes.path());
    const std::string outsideText = "in \"" + outside.url().path() + '"';
    using Scope = SearchScopeSetting;
    using enum ChipCategory;
    const struct {
        Location place;
        const char* typed;
        std::vector<ChipCategory> removed;
        Scope scope;
        SavedSearch saved;
    } cases[] = {
        {Location::folder(taxes), "pdfs", {}, Scope::thisMac, {"pdfs", Scope::thisMac}},
        {Location::folder(taxes),
         "pdfs",
         {},
         Scope::currentFolder,
         {"pdfs in \"~/Taxes 2024\"", Scope::home}},
        {Location::folder(outside.url()),
         "pdfs",
         {},
         Scope::currentFolder,
         {"pdfs " + outsideText, Scope::thisMac}},
        {Location::folder(Paths::home()), "pdfs", {}, Scope::currentFolder, {"pdfs", Scope::home}},
        {Location::home(), "pdfs", {}, Scope::currentFolder, {"pdfs", Scope::home}},
        // A place that was typed is more than the one that is shown.
        {Location::folder(taxes),
         "pdfs in downloads",
         {},
         Scope::currentFolder,
         {"pdfs in downloads", Scope::home}},
        // Taken away, its words are not saved.
        {Location::folder(Paths::home()),
         "roof pdfs from last week over 5 mb",
         {size},
         Scope::currentFolder,
         {"roof pdfs from last week", Scope::home}},
        {Location::folder(Paths::home()),
         "roof photos from last week",
         {date, type},
         Scope::currentFolder,
         {"roof", Scope::home}},
    };
    AppModel app;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        PaneModel pane(app, false);
        pane.navigate(c.place);
        pane.setScope(c.scope);
        pane.setSearchText(c.typed);
        for (const ChipCategory category : c.removed) pane.removeChip(category);
        const SavedSearch saved = SavedSearch::of(pane);
        EXPECT_EQ(saved.text, c.saved.text);
        EXPECT_EQ(saved.scope, c.saved.scope);
    }
    // No text names such a folder: then more is found, and nothing else is asked for.
    PaneModel pane(app, false);
    pane.navigate(Location::folder(quoted));
    pane.setScope(Scope::currentFolder);
    pane.setSearchText("pdfs");
    EXPECT_EQ(SavedSearch::of(pane).text, "pdfs");
}

}  // namespace
}  // namespace tarn
