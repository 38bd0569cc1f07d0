#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/base/Date.h"
#include "TarnCore/base/JSON.h"

namespace tarn {

/// One member of an archive. Stored with the field names as keys.
struct ArchiveEntry {
    std::string path;  ///< '/' between names, none at its ends; bytes as the archive has them.
    bool isDirectory = false;
    std::int64_t size = 0;  ///< Bytes, unpacked.
    std::optional<Date> modified{};

    std::string_view name() const;
    std::string_view parent() const;  ///< "" at the top.
    bool operator==(const ArchiveEntry&) const = default;
};

void to_json(JSON& json, const ArchiveEntry& entry);

}  // namespace tarn
