#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TarnCore/platform/FileBytes.h"

namespace tarn {

/// A file to be read whole or at places, from a descriptor that stays the caller's. One thread at a
/// time for `bytes`, any for the rest.
class OpenFile final : public FileBytes {
public:
    /// Absent when it is no ordinary file, is larger than `limit` bytes, or cannot be looked at.
    static std::optional<OpenFile> of(int descriptor, std::int64_t limit);
    ~OpenFile() override;
    OpenFile(OpenFile&& other) noexcept;
    OpenFile& operator=(OpenFile&&) = delete;

    std::int64_t size() const override { return size_; }
    std::size_t read(std::int64_t offset, std::span<char> into) const override;
    int descriptor() const { return descriptor_; }

    /// All of it; valid as long as this object. Small files are copied, larger ones mapped, so that
    /// of a document only what is needed takes memory; when such a file is cut short meanwhile, the
    /// process dies of it. Throws std::system_error.
    std::string_view bytes();
    /// What was looked at of `bytes` needs no memory any more; it can be looked at again.
    void letGo();
    /// A copy of all of it.
    std::string copy() const;

private:
    OpenFile(int descriptor, std::int64_t size) : descriptor_(descriptor), size_(size) {}

    int descriptor_;
    std::int64_t size_;
    std::string copy_;
    void* mapped_ = nullptr;
};

}  // namespace tarn
