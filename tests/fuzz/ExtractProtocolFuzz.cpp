#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/index/ExtractProtocol.h"
#include "tests/fuzz/Require.h"

using namespace tarn;
using namespace tarn::ExtractProtocol;

/// A header that was understood is written the same, and announces no more than its kind may; a
/// request that was understood is understood the same when it is written anew.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (size < headerSize) return 0;
    const auto header = decodeHeader(bytes);
    if (!header) return 0;
    const auto written = encode(*header);
    require(std::string_view(written.data(), written.size()) == bytes.substr(0, headerSize));
    require(header->length <= mostAnswerBytes);
    const auto request = decodeRequest(*header, bytes.substr(headerSize, mostRequestBytes));
    if (!request) return 0;
    const std::string frame = encode(*request);
    const auto again = decodeHeader(frame);
    require(again && decodeRequest(*again, std::string_view(frame).substr(headerSize)) == request);
    return 0;
}
