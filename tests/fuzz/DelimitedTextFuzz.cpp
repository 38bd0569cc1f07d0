// Any bytes as a table of text: it keeps to its bounds.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/preview/DelimitedText.h"
#include "TarnCore/preview/TextHead.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto text = TextHead::decode(bytes, size % 2 == 0);
    if (!text) return 0;
    const TableSheet sheet = DelimitedText::parse(*text, DelimitedText::separator(*text));
    require(sheet.rows.size() <= TableSheet::mostRows);
    for (const auto& row : sheet.rows) require(row.size() <= TableSheet::mostColumns);
    return 0;
}
