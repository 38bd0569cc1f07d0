// Any bytes as a notebook.
#include "TarnCore/index/readers/NotebookText.h"
#include "tests/fuzz/TextChecks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    checkText(NotebookText::read(view(data, size)));
    return 0;
}
