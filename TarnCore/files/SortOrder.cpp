#include "TarnCore/files/SortOrder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <numeric>
#include <unordered_map>
#include <utility>

#include <nlohmann/json.hpp>

#include "TarnCore/base/Collation.h"
#include "TarnCore/base/JSONFields.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/base/Text.h"

namespace tarn {

namespace SortFields {
namespace {

struct Names {
    std::string_view rawValue;
    std::string_view title;
    bool startsAscending;
    std::string_view ascendingTitle;
    std::string_view descendingTitle;
};

constexpr std::array<Names, allSortFields.size()> fieldNames = {{
    {"name", "Name", true, "A to Z", "Z to A"},
    {"modified", "Date Modified", false, "Oldest First", "Newest First"},
    {"created", "Date Created", false, "Oldest First", "Newest First"},
    {"added", "Date Added", false, "Oldest First", "Newest First"},
    {"size", "Size", false, "Smallest First", "Largest First"},
    {"kind", "Kind", true, "A to Z", "Z to A"},
    {"source", "Source", true, "A to Z", "Z to A"},
    {"tags", "Tags", true, "A to Z", "Z to A"},
}};

const Names& names(SortField field) { return fieldNames[static_cast<std::size_t>(field)]; }

}  // namespace

std::string_view rawValue(SortField field) { return names(field).rawValue; }
std::string_view title(SortField field) { return names(field).title; }
bool startsAscending(SortField field) { return names(field).startsAscending; }

std::optional<SortField> fromRawValue(std::string_view raw) {
    for (const SortField field : allSortFields)
        if (rawValue(field) == raw) return field;
    return std::nullopt;
}

std::string_view directionTitle(SortField field, bool ascending) {
    return ascending ? names(field).ascendingTitle : names(field).descendingTitle;
}

}  // namespace SortFields

namespace {

/// Below this, starting the other threads costs more than they save.
constexpr std::size_t parallelFrom = 4096;

std::size_t pieceCount(std::size_t count) {
    return count < parallelFrom ? 1 : TaskPool::shared().threadCount();
}

/// The half-open range of piece `i` of `pieces` over `count` things.
std::pair<std::size_t, std::size_t> piece(std::size_t i, std::size_t pieces, std::size_t count) {
    return {count * i / pieces, count * (i + 1) / pieces};
}

/// Collation keys of many names, in a few large buffers.
class NameKeys {
public:
    template <class Name>  // std::string_view(std::size_t index)
    NameKeys(std::size_t count, const Name& name) : places_(count) {
        const std::size_t pieces = pieceCount(count);
        buffers_.resize(pieces);
        TaskPool::shared().forEach(pieces, [&](std::size_t p) {
            const auto [begin, end] = piece(p, pieces, count);
            constexpr std::size_t usualKey = 32;
            buffers_[p].reserve((end - begin) * usualKey);
            std::string key;
            for (std::size_t i = begin; i < end; ++i) {
                Collation::sortKeyInto(key, name(i));
                places_[i] = {buffers_[p].size(), key.size(), p};
                buffers_[p] += key;
            }
        });
    }
    std::string_view operator[](std::size_t i) const {
        const Place& place = places_[i];
        return std::string_view(buffers_[place.buffer]).substr(place.offset, place.length);
    }

private:
    struct Place {
        std::size_t offset;
        std::size_t length;
        std::size_t buffer;
    };
    std::vector<Place> places_;
    std::vector<std::string> buffers_;
};

/// The first eight bytes as a number that compares as they do; settles most comparisons.
std::uint64_t beginningOf(std::string_view key) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof value; ++i)
        value = value << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
    return value;
}

/// What one item is compared by. All fields but the name come down to a number: dates and sizes as
/// they are, texts as their rank among the texts that occur.
struct Row {
    double primary = 0;
    std::uint64_t nameBeginning = 0;
    std::string_view nameKey;
    std::uint32_t index = 0;
    bool isSecondGroup = false;  ///< Comes after all rows that are not, in either direction.
};

/// Absent is smaller than anything present.
constexpr double absent = -std::numeric_limits<double>::infinity();

/// The ranks of texts in the display order; texts that compare as equal share one.
class TextRanks {
public:
    void add(const std::string& text) { ranks_.try_emplace(text, 0); }

    void settle() {
        std::vector<std::pair<std::string, double*>> order;
        order.reserve(ranks_.size());
        for (auto& [text, rank] : ranks_) order.emplace_back(Collation::sortKey(text), &rank);
        std::sort(order.begin(), order.end());
        double rank = 0;
        for (std::size_t i = 0; i < order.size(); ++i) {
            if (i > 0 && order[i].first != order[i - 1].first) ++rank;
            *order[i].second = rank;
        }
    }
    double operator[](const std::string& text) const { return ranks_.at(text); }

private:
    std::unordered_map<std::string, double> ranks_;
};

double number(const std::optional<Date>& date) { return date ? date->seconds : absent; }

std::string text(const FileItem& item, SortField field, const SortOrder::Source& source) {
    switch (field) {
        case SortField::kind:
            return item.kindDescription;
        case SortField::tags:
            return Text::join(item.tags, ",");
        case SortField::source:
            return source ? source(item.url).value_or("") : "";
        default:
            return {};
    }
}

double number(const FileItem& item, SortField field, const SortOrder::FolderSize& folderSize) {
    switch (field) {
        case SortField::modified:
            return number(item.modified);
        case SortField::created:
            return number(item.created);
        case SortField::added:
            return number(item.added);
        case SortField::size: {
            auto size = item.size;
            if (!size && folderSize) size = folderSize(item.url);
            return size ? static_cast<double>(*size) : absent;
        }
        default:
            return 0;
    }
}

