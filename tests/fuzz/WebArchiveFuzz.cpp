// Any bytes as a web archive, binary or XML.
#include "TarnCore/index/readers/WebArchiveText.h"
#include "tests/fuzz/TextChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    checkText(WebArchiveText::read(view(data, size)));
    return 0;
}
