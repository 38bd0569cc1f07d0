// Any bytes as plain text, which is not always there, but never empty for want of it.
#include "tests/fuzz/TextChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    const auto text = PlainText::text(std::string(view(data, size)));
    if (text && !text->empty()) checkText(text);
    std::string storage;
    if (const auto decoded = PlainText::decode(view(data, size), storage))
        require(Text::isValidUTF8(*decoded));
    return 0;
}
