#include <algorithm>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "TarnCore/base/Collation.h"
#include "TarnCore/files/SortOrder.h"

namespace tarn {
namespace {

using testing::ElementsAre;

FileItem named(const std::string& name) {
    FileItem item;
    item.url = URL::fromPath("/list/" + name);
    item.name = name;
    item.size = 0;
    return item;
}

FileItem folder(const std::string& name) {
    FileItem item = named(name);
    item.isDirectory = true;
    item.size = std::nullopt;
    return item;
}

template <class Change>
FileItem with(FileItem item, const Change& change) {
    change(item);
    return item;
}

FileItem dated(const std::string& name, std::optional<double> modified) {
    return with(named(name), [&](FileItem& item) {
        if (modified) item.modified = Date{*modified};
    });
}

FileItem sized(const std::string& name, std::int64_t size) {
    return with(named(name), [&](FileItem& item) { item.size = size; });
}

std::vector<std::string> order(const SortOrder& sort, std::vector<FileItem> items,
                               const SortOrder::FolderSize& folderSize = {},
                               const SortOrder::Source& source = {}) {
    std::vector<std::string> names;
    for (const FileItem& item : sort.sort(std::move(items), folderSize, source))
        names.push_back(item.name);
    return names;
}

TEST(SortOrder, namesReadAsPeopleReadThem) {
    const std::vector<FileItem> items = {named("File 10"), named("éclair"),  named("file 2"),
                                         named("Zebra"),   named("eclipse"), folder("Work"),
                                         folder("apps")};
    EXPECT_THAT(order({}, items),
                ElementsAre("apps", "Work", "éclair", "eclipse", "file 2", "File 10", "Zebra"));
    EXPECT_THAT(order({.foldersFirst = false}, items),
                ElementsAre("apps", "éclair", "eclipse", "file 2", "File 10", "Work", "Zebra"));
    // Folders stay in front, and both runs are turned round.
    EXPECT_THAT(order({.ascending = false}, items),
                ElementsAre("Work", "apps", "Zebra", "File 10", "file 2", "eclipse", "éclair"));
}

TEST(SortOrder, namesThatReadTheSameKeepTheirOrderInBothDirections) {
    const std::vector<FileItem> items = {named("readme"), named("README"), named("ReadMe")};
    EXPECT_THAT(order({}, items), ElementsAre("readme", "README", "ReadMe"));
    EXPECT_THAT(order({.ascending = false}, items), ElementsAre("readme", "README", "ReadMe"));
}

TEST(SortOrder, equalValuesFollowTheirNamesInBothDirections) {
    const std::vector<FileItem> dates = {dated("c", 5), dated("b", 5), dated("none", {}),
                                         dated("a", 9)};
    EXPECT_THAT(order({SortField::modified, true}, dates), ElementsAre("none", "b", "c", "a"));
    EXPECT_THAT(order({SortField::modified, false}, dates), ElementsAre("a", "b", "c", "none"));
    const std::vector<FileItem> sizes = {sized("b", 1), sized("a", 1), sized("c", 2)};
    EXPECT_THAT(order({SortField::size, false}, sizes), ElementsAre("c", "a", "b"));
}

TEST(SortOrder, foldersTakeTheirSizesFromTheLookup) {
    const std::vector<FileItem> items = {folder("unknown"), folder("large"), sized("small", 10),
                                         sized("empty", 0)};
    const auto folderSize = [](const URL& url) -> std::optional<std::int64_t> {
        if (url.name() == "large") return 1000;
        return std::nullopt;
    };
    const SortOrder bySize{SortField::size, true, /*foldersFirst=*/false};
    EXPECT_THAT(order(bySize, items, folderSize),
                ElementsAre("unknown", "empty", "small", "large"));
    EXPECT_THAT(order(bySize, items), ElementsAre("large", "unknown", "empty", "small"));
}

TEST(SortOrder, textFieldsCompareAsNamesDo) {
    const auto tagged = [](const char* name, std::vector<std::string> tags) {
        return with(named(name), [&](FileItem& item) { item.tags = std::move(tags); });
    };
    EXPECT_THAT(order({SortField::tags, true},
                      {tagged("1", {"Work", "a"}), tagged("2", {"work"}), tagged("3", {}),
                       tagged("4", {"Tag 10"}), tagged("5", {"tag 9"})}),
                ElementsAre("3", "5", "4", "2", "1"));

    const auto ofKind = [](const char* name, const char* kind) {
        return with(named(name), [&](FileItem& item) { item.kindDescription = kind; });
    };
    EXPECT_THAT(
        order({SortField::kind, false}, {ofKind("b", "PDF document"), ofKind("a", "pdf Document"),
                                         ofKind("c", "PNG image"), ofKind("d", "Äpfel")}),
        ElementsAre("c", "a", "b", "d"));

    const auto source = [](const URL& url) -> std::optional<std::string> {
        if (url.name() == "mail") return "Gmail";
        if (url.name() == "chat") return "slack";
        return std::nullopt;
    };
    EXPECT_THAT(
        order({SortField::source, true}, {named("chat"), named("own"), named("mail")}, {}, source),
        ElementsAre("own", "mail", "chat"));
}

/// The rules word for word, one comparison at a time.
bool comesBefore(const FileItem& a, const FileItem& b, const SortOrder& order) {
    if (order.foldersFirst && a.isDirectory != b.isDirectory) return a.isDirectory;
    int result = 0;
    if (order.field == SortField::name) result = Collation::compare(a.name, b.name);
    if (order.field == SortField::size) result = a.size < b.size ? -1 : (b.size < a.size ? 1 : 0);
    if (order.field == SortField::modified)
        result = a.modified < b.modified ? -1 : (b.modified < a.modified ? 1 : 0);
    if (result != 0) return (result < 0) == order.ascending;
    return Collation::compare(a.name, b.name) < 0;
}

TEST(SortOrder, largeListsAreOrderedLikeSmallOnes) {
    std::mt19937 random(1);
    std::vector<FileItem> items;
    for (int i = 0; i < 9000; ++i) {
        FileItem item = named("File " + std::to_string(random() % 3000) +
                              (random() % 2 ? " é" : " E") + (random() % 9 ? "" : "\xff"));
        item.isDirectory = random() % 4 == 0;
        if (!item.isDirectory) item.size = random() % 50;
        if (item.isDirectory) item.size.reset();
        if (random() % 3) item.modified = Date{static_cast<double>(random() % 100)};
        items.push_back(std::move(item));
    }
    for (const SortField field : {SortField::name, SortField::size, SortField::modified})
        for (const bool ascending : {true, false}) {
            SCOPED_TRACE(SortFields::rawValue(field));
            const SortOrder sort{field, ascending, true};
            std::vector<FileItem> expected = items;
            std::stable_sort(
                expected.begin(), expected.end(),
                [&](const FileItem& a, const FileItem& b) { return comesBefore(a, b, sort); });
            EXPECT_TRUE(sort.sort(items) == expected);
        }
}

TEST(SortOrder, bareNamesAreOrderedLikeItems) {
    std::vector<ListedName> names = {{"b 10", false}, {"B 9", false}, {"z", true}, {"A", true}};
    SortOrder{}.sort(names);
    EXPECT_THAT(names, ElementsAre(ListedName{"A", true}, ListedName{"z", true},
                                   ListedName{"B 9", false}, ListedName{"b 10", false}));
    SortOrder{.ascending = false, .foldersFirst = false}.sort(names);
    EXPECT_THAT(names, ElementsAre(ListedName{"z", true}, ListedName{"b 10", false},
                                   ListedName{"B 9", false}, ListedName{"A", true}));
}

TEST(SortOrder, storedFormReadsBackAndUnknownFieldsMeanName) {
    const SortOrder order{SortField::size, false, false};
    EXPECT_EQ(JSON(order).dump(), R"({"ascending":false,"field":"size","foldersFirst":false})");
    EXPECT_EQ(JSON(order).get<SortOrder>(), order);
    EXPECT_EQ(JSON::parse(R"({"field":"mood"})").get<SortOrder>(), SortOrder{});
}

}  // namespace
}  // namespace tarn
