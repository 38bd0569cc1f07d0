// Any bytes as a binary property list: what is read out of it survives being written.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/base/PropertyList.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (const auto strings = PropertyList::stringArray(bytes)) {
        require(PropertyList::stringArray(PropertyList::encode(*strings)) == strings);
    }
    return 0;
}
