// Any bytes as the remembered content types: what is understood survives being written.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/platform/linux/ContentTypeCache.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using tarn::ContentTypeCache;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    constexpr std::string_view key = "en 1";
    if (const auto cache = ContentTypeCache::parse(text, key)) {
        tarn::require(ContentTypeCache::parse(cache->print(key), key) == cache);
    }
    return 0;
}
