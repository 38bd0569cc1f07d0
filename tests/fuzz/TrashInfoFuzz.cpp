#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/platform/linux/DirectorySizes.h"
#include "TarnCore/platform/linux/TrashInfo.h"
#include "tests/fuzz/Require.h"

using namespace tarn;

/// A note in a Trash names a place that a note of our own names the same way, and on a disk from
/// elsewhere only a place on that disk. A list of sizes that was read is written and read the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const URL disk = URL::fromPath("/media/stick");
    if (const auto info = TrashInfo::parse(text)) {
        for (const std::optional<URL>& base : {std::optional<URL>(), std::optional(disk)}) {
            const auto origin = info->origin(base);
            if (!origin) continue;
            require(!base || (origin->isInside(disk) && *origin != disk));
            const auto again = TrashInfo::parse(TrashInfo::text(*origin, base, Date{}));
            require(again && again->origin(base) == origin);
        }
    }
    const DirectorySizes sizes = DirectorySizes::parse(text);
    require(DirectorySizes::parse(sizes.text()) == sizes);
    return 0;
}
