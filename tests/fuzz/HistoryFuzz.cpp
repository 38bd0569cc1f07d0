#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "TarnCore/base/JSON.h"
#include "TarnCore/ops/OperationHistory.h"
#include "tests/fuzz/Require.h"

using namespace tarn;

/// Whatever is read as an undo list is written and read again the same, step for step.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto json = JSONText::parse({reinterpret_cast<const char*>(data), size});
    if (!json) return 0;
    std::vector<HistoryEntry> entries;
    try {
        entries = json->get<std::vector<HistoryEntry>>();
    } catch (const std::exception&) {
        return 0;
    }
    const auto again = JSONText::parse(JSONText::compact(JSON(entries)));
    require(again.has_value());
    require(again->get<std::vector<HistoryEntry>>() == entries);
    return 0;
}
