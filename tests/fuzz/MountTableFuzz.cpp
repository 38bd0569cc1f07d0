// Any bytes as the kernel's table of mounts.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/platform/linux/MountTable.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto mounts = tarn::parseMountInfo(text);
    for (const tarn::Mount& mount : mounts) {
        const tarn::Mount* holder = tarn::mountHolding(mounts, mount.mountPoint);
        tarn::require(holder != nullptr && holder->mountPoint == mount.mountPoint);
    }
    return 0;
}
