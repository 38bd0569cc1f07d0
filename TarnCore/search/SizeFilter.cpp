#include "TarnCore/search/SizeFilter.h"

#include "TarnCore/base/JSONFields.h"
#include "TarnCore/search/HashCombine.h"

namespace tarn {

bool SizeFilter::contains(std::optional<std::int64_t> size) const {
    return size && (!min || *size >= *min) && (!max || *size <= *max);
}

SizeFilter SizeFilter::empty() { return {0, 0, "Empty"}; }
SizeFilter SizeFilter::tiny() { return {std::nullopt, 100'000, "Tiny (under 100 KB)"}; }
SizeFilter SizeFilter::small() { return {std::nullopt, 1'000'000, "Small (under 1 MB)"}; }
SizeFilter SizeFilter::large() { return {100'000'000, std::nullopt, "Large (over 100 MB)"}; }
SizeFilter SizeFilter::huge() { return {1'000'000'000, std::nullopt, "Huge (over 1 GB)"}; }

void to_json(JSON& json, const SizeFilter& filter) {
    json = JSON::object();
    JSONFields::write(json, "min", filter.min);
    JSONFields::write(json, "max", filter.max);
    json["label"] = filter.label;
}

void from_json(const JSON& json, SizeFilter& filter) {
    filter = {};
    JSONFields::read(json, "min", filter.min);
    JSONFields::read(json, "max", filter.max);
    JSONFields::read(json, "label", filter.label);
}

}  // namespace tarn

std::size_t std::hash<tarn::SizeFilter>::operator()(const tarn::SizeFilter& filter) const noexcept {
    return tarn::hashOf(filter.min, filter.max, filter.label);
}
