#pragma once

#include <algorithm>
#include <string>
#include <utility>

#include "TarnCore/platform/FileBytes.h"

namespace tarn::test {

/// A file that is a string.
class MemoryBytes final : public FileBytes {
public:
    explicit MemoryBytes(std::string bytes) : bytes_(std::move(bytes)) {}
    std::int64_t size() const override { return static_cast<std::int64_t>(bytes_.size()); }
    std::size_t read(std::int64_t offset, std::span<char> into) const override {
        if (offset < 0 || offset >= size()) return 0;
        const auto from = static_cast<std::size_t>(offset);
        const std::size_t count = std::min(into.size(), bytes_.size() - from);
        std::copy_n(bytes_.data() + from, count, into.data());
        return count;
    }

private:
    std::string bytes_;
};

}  // namespace tarn::test