void setPrimaries(std::vector<Row>& rows, const std::vector<const FileItem*>& items,
                  SortField field, const SortOrder::FolderSize& folderSize,
                  const SortOrder::Source& source) {
    const bool byText =
        field == SortField::kind || field == SortField::source || field == SortField::tags;
    if (!byText) {
        for (std::size_t i = 0; i < items.size(); ++i)
            rows[i].primary = number(*items[i], field, folderSize);
        return;
    }
    std::vector<std::string> texts(items.size());
    TextRanks ranks;
    for (std::size_t i = 0; i < items.size(); ++i) {
        texts[i] = text(*items[i], field, source);
        ranks.add(texts[i]);
    }
    ranks.settle();
    for (std::size_t i = 0; i < items.size(); ++i) rows[i].primary = ranks[texts[i]];
}

/// By name, A to Z; less than, equal to or greater than 0.
int compareNames(const Row& a, const Row& b) {
    if (a.nameBeginning != b.nameBeginning) return a.nameBeginning < b.nameBeginning ? -1 : 1;
    return a.nameKey.compare(b.nameKey);
}

/// A total order, so that an unstable sort gives the one stable result.
class Before {
public:
    Before(bool ascending, bool byName) : ascending_(ascending), byName_(byName) {}

    bool operator()(const Row& a, const Row& b) const {
        if (a.isSecondGroup != b.isSecondGroup) return b.isSecondGroup;
        if (a.primary != b.primary) return (a.primary < b.primary) == ascending_;
        if (const int order = compareNames(a, b); order != 0)
            return (order < 0) == (ascending_ || !byName_);
        return a.index < b.index;
    }

private:
    bool ascending_;
    bool byName_;
};

/// The positions of the rows in their order.
std::vector<std::uint32_t> sorted(std::vector<Row> rows, const Before& before) {
    const std::size_t pieces = pieceCount(rows.size());
    const auto at = [&](std::size_t i) {
        return rows.begin() + static_cast<std::ptrdiff_t>(rows.size() * i / pieces);
    };
    TaskPool::shared().forEach(pieces, [&](std::size_t p) { std::sort(at(p), at(p + 1), before); });
    for (std::size_t done = 1; done < pieces; ++done)
        std::inplace_merge(rows.begin(), at(done), at(done + 1), before);
    std::vector<std::uint32_t> indexes;
    indexes.reserve(rows.size());
    for (const Row& row : rows) indexes.push_back(row.index);
    return indexes;
}

template <class IsFolder>
std::vector<Row> makeRows(std::size_t count, const NameKeys& keys, bool foldersFirst,
                          const IsFolder& isFolder) {
    std::vector<Row> rows(count);
    for (std::size_t i = 0; i < count; ++i) {
        rows[i].nameKey = keys[i];
        rows[i].nameBeginning = beginningOf(keys[i]);
        rows[i].index = static_cast<std::uint32_t>(i);
        rows[i].isSecondGroup = foldersFirst && !isFolder(i);
    }
    return rows;
}

template <class Value>
std::vector<Value> reordered(std::vector<Value>& values,
                             const std::vector<std::uint32_t>& indexes) {
    std::vector<Value> result;
    result.reserve(values.size());
    for (const std::uint32_t i : indexes) result.push_back(std::move(values[i]));
    return result;
}

}  // namespace

std::vector<FileItem> SortOrder::sort(std::vector<FileItem> items, const FolderSize& folderSize,
                                      const Source& source) const {
    return reordered(items, sortedIndexes(items, folderSize, source));
}

std::vector<std::uint32_t> SortOrder::sortedIndexes(const std::vector<FileItem>& items,
                                                    const FolderSize& folderSize,
                                                    const Source& source) const {
    std::vector<const FileItem*> pointers;
    pointers.reserve(items.size());
    for (const FileItem& item : items) pointers.push_back(&item);
    return sortedIndexes(pointers, folderSize, source);
}

std::vector<std::uint32_t> SortOrder::sortedIndexes(const std::vector<const FileItem*>& items,
                                                    const FolderSize& folderSize,
                                                    const Source& source) const {
    const NameKeys keys(items.size(),
                        [&](std::size_t i) { return std::string_view(items[i]->name); });
    auto rows = makeRows(items.size(), keys, foldersFirst,
                         [&](std::size_t i) { return items[i]->isDirectory; });
    if (field != SortField::name) setPrimaries(rows, items, field, folderSize, source);
    return sorted(std::move(rows), Before(ascending, field == SortField::name));
}

std::vector<std::uint32_t> SortOrder::sortedIndexes(
    const std::vector<ListedNameView>& names) const {
    const NameKeys keys(names.size(), [&](std::size_t i) { return names[i].name; });
    auto rows = makeRows(names.size(), keys, foldersFirst,
                         [&](std::size_t i) { return names[i].isDirectory; });
    return sorted(std::move(rows), Before(ascending, /*byName=*/true));
}

void SortOrder::sort(std::vector<ListedName>& names) const {
    std::vector<ListedNameView> views;
    views.reserve(names.size());
    for (const ListedName& name : names) views.push_back({name.name, name.isDirectory});
    names = reordered(names, sortedIndexes(views));
}

void to_json(JSON& json, const SortOrder& order) {
    json = JSON{{"field", SortFields::rawValue(order.field)},
                {"ascending", order.ascending},
                {"foldersFirst", order.foldersFirst}};
}

void from_json(const JSON& json, SortOrder& order) {
    SortOrder read;
    std::string field;
    JSONFields::read(json, "field", field);
    read.field = SortFields::fromRawValue(field).value_or(SortField::name);
    JSONFields::read(json, "ascending", read.ascending);
    JSONFields::read(json, "foldersFirst", read.foldersFirst);
    order = read;
}

}  // namespace tarn
