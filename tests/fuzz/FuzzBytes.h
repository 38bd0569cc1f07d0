#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "TarnCore/platform/FileBytes.h"

namespace tarn {

/// A fuzzer's input as a file.
class FuzzBytes final : public FileBytes {
public:
    FuzzBytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    std::int64_t size() const override { return static_cast<std::int64_t>(size_); }
    std::size_t read(std::int64_t offset, std::span<char> into) const override {
        if (offset < 0 || offset >= size()) return 0;
        const auto from = static_cast<std::size_t>(offset);
        const std::size_t count = std::min(into.size(), size_ - from);
        std::copy_n(data_ + from, count, into.data());
        return count;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
};

}  // namespace tarn
