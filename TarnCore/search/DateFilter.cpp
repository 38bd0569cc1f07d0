#include "TarnCore/search/DateFilter.h"

#include <algorithm>
#include <array>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/JSONFields.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/search/HashCombine.h"

namespace tarn {
namespace {

constexpr std::array<std::string_view, 4> fieldNames = {"modified", "created", "added", "opened"};

std::string_view verb(DateField field) {
    switch (field) {
        case DateField::modified:
            return {};
        case DateField::created:
            return "Created";
        case DateField::added:
            return "Downloaded";
        case DateField::opened:
            return "Opened";
    }
    return {};
}

/// Labels that begin with one of these read as a part of the sentence that the verb opens.
bool followsVerbInLowerCase(std::string_view label) {
    constexpr std::array<std::string_view, 10> words = {"Last",     "This",  "Since",     "Before",
                                                        "After",    "Today", "Yesterday", "Older",
                                                        "Tomorrow", "Recent"};
    const std::string_view first = label.substr(0, label.find(' '));
    return std::find(words.begin(), words.end(), first) != words.end();
}

}  // namespace

std::string_view DateFields::rawValue(DateField field) {
    return fieldNames[static_cast<std::size_t>(field)];
}

std::optional<DateField> DateFields::fromRawValue(std::string_view raw) {
    const auto found = std::find(fieldNames.begin(), fieldNames.end(), raw);
    if (found == fieldNames.end()) return std::nullopt;
    return static_cast<DateField>(found - fieldNames.begin());
}

bool DateFilter::contains(std::optional<Date> date) const {
    return date && (!start || *date >= *start) && (!end || *date < *end);
}

std::string DateFilter::chipLabel() const {
    if (field == DateField::modified) return label;
    std::string chip(verb(field));
    chip += ' ';
    chip += followsVerbInLowerCase(label) ? Text::withFirstLowered(label) : label;
    return chip;
}

void to_json(JSON& json, const DateFilter& filter) {
    json = JSON::object();
    JSONFields::write(json, "start", filter.start);
    JSONFields::write(json, "end", filter.end);
    json["field"] = DateFields::rawValue(filter.field);
    json["label"] = filter.label;
}

void from_json(const JSON& json, DateFilter& filter) {
    filter = {};
    JSONFields::read(json, "start", filter.start);
    JSONFields::read(json, "end", filter.end);
    JSONFields::read(json, "label", filter.label);
    std::optional<std::string> field;
    JSONFields::read(json, "field", field);
    if (!field) return;
    const auto known = DateFields::fromRawValue(*field);
    if (!known) throw Error("“" + *field + "” is not a date of a file.");
    filter.field = *known;
}

}  // namespace tarn

std::size_t std::hash<tarn::DateFilter>::operator()(const tarn::DateFilter& filter) const noexcept {
    return tarn::hashOf(filter.start, filter.end, filter.field, filter.label);
}
