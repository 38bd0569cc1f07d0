#include "TarnCore/search/SizeFilter.h"

#include <limits>

#include "TarnCore/base/JSONFields.h"
#include "TarnCore/search/HashCombine.h"

namespace tarn {
namespace {

/// Any JSON number; those that are no 64-bit number of bytes become the nearest one that is.
std::optional<std::int64_t> readBytes(const JSON& json, const char* key) {
    const JSON* value = JSONFields::member(json, key);
    if (value == nullptr) return std::nullopt;
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    if (value->is_number_unsigned()) {
        const auto bytes = value->get<std::uint64_t>();
        return bytes > static_cast<std::uint64_t>(most) ? most : static_cast<std::int64_t>(bytes);
    }
    if (value->is_number_float()) {
        const auto bytes = value->get<double>();
        if (bytes >= 0x1p63) return most;
        return bytes > -0x1p63 ? static_cast<std::int64_t>(bytes) : least;
    }
    return value->get<std::int64_t>();
}

}  // namespace

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
    filter.min = readBytes(json, "min");
    filter.max = readBytes(json, "max");
    JSONFields::read(json, "label", filter.label);
}

}  // namespace tarn

std::size_t std::hash<tarn::SizeFilter>::operator()(const tarn::SizeFilter& filter) const noexcept {
    return tarn::hashOf(filter.min, filter.max, filter.label);
}
