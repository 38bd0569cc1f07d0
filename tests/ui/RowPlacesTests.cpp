#include <gtest/gtest.h>

#include "Tarn/ui/pane/RowPlaces.h"

namespace tarn {
namespace {

/// Rows with groups of these sizes; a folded group is 0 rows.
SharedRows rowsOf(int count, const std::vector<int>& groupSizes) {
    std::vector<FileItem> items;
    for (int i = 0; i < count; ++i) {
        FileItem item;
        item.url = URL::fromPath("/" + std::to_string(i));
        items.push_back(item);
    }
    const auto flat = std::make_shared<const PaneRows>(std::move(items));
    if (groupSizes.empty()) return flat;
    std::vector<PaneRows::Row> rows;
    for (const FileItem& item : flat->items()) rows.push_back({&item, 0});
    std::vector<RowGroup> groups;
    std::uint32_t first = 0;
    for (const int size : groupSizes) {
        groups.push_back({"g", first, static_cast<std::uint32_t>(size), size == 0});
        first += static_cast<std::uint32_t>(size);
    }
    return std::make_shared<const PaneRows>(std::move(rows), std::move(groups),
                                            flat->owners());
}

TEST(RowPlaces, listsAreLinesBelowEachOther) {
    RowPlaces places;
    places.update(rowsOf(10, {}), {1, 20, 40, 4});
    EXPECT_EQ(places.height(), 208);
    EXPECT_EQ(places.top(3), 64);
    EXPECT_EQ(places.rowAt(64, 0), 3);
    EXPECT_EQ(places.rowAt(3, 0), -1);
    EXPECT_EQ(places.rowAt(204, 0), -1);
    EXPECT_EQ(places.nearest(-50, 0), 0);
    EXPECT_EQ(places.nearest(5000, 0), 9);
    EXPECT_FALSE(places.headingAt(10));
    const auto rows = places.rowsIn(60, 84);
    ASSERT_TRUE(rows);
    EXPECT_EQ(rows->first, 2);
    EXPECT_EQ(rows->last, 4);
    EXPECT_FALSE(places.rowsIn(300, 400));
}

TEST(RowPlaces, groupsBeginLinesBehindTheirHeadings) {
    // Rows 0 1 2 / 3, folded, 4 5: lines of three cells.
    RowPlaces places;
    places.update(rowsOf(6, {4, 0, 2}), {3, 100, 40, 10});
    const int tops[] = {50, 50, 50, 150, 330, 330};
    for (int row = 0; row < 6; ++row) {
        SCOPED_TRACE(row);
        EXPECT_EQ(places.top(row), tops[row]);
        EXPECT_EQ(places.rowAt(tops[row] + 1, places.column(row)), row);
        EXPECT_EQ(places.nearest(tops[row] + 1, places.column(row)), row);
    }
    EXPECT_EQ(places.height(), 440);
    EXPECT_EQ(places.headingTop(1), 250);
    EXPECT_EQ(places.headingAt(289), 1);
    EXPECT_EQ(places.headingAt(290), 2);
    EXPECT_EQ(places.headingAt(330), std::nullopt);
    EXPECT_EQ(places.rowAt(20, 0), -1);   // a heading
    EXPECT_EQ(places.rowAt(160, 2), -1);  // no cell there
    EXPECT_EQ(places.nearest(160, 2), 3);
    const auto rows = places.rowsIn(140, 335);
    ASSERT_TRUE(rows);
    EXPECT_EQ(rows->first, 0);
    EXPECT_EQ(rows->last, 5);
    EXPECT_FALSE(places.rowsIn(255, 320));  // headings alone
    const auto headings = places.headingsIn(255, 320);
    ASSERT_TRUE(headings);
    EXPECT_EQ(headings->first, 1);
    EXPECT_EQ(headings->last, 2);
}

TEST(RowPlaces, upAndDownKeepTheColumnAcrossGroups) {
    RowPlaces places;
    places.update(rowsOf(9, {4, 0, 5}), {3, 100, 40, 10});  // 0 1 2 / 3 | 4 5 6 / 7 8
    const struct {
        int row, above, below;
    } cases[] = {{0, 0, 3}, {1, 1, 3}, {2, 2, 3}, {3, 0, 4}, {4, 3, 7},
                 {5, 3, 8}, {6, 3, 8}, {7, 4, 7}, {8, 5, 8}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.row);
        EXPECT_EQ(places.above(c.row), c.above);
        EXPECT_EQ(places.below(c.row), c.below);
    }
}

TEST(RowPlaces, whereEverythingIsFoldedOnlyHeadingsAre) {
    RowPlaces places;
    places.update(rowsOf(0, {0, 0}), {1, 20, 40, 4});
    EXPECT_EQ(places.height(), 88);
    EXPECT_EQ(places.headingAt(50), 1);
    EXPECT_EQ(places.nearest(50, 0), -1);
    EXPECT_EQ(places.rowAt(50, 0), -1);
    EXPECT_FALSE(places.rowsIn(0, 100));
    EXPECT_TRUE(places.headingsIn(0, 100));
}

}  // namespace
}  // namespace tarn
