#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/JSON.h"

namespace tarn {

/// `added` is when the item arrived in its folder, `opened` when it was last used.
enum class DateField { modified, created, added, opened };

namespace DateFields {
std::string_view rawValue(DateField field);
std::optional<DateField> fromRawValue(std::string_view raw);
}  // namespace DateFields

/// A half-open range of one date: `start` inclusive, `end` exclusive, either open.
struct DateFilter {
    std::optional<Date> start;
    std::optional<Date> end;
    DateField field = DateField::modified;
    std::string label;  ///< "Last week", "March 2024": a phrase for people.

    /// An absent date never matches.
    bool contains(std::optional<Date> date) const;
    /// What its chip says: the label, after a verb for fields other than `modified` ("Created last
    /// week", "Opened March 2024").
    std::string chipLabel() const;
    bool operator==(const DateFilter&) const = default;
};

void to_json(JSON& json, const DateFilter& filter);
/// Missing keys take their defaults. Throws tarn::Error for an unknown field.
void from_json(const JSON& json, DateFilter& filter);

}  // namespace tarn

template <>
struct std::hash<tarn::DateFilter> {
    std::size_t operator()(const tarn::DateFilter& filter) const noexcept;
};
