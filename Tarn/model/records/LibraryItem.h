#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/search/SearchQuery.h"

namespace tarn {

/// A view of the library: a fixed query over the user's files.
enum class LibraryItem { recents, images, videos, music, documents, archives, apps };

inline constexpr std::array allLibraryItems = {
    LibraryItem::recents,   LibraryItem::images,   LibraryItem::videos, LibraryItem::music,
    LibraryItem::documents, LibraryItem::archives, LibraryItem::apps};

namespace LibraryItems {
/// "recents", "images", …: the stored form.
std::string_view rawValue(LibraryItem item);
std::optional<LibraryItem> fromRawValue(std::string_view raw);
std::string_view title(LibraryItem item);
/// Name of its icon.
std::string_view symbol(LibraryItem item);
/// What it shows. `now` and `calendar` decide where “Last 30 days” begins.
SearchQuery query(LibraryItem item, Date now, const Calendar& calendar);
}  // namespace LibraryItems

}  // namespace tarn
