#include "TarnCore/search/SearchQuery.h"

#include <algorithm>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/JSONFields.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/search/HashCombine.h"

namespace tarn {
namespace {

struct CategoryNames {
    std::string_view rawValue;
    std::string_view symbol;
};

/// In the order of the enumeration.
constexpr std::array<CategoryNames, allChipCategories.size()> categoryNames = {{
    {"type", "doc"},
    {"date", "calendar"},
    {"size", "scalemass"},
    {"source", "arrow.down.circle"},
    {"place", "folder"},
    {"camera", "camera"},
    {"text", "text.quote"},
}};

std::string typeLabel(const SearchQuery& query) {
    std::vector<std::string> parts;
    for (const SearchKind kind : query.kinds) parts.emplace_back(SearchKinds::label(kind));
    for (const std::string& extension : query.extensions) parts.push_back("." + extension);
    return Text::join(parts, ", ");
}

std::string textLabel(const SearchQuery& query) {
    std::vector<std::string> parts;
    for (const std::string& phrase : query.containing) parts.push_back(Text::quoted(phrase));
    if (query.textInImages) parts.emplace_back("text in images");
    return (query.containing.empty() ? "" : "Containing ") + Text::join(parts, ", ");
}

}  // namespace

std::string_view ChipCategories::rawValue(ChipCategory category) {
    return categoryNames[static_cast<std::size_t>(category)].rawValue;
}

std::string_view ChipCategories::symbol(ChipCategory category) {
    return categoryNames[static_cast<std::size_t>(category)].symbol;
}

std::optional<ChipCategory> ChipCategories::fromRawValue(std::string_view raw) {
    for (const ChipCategory category : allChipCategories) {
        if (rawValue(category) == raw) return category;
    }
    return std::nullopt;
}

bool SearchQuery::hasFilters() const {
    return !kinds.empty() || !extensions.empty() || date || size || source || place || camera ||
           !containing.empty() || textInImages;
}

bool SearchQuery::isEmpty() const { return terms.empty() && !hasFilters(); }

std::vector<SearchChip> SearchQuery::chips() const {
    std::vector<SearchChip> chips;
    if (!kinds.empty() || !extensions.empty()) {
        chips.push_back({ChipCategory::type, typeLabel(*this)});
    }
    if (date) chips.push_back({ChipCategory::date, date->chipLabel()});
    if (size) chips.push_back({ChipCategory::size, size->label});
    if (source) chips.push_back({ChipCategory::source, "From " + *source});
    if (place) chips.push_back({ChipCategory::place, place->label()});
    if (camera) chips.push_back({ChipCategory::camera, *camera});
    if (!containing.empty() || textInImages) {
        chips.push_back({ChipCategory::text, textLabel(*this)});
    }
    return chips;
}

SearchQuery SearchQuery::removing(ChipCategory category) const {
    SearchQuery query = *this;
    switch (category) {
        case ChipCategory::type:
            query.kinds.clear();
            query.extensions.clear();
            break;
        case ChipCategory::date:
            query.date.reset();
            break;
        case ChipCategory::size:
            query.size.reset();
            break;
        case ChipCategory::source:
            query.source.reset();
            break;
        case ChipCategory::place:
            query.place.reset();
            break;
        case ChipCategory::camera:
            query.camera.reset();
            break;
        case ChipCategory::text:
            query.containing.clear();
            query.textInImages = false;
            break;
    }
    return query;
}

void to_json(JSON& json, const SearchQuery& query) {
    json = JSON::object();
    json["raw"] = query.raw;
    json["terms"] = query.terms;
    json["kinds"] = JSON::array();
    for (const SearchKind kind : query.kinds) json["kinds"].push_back(SearchKinds::rawValue(kind));
    json["extensions"] = query.extensions;
    JSONFields::write(json, "date", query.date);
    JSONFields::write(json, "size", query.size);
    JSONFields::write(json, "source", query.source);
    JSONFields::write(json, "place", query.place);
    JSONFields::write(json, "camera", query.camera);
    json["containing"] = query.containing;
    json["textInImages"] = query.textInImages;
    json["refinedByAI"] = query.refinedByAI;
    json["filesOnly"] = query.filesOnly;
}

void from_json(const JSON& json, SearchQuery& query) {
    query = {};
    JSONFields::read(json, "raw", query.raw);
    JSONFields::read(json, "terms", query.terms);
    std::vector<std::string> kinds;
    JSONFields::read(json, "kinds", kinds);
    for (const std::string& raw : kinds) {
        const auto kind = SearchKinds::fromRawValue(raw);
        if (!kind) throw Error("“" + raw + "” is not a kind of file.");
        query.kinds.push_back(*kind);
    }
    JSONFields::read(json, "extensions", query.extensions);
    JSONFields::read(json, "date", query.date);
    JSONFields::read(json, "size", query.size);
    JSONFields::read(json, "source", query.source);
    JSONFields::read(json, "place", query.place);
    JSONFields::read(json, "camera", query.camera);
    JSONFields::read(json, "containing", query.containing);
    JSONFields::read(json, "textInImages", query.textInImages);
    JSONFields::read(json, "refinedByAI", query.refinedByAI);
    JSONFields::read(json, "filesOnly", query.filesOnly);
}

}  // namespace tarn

std::size_t std::hash<tarn::SearchQuery>::operator()(
    const tarn::SearchQuery& query) const noexcept {
    return tarn::hashOf(query.raw, query.terms, query.kinds, query.extensions, query.date,
                        query.size, query.source, query.place, query.camera, query.containing,
                        query.textInImages, query.refinedByAI, query.filesOnly);
}
