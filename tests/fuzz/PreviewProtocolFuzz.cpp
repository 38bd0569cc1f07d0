// Any bytes as a question or an answer of previews: what was understood is written the same.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/preview/PreviewProtocol.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    using namespace tarn::PreviewProtocol;
    if (size == 0) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    const auto check = [bytes](const auto& value) {
        if (value) require(encode(*value) == bytes);
    };
    switch (data[0] % 8) {
        case 0:
            check(decodeQuestion(bytes));
            break;
        case 1:
            check(decodePages(bytes));
            break;
        case 2:
            check(decodePicture(bytes));
            break;
        case 3:
            check(decodePageText(bytes));
            break;
        case 4:
            check(decodeFontFacts(bytes));
            break;
        case 5:
            check(decodeSheet(bytes));
            break;
        case 6:
            check(decodeMediaFacts(bytes));
            break;
        default:
            check(decodeMediaPiece(bytes));
    }
    return 0;
}
