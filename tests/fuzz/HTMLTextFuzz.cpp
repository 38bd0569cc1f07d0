// Any bytes as a web page, in whatever encoding it says it has.
#include "TarnCore/index/readers/HTMLText.h"
#include "tests/fuzz/TextChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    checkText(HTMLText::read(view(data, size)));
    return 0;
}
