// Any bytes as what the tool that mounts servers says.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "TarnCore/base/Text.h"
#include "TarnCore/platform/linux/GioPrompts.h"
#include "TarnCore/platform/linux/ServerFolder.h"
#include "tests/fuzz/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t half = size / 2;
    tarn::GioPrompts prompts;
    for (const std::string_view piece : {text.substr(0, half), text.substr(half)}) {
        const auto prompt = prompts.add(piece);
        if (!prompt) continue;
        tarn::require(tarn::Text::isValidUTF8(prompt->message));
        tarn::require(prompt->choices.empty() || prompt->kind == tarn::GioPrompts::Kind::choice);
    }
    const auto title = tarn::serverTitle(text);
    tarn::require(!title || !title->empty());
    return 0;
}
