#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/base/JSON.h"
#include "TarnCore/search/DateFilter.h"
#include "TarnCore/search/PlaceFilter.h"
#include "TarnCore/search/SearchKind.h"
#include "TarnCore/search/SizeFilter.h"

namespace tarn {

enum class ChipCategory { type, date, size, source, place, camera, text };

inline constexpr std::array allChipCategories = {
    ChipCategory::type,  ChipCategory::date,   ChipCategory::size, ChipCategory::source,
    ChipCategory::place, ChipCategory::camera, ChipCategory::text};

namespace ChipCategories {
std::string_view rawValue(ChipCategory category);
std::optional<ChipCategory> fromRawValue(std::string_view raw);
/// Name of its icon.
std::string_view symbol(ChipCategory category);
}  // namespace ChipCategories

/// One part of a query as it is shown to the person who typed it.
struct SearchChip {
    ChipCategory category = ChipCategory::type;
    std::string label;
    bool operator==(const SearchChip&) const = default;
};

/// What a search asks for. A plain value; its fields are its stored keys.
struct SearchQuery {
    std::string raw;                      ///< The text exactly as typed.
    std::vector<std::string> terms;       ///< Words that the name must contain.
    std::vector<SearchKind> kinds;        ///< Any of them.
    std::vector<std::string> extensions;  ///< Lower case, no dot; or a kind.
    std::optional<DateFilter> date;
    std::optional<SizeFilter> size;
    std::optional<std::string> source;  ///< Website or app it came from, canonical spelling.
    std::optional<PlaceFilter> place;
    std::optional<std::string> camera;    ///< Canonical brand ("iPhone").
    std::vector<std::string> containing;  ///< Phrases in the text of the file.
    bool textInImages = false;
    bool refinedByAI = false;
    bool filesOnly = false;

    bool hasFilters() const;
    bool isEmpty() const;
    /// At most one per category, in the order of the categories.
    std::vector<SearchChip> chips() const;
    /// A copy without that category's filter.
    SearchQuery removing(ChipCategory category) const;
    bool operator==(const SearchQuery&) const = default;
};

void to_json(JSON& json, const SearchQuery& query);
/// Missing keys take their defaults. Throws tarn::Error for an unknown kind, date field or place.
void from_json(const JSON& json, SearchQuery& query);

}  // namespace tarn

template <>
struct std::hash<tarn::SearchQuery> {
    std::size_t operator()(const tarn::SearchQuery& query) const noexcept;
};
