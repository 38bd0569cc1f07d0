#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "TarnCore/platform/TreeWriter.h"

namespace tarn {

/// A small file that is put together in memory. Whoever makes it takes the bytes.
class MemoryFile final : public NewFile {
public:
    void append(std::string_view added) override { bytes += added; }
    void skip(std::int64_t count) override { bytes.append(static_cast<std::size_t>(count), '\0'); }
    void writeAt(std::int64_t offset, std::string_view over) override {
        bytes.replace(static_cast<std::size_t>(offset), over.size(), over);
    }
    std::int64_t size() const override { return static_cast<std::int64_t>(bytes.size()); }
    void finish() override {}

    std::string bytes;
};

}  // namespace tarn
