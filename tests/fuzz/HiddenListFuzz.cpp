// Any bytes as a folder's `.hidden` file: names that could be names, and no more than were there.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "TarnCore/files/ResourceReader.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::size_t total = 0;
    for (const std::string& name : tarn::parseHiddenList(text)) {
        tarn::require(!name.empty() && name.find('\n') == name.npos);
        tarn::require(text.find(name) != text.npos);
        total += name.size();
    }
    tarn::require(total <= size);
    return 0;
}
