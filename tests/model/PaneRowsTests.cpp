#include <gtest/gtest.h>

#include "Tarn/model/PaneRows.h"

namespace tarn {
namespace {

FileItem item(const std::string& name, std::int64_t size = 0) {
    FileItem item;
    item.url = URL::fromPath("/folder/" + name);
    item.name = name;
    item.size = size;
    return item;
}

std::vector<std::string> names(const PaneRows& rows) {
    std::vector<std::string> result;
    for (const FileItem& one : rows.items()) result.push_back(one.name);
    return result;
}

using Names = std::vector<std::string>;

TEST(PaneRows, everyRowIsFoundByItsURL) {
    for (const int count : {0, 1, 2, 3, 1000}) {
        SCOPED_TRACE(count);
        std::vector<FileItem> items;
        for (int i = 0; i < count; ++i) items.push_back(item("file " + std::to_string(i)));
        const PaneRows rows(std::move(items));
        for (std::size_t row = 0; row < rows.size(); ++row)
            ASSERT_EQ(rows.row(rows.item(row).url), row);
        EXPECT_EQ(rows.row(URL::fromPath("/folder/none")), std::nullopt);
        EXPECT_EQ(rows.row(URL::fromPath("/other/file 0")), std::nullopt);
    }
}

TEST(PaneRows, sortedRowsOutliveThoseThatTheyCameFrom) {
    const auto parts = [] {
        return PaneRows::joined(
            {shareItems({item("b", 1), item("a", 3)}), shareItems({}), shareItems({item("c", 2)})});
    };
    EXPECT_EQ(names(*parts()), (Names{"b", "a", "c"}));
    SharedRows rows = PaneRows::sorted(parts(), {});
    EXPECT_EQ(names(*rows), (Names{"a", "b", "c"}));
    rows = PaneRows::sorted(rows, {SortField::size, false, true});
    EXPECT_EQ(names(*rows), (Names{"a", "c", "b"}));
    EXPECT_EQ(rows->row(URL::fromPath("/folder/b")), 2u);
}

TEST(PaneRows, whatWasSeenKeepsItsPlaceWhileMoreComesIn) {
    SharedRows shown = std::make_shared<const PaneRows>(std::vector{item("m"), item("x", 1)});
    const auto fresh = [] {
        return std::make_shared<const PaneRows>(
            std::vector{item("a"), item("m"), item("t"), item("x", 2)});
    };
    EXPECT_EQ(names(*PaneRows::keepingFirst(*shown, fresh(), 0)), (Names{"a", "m", "t", "x"}));
    EXPECT_EQ(names(*PaneRows::keepingFirst(*shown, fresh(), 1)), (Names{"m", "a", "t", "x"}));
    SharedRows rows = PaneRows::keepingFirst(*shown, fresh(), 99);
    shown.reset();
    EXPECT_EQ(names(*rows), (Names{"m", "x", "a", "t"}));
    EXPECT_EQ(rows->item(1).size, 2);  // As it is now.
    EXPECT_EQ(rows->row(URL::fromPath("/folder/t")), 3u);
    // What has gone since goes here, too.
    const auto fewer = std::make_shared<const PaneRows>(std::vector{item("a"), item("x")});
    EXPECT_EQ(names(*PaneRows::keepingFirst(*rows, fewer, 2)), (Names{"x", "a"}));
}

}  // namespace
}  // namespace tarn
