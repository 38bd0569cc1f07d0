#include "Tarn/model/records/LibraryItem.h"

namespace tarn {
namespace {

struct Names {
    std::string_view rawValue;
    std::string_view title;
    std::string_view symbol;
};

/// In the order of the enumeration.
constexpr std::array<Names, allLibraryItems.size()> names = {{
    {"recents", "Recents", "clock"},
    {"images", "Images", "photo"},
    {"videos", "Videos", "film"},
    {"music", "Music", "music.note"},
    {"documents", "Documents", "doc.text"},
    {"archives", "Archives", "archivebox"},
    {"apps", "Apps", "app"},
}};

const Names& namesOf(LibraryItem item) { return names[static_cast<std::size_t>(item)]; }

constexpr int recentDays = 30;

}  // namespace

std::string_view LibraryItems::rawValue(LibraryItem item) { return namesOf(item).rawValue; }
std::string_view LibraryItems::title(LibraryItem item) { return namesOf(item).title; }
std::string_view LibraryItems::symbol(LibraryItem item) { return namesOf(item).symbol; }

std::optional<LibraryItem> LibraryItems::fromRawValue(std::string_view raw) {
    for (const LibraryItem item : allLibraryItems) {
        if (rawValue(item) == raw) return item;
    }
    return std::nullopt;
}

SearchQuery LibraryItems::query(LibraryItem item, Date now, const Calendar& calendar) {
    SearchQuery query;
    switch (item) {
        case LibraryItem::recents:
            query.filesOnly = true;
            query.date = DateFilter{
                calendar.adding(CalendarUnit::day, -recentDays, calendar.startOfDay(now)),
                std::nullopt, DateField::opened, "Last 30 days"};
            break;
        case LibraryItem::images:
            query.kinds = {SearchKind::image};
            break;
        case LibraryItem::videos:
            query.kinds = {SearchKind::video};
            break;
        case LibraryItem::music:
            query.kinds = {SearchKind::audio};
            break;
        case LibraryItem::documents:
            query.kinds = {SearchKind::document, SearchKind::spreadsheet, SearchKind::presentation};
            break;
        case LibraryItem::archives:
            query.kinds = {SearchKind::archive, SearchKind::installer};
            break;
        case LibraryItem::apps:
            query.kinds = {SearchKind::app};
            break;
    }
    return query;
}

}  // namespace tarn
