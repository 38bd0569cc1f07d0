#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/files/FileItem.h"

namespace tarn {

enum class GroupField { none, kind, modified, created, added, size, tags };

inline constexpr std::array allGroupFields = {
    GroupField::none,  GroupField::kind, GroupField::modified, GroupField::created,
    GroupField::added, GroupField::size, GroupField::tags};

/// The items under one header.
struct FileGroup {
    std::string title;
    std::vector<FileItem> items;
    bool operator==(const FileGroup&) const = default;
};

void to_json(JSON& json, const FileGroup& group);

namespace FileGrouping {
std::string_view rawValue(GroupField field);
std::optional<GroupField> fromRawValue(std::string_view raw);
std::string_view title(GroupField field);

/// `items` are already sorted and keep their order inside the groups. `none` gives one group
/// without a title.
std::vector<FileGroup> groups(std::vector<FileItem> items, GroupField field, Date now,
                              const Calendar& calendar, const Locale& locale);

/// Deals items out to groups one by one, for who keeps the items elsewhere. Titles are made once
/// for a group, and the calendar is asked once for a stretch of dates, not for every item.
class Dealer {
public:
    Dealer(GroupField field, Date now, const Calendar& calendar, const Locale& locale)
        : field_(field), now_(now), calendar_(calendar), locale_(locale) {}
    /// The number of the item's group; they count from 0 in the order in which they turn up.
    std::size_t group(const FileItem& item);
    const std::string& title(std::size_t group) const { return groups_[group].title; }
    /// The groups that there are, in the order in which they are shown.
    std::vector<std::size_t> order() const;

private:
    struct Group {
        std::string title;
        std::int64_t order;
    };
    /// The dates from `begin` until before `end` belong to one group.
    struct Stretch {
        double begin;
        double end;
        std::size_t group;
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view title) const noexcept {
            return std::hash<std::string_view>{}(title);
        }
    };

    std::size_t ofTitle(std::string_view title, std::int64_t order);
    template <class Key>  // std::pair<std::string, std::int64_t>()
    std::size_t ofClass(std::size_t number, const Key& key);
    std::size_t ofDate(const std::optional<Date>& date);
    DateInterval sameGroup(Date date) const;

    const GroupField field_;
    const Date now_;
    const Calendar calendar_;
    const Locale locale_;
    std::vector<Group> groups_;
    std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>> byTitle_;
    std::vector<std::optional<std::size_t>> byClass_;  ///< Of kinds and sizes, which are numbered.
    std::vector<Stretch> stretches_;                   ///< In their order.
};

/// The header and its place for a date: "Today", "Yesterday", "Previous 7 Days", "Previous 30
/// Days", a month of this year, an earlier year, and last "No Date".
std::pair<std::string, std::int64_t> dateKey(std::optional<Date> date, Date now,
                                             const Calendar& calendar, const Locale& locale);
}  // namespace FileGrouping

}  // namespace tarn
