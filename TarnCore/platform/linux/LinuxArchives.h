#pragma once

#include "TarnCore/platform/Archives.h"

namespace tarn {

/// Archives are read by a module around libarchive that is loaded with the first of them.
class LinuxArchives final : public Archives {
public:
    std::shared_ptr<const FileBytes> open(const URL& file, Links links) const override;
    std::unique_ptr<ArchiveStream> stream(std::shared_ptr<const FileBytes> bytes,
                                          ArchiveStream::Form form) const override;
    std::unique_ptr<TreeWriter> writer(const URL& folder) const override;
};

/// The module's only function.
using ArchiveOpening = std::unique_ptr<ArchiveStream>(std::shared_ptr<const FileBytes> bytes,
                                                      ArchiveStream::Form form);
/// It is got through one function of this type and name, which returns null when the module was
/// built for another version of the interface.
using ArchiveOpeningEntry = ArchiveOpening*(int version);
inline constexpr int archiveOpeningVersion = 1;
inline constexpr const char* archiveOpeningSymbol = "tarnArchiveOpening";

}  // namespace tarn
