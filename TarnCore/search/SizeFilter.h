#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "TarnCore/base/JSON.h"

namespace tarn {

/// A closed range of sizes in bytes, either end open.
struct SizeFilter {
    std::optional<std::int64_t> min;
    std::optional<std::int64_t> max;
    std::string label;

    /// An unknown size never matches.
    bool contains(std::optional<std::int64_t> size) const;
    bool operator==(const SizeFilter&) const = default;

    /// What the plain words mean: nothing in it, under 100 KB, under 1 MB, over 100 MB, over 1 GB.
    static SizeFilter empty();
    static SizeFilter tiny();
    static SizeFilter small();
    static SizeFilter large();
    static SizeFilter huge();
};

void to_json(JSON& json, const SizeFilter& filter);
void from_json(const JSON& json, SizeFilter& filter);

}  // namespace tarn

template <>
struct std::hash<tarn::SizeFilter> {
    std::size_t operator()(const tarn::SizeFilter& filter) const noexcept;
};
