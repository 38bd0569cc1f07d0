#pragma once

#include <memory>

#include "TarnCore/base/URL.h"
#include "TarnCore/platform/ArchiveStream.h"
#include "TarnCore/platform/FileBytes.h"
#include "TarnCore/platform/FileSystem.h"
#include "TarnCore/platform/TreeWriter.h"

namespace tarn {

/// What reading and making archives needs of the machine. Callable from any thread. Failures throw
/// std::system_error.
class Archives {
public:
    virtual ~Archives() = default;

    /// A plain file; EISDIR and EINVAL for anything else, ELOOP for a link that is to be kept.
    virtual std::shared_ptr<const FileBytes> open(const URL& file, Links links) const = 0;

    /// Null where no library for archives is installed.
    virtual std::unique_ptr<ArchiveStream> stream(std::shared_ptr<const FileBytes> bytes,
                                                  ArchiveStream::Form form) const = 0;

    /// For the inside of an existing folder.
    virtual std::unique_ptr<TreeWriter> writer(const URL& folder) const = 0;
};

}  // namespace tarn
