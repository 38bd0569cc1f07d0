#include "TarnCore/files/FileGrouping.h"

#include <algorithm>
#include <numeric>
#include <tuple>

#include <nlohmann/json.hpp>

#include "TarnCore/files/FileKind.h"

namespace tarn {

void to_json(JSON& json, const FileGroup& group) {
    json = JSON{{"title", group.title}, {"items", group.items}};
}

namespace FileGrouping {
namespace {

/// A header and its place among the others.
using Key = std::pair<std::string, std::int64_t>;

struct Names {
    std::string_view rawValue;
    std::string_view title;
};

constexpr std::array<Names, allGroupFields.size()> fieldNames = {{
    {"none", "None"},
    {"kind", "Kind"},
    {"modified", "Date Modified"},
    {"created", "Date Created"},
    {"added", "Date Added"},
    {"size", "Size"},
    {"tags", "Tags"},
}};

const Names& names(GroupField field) { return fieldNames[static_cast<std::size_t>(field)]; }

constexpr std::int64_t lastOrder = 1'000'000'000'000;

Key kindKey(const FileItem& item) {
    if (item.isDirectory) return {"Folders", 0};
    return {std::string(FileKinds::title(item.kind)), 1 + static_cast<std::int64_t>(item.kind)};
}

Key sizeKey(const FileItem& item) {
    if (item.isDirectory || !item.size) return {"Folders", 9};
    const std::int64_t size = *item.size;
    if (size >= 1'000'000'000) return {"Over 1 GB", 0};
    if (size >= 100'000'000) return {"100 MB to 1 GB", 1};
    if (size >= 1'000'000) return {"1 MB to 100 MB", 2};
    if (size >= 100'000) return {"100 KB to 1 MB", 3};
    return {"Under 100 KB", 4};
}

Key tagsKey(const FileItem& item) {
    if (item.tags.empty()) return {"No Tags", 1};
    return {item.tags.front(), 0};
}

}  // namespace

std::string_view rawValue(GroupField field) { return names(field).rawValue; }
std::string_view title(GroupField field) { return names(field).title; }

std::optional<GroupField> fromRawValue(std::string_view raw) {
    for (const GroupField field : allGroupFields)
        if (rawValue(field) == raw) return field;
    return std::nullopt;
}

std::pair<std::string, std::int64_t> dateKey(std::optional<Date> date, Date now,
                                             const Calendar& calendar, const Locale& locale) {
    if (!date) return {"No Date", lastOrder};
    const int days = calendar.daysBetween(*date, now);
    if (days <= 0) return {"Today", 0};
    if (days == 1) return {"Yesterday", 1};
    if (days < 7) return {"Previous 7 Days", 2};
    if (days < 30) return {"Previous 30 Days", 3};
    const CivilDay day = calendar.day(*date);
    if (day.year != calendar.day(now).year)
        return {std::to_string(day.year), 1000 + (10000 - std::int64_t{day.year})};
    return {locale.monthName(day.month), 100 - day.month};
}

std::size_t Dealer::group(const FileItem& item) {
    const auto keyOf = [&]() -> Key {
        switch (field_) {
            case GroupField::none:
                return {"", 0};
            case GroupField::kind:
                return kindKey(item);
            case GroupField::modified:
                return dateKey(item.modified, now_, calendar_, locale_);
            case GroupField::created:
                return dateKey(item.created, now_, calendar_, locale_);
            case GroupField::added:
                return dateKey(item.added, now_, calendar_, locale_);
            case GroupField::size:
                return sizeKey(item);
            case GroupField::tags:
                return tagsKey(item);
        }
        return {"", 0};
    };
    auto [title, order] = keyOf();
    const auto [place, isNew] = byTitle_.try_emplace(title, groups_.size());
    if (isNew) groups_.push_back({std::move(title), order});
    return place->second;
}

std::vector<std::size_t> Dealer::order() const {
    std::vector<std::size_t> all(groups_.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    std::sort(all.begin(), all.end(), [this](std::size_t a, std::size_t b) {
        return std::tie(groups_[a].order, groups_[a].title) <
               std::tie(groups_[b].order, groups_[b].title);
    });
    return all;
}

std::vector<FileGroup> groups(std::vector<FileItem> items, GroupField field, Date now,
                              const Calendar& calendar, const Locale& locale) {
    Dealer dealer(field, now, calendar, locale);
    std::vector<std::vector<FileItem>> dealt;
    for (FileItem& item : items) {
        const std::size_t group = dealer.group(item);
        if (group == dealt.size()) dealt.emplace_back();
        dealt[group].push_back(std::move(item));
    }
    std::vector<FileGroup> result;
    result.reserve(dealt.size());
    for (const std::size_t group : dealer.order())
        result.push_back({dealer.title(group), std::move(dealt[group])});
    return result;
}

}  // namespace FileGrouping
}  // namespace tarn
