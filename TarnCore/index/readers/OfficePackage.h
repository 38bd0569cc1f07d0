#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TarnCore/files/ZipDirectory.h"
#include "TarnCore/platform/FileBytes.h"

namespace tarn {

/// The zip file that an office document is. Members are unpacked piece by piece, and all of them
/// together to no more than a bound. One thread at a time.
class OfficePackage {
public:
    /// Bytes. More is a bomb: the text that is kept fits into a tenth of it.
    static constexpr std::uint64_t mostUnpacked = 256'000'000;

    /// `bytes` must outlive this object. Absent when they are no zip file, a damaged one, or one
    /// whose members overlap, as those of no honest document do.
    static std::optional<OfficePackage> open(const FileBytes& bytes,
                                             std::uint64_t most = mostUnpacked);

    bool has(std::string_view name) const { return find(name) != nullptr; }
    /// The names that are `before`, digits or nothing, and `after`, by their number.
    std::vector<std::string> numbered(std::string_view before, std::string_view after) const;

    /// Hands on what the member unpacks to, until `sink` returns false. Returns false when there is
    /// no such member, or it is encrypted, damaged, packed in a rare way, or unpacks to too much.
    bool read(std::string_view name, const std::function<bool(std::string_view)>& sink);

private:
    OfficePackage(const FileBytes& bytes, ZipDirectory directory, std::uint64_t most)
        : bytes_(&bytes), directory_(std::move(directory)), left_(most) {}
    const ZipMember* find(std::string_view name) const;

    const FileBytes* bytes_;
    ZipDirectory directory_;
    std::uint64_t left_;  ///< Bytes that may still be unpacked.
};

}  // namespace tarn
