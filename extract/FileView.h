#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "TarnCore/base/FileDescriptor.h"

namespace tarn::extract {

/// The bytes of an open file, as long as the object lives.
///
/// A large one is mapped, so that only what is looked at comes into memory and can leave it again.
/// One that is cut off meanwhile ends the process (SIGBUS), which its parent is prepared for.
class FileView {
public:
    /// Throws std::system_error when it cannot be read.
    explicit FileView(const FileDescriptor& file);
    ~FileView();
    FileView(const FileView&) = delete;
    FileView& operator=(const FileView&) = delete;

    std::string_view bytes() const { return bytes_; }

private:
    std::string read_;
    void* mapped_ = nullptr;
    std::string_view bytes_;
};

}  // namespace tarn::extract
