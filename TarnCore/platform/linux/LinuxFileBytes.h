#pragma once

#include "TarnCore/base/FileDescriptor.h"
#include "TarnCore/platform/FileBytes.h"
#include "TarnCore/platform/FileSystem.h"

namespace tarn {

/// The bytes of a file on a disk, opened without a trace in its access time.
class LinuxFileBytes final : public FileBytes {
public:
    /// A plain file; EISDIR and EINVAL for anything else, ELOOP for a link that is to be kept.
    /// Waits for nothing that the file may be. Throws std::system_error.
    explicit LinuxFileBytes(const char* path, Links links = Links::follow);

    std::int64_t size() const override { return size_; }
    std::size_t read(std::int64_t offset, std::span<char> into) const override;
    /// For libraries that want one; stays with this object.
    int descriptor() const { return fd_.get(); }

private:
    FileDescriptor fd_;
    std::int64_t size_ = 0;
};

}  // namespace tarn
