// Any bytes as code in every language: spans stay in order and inside of their line.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "TarnCore/preview/CodeTokens.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarn;
    std::vector<std::u16string> lines(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == '\n')
            lines.emplace_back();
        else
            lines.back() += static_cast<char16_t>(data[i]);
    }
    std::vector<CodeSpan> spans;
    for (const CodeLanguage& language : CodeLanguage::all()) {
        CodeTokens::State state = 0;
        for (const std::u16string& line : lines) {
            spans.clear();
            state = CodeTokens::tokenize(language, line, state, spans);
            std::size_t end = 0;
            for (const CodeSpan& span : spans) {
                require(span.start >= end && span.length > 0);
                end = std::size_t{span.start} + span.length;
            }
            require(end <= line.size());
        }
    }
    return 0;
}
