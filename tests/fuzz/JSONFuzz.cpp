// Any bytes as the text of a store: never an exception, and what is read survives being written.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto value = JSONText::parse(text)) {
        const std::string compact = JSONText::compact(*value);
        const auto again = JSONText::parse(compact);
        require(again.has_value() && JSONText::compact(*again) == compact);
        require(JSONText::parse(JSONText::pretty(*value)) == again);
    }
    if (const auto url = JSONText::toPath(text))
        require(JSONText::toPath(JSONText::fromPath(*url)) == url);

    // Whatever a string holds, the writer's text is JSON, and the same for what is UTF-8.
    std::string written;
    JSONWriter(written).string(text);
    const auto read = JSONText::parse(written);
    require(read.has_value() && read->is_string());
    std::string twice;
    JSONWriter(twice).string(read->get_ref<const std::string&>());
    require(twice == written);
    return 0;
}
