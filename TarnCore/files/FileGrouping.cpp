#include "TarnCore/files/FileGrouping.h"

#include <algorithm>
#include <limits>
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

/// Folders, and then the kinds.
std::size_t kindClass(const FileItem& item) {
    return item.isDirectory ? 0 : 1 + static_cast<std::size_t>(item.kind);
}

Key kindKey(std::size_t number) {
    if (number == 0) return {"Folders", 0};
    return {std::string(FileKinds::title(static_cast<FileKind>(number - 1))),
            static_cast<std::int64_t>(number)};
}

constexpr std::pair<std::string_view, std::int64_t> sizeClasses[] = {
    {"Over 1 GB", 0},      {"100 MB to 1 GB", 1}, {"1 MB to 100 MB", 2},
    {"100 KB to 1 MB", 3}, {"Under 100 KB", 4},   {"Folders", 9}};

std::size_t sizeClass(const FileItem& item) {
    if (item.isDirectory || !item.size) return 5;
    const std::int64_t size = *item.size;
    if (size >= 1'000'000'000) return 0;
    if (size >= 100'000'000) return 1;
    if (size >= 1'000'000) return 2;
    return size >= 100'000 ? 3 : 4;
}

// Calendar days from here to now, up to which a header reaches.
constexpr int week = 7;
constexpr int thirtyDays = 30;

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
    if (days < week) return {"Previous 7 Days", 2};
    if (days < thirtyDays) return {"Previous 30 Days", 3};
    const CivilDay day = calendar.day(*date);
    if (day.year != calendar.day(now).year)
        return {std::to_string(day.year), 1000 + (10000 - std::int64_t{day.year})};
    return {locale.monthName(day.month), 100 - day.month};
}

std::size_t Dealer::ofTitle(std::string_view title, std::int64_t order) {
    if (const auto known = byTitle_.find(title); known != byTitle_.end()) return known->second;
    byTitle_.emplace(title, groups_.size());
    groups_.push_back({std::string(title), order});
    return groups_.size() - 1;
}

template <class Key>
std::size_t Dealer::ofClass(std::size_t number, const Key& key) {
    if (number >= byClass_.size()) byClass_.resize(number + 1);
    if (!byClass_[number]) {
        const auto [title, order] = key();
        byClass_[number] = ofTitle(title, order);
    }
    return *byClass_[number];
}

DateInterval Dealer::sameGroup(Date date) const {
    const auto dayBefore = [this](int days) {
        return calendar_.start(calendar_.adding(CalendarUnit::day, -days, calendar_.day(now_)));
    };
    const int days = calendar_.daysBetween(date, now_);
    if (days <= 0) return {dayBefore(0), Date{std::numeric_limits<double>::infinity()}};
    if (days == 1) return {dayBefore(1), dayBefore(0)};
    if (days < week) return {dayBefore(week - 1), dayBefore(1)};
    const Date monthAgo = dayBefore(thirtyDays - 1);
    if (days < thirtyDays) return {monthAgo, dayBefore(week - 1)};
    const bool isThisYear = calendar_.day(date).year == calendar_.day(now_).year;
    const DateInterval whole =
        calendar_.interval(isThisYear ? CalendarUnit::month : CalendarUnit::year, date);
    return {whole.start, std::min(whole.end, monthAgo)};
}

std::size_t Dealer::ofDate(const std::optional<Date>& date) {
    if (!date) return ofClass(0, [this] { return dateKey({}, now_, calendar_, locale_); });
    const double at = date->seconds;
    const auto after =
        std::upper_bound(stretches_.begin(), stretches_.end(), at,
                         [](double wanted, const Stretch& one) { return wanted < one.begin; });
    if (after != stretches_.begin() && at < (after - 1)->end) return (after - 1)->group;
    const auto [title, order] = dateKey(date, now_, calendar_, locale_);
    const std::size_t group = ofTitle(title, order);
    const auto [begin, end] = sameGroup(*date);
    // Not for a date that no calendar reaches.
    if (begin.seconds <= at && at < end.seconds)
        stretches_.insert(after, {begin.seconds, end.seconds, group});
    return group;
}

std::size_t Dealer::group(const FileItem& item) {
    switch (field_) {
        case GroupField::none:
            break;
        case GroupField::kind: {
            const std::size_t number = kindClass(item);
            return ofClass(number, [number] { return kindKey(number); });
        }
        case GroupField::modified:
            return ofDate(item.modified);
        case GroupField::created:
            return ofDate(item.created);
        case GroupField::added:
            return ofDate(item.added);
        case GroupField::size: {
            const std::size_t number = sizeClass(item);
            return ofClass(number, [number] { return sizeClasses[number]; });
        }
        case GroupField::tags:
            if (item.tags.empty()) return ofTitle("No Tags", 1);
            return ofTitle(item.tags.front(), 0);
    }
    return ofTitle("", 0);
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
