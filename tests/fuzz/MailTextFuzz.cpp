// Any bytes as a mail, of both kinds.
#include "TarnCore/index/readers/MailText.h"
#include "tests/fuzz/TextChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    checkText(MailText::read(view(data, size)));
    checkText(MailText::readWithLength(view(data, size)));
    return 0;
}
