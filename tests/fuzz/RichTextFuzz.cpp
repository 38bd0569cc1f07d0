// Any bytes as rich text.
#include "TarnCore/index/readers/RichText.h"
#include "tests/fuzz/TextChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    checkText(RichText::read(view(data, size)));
    return 0;
}
