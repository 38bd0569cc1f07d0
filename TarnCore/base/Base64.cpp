#include "TarnCore/base/Base64.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarn::Base64 {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t none = 0xFF;

constexpr std::array<std::uint8_t, 256> values = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(none);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    return table;
}();

}  // namespace

std::string decode(std::string_view text) {
    std::string out;
    out.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    unsigned count = 0;  // of the bits that have not become a byte
    for (const char character : text) {
        const std::uint8_t value = values[static_cast<unsigned char>(character)];
        if (character == '=') count = 0;  // the end, or that of one of several runs
        if (value == none) continue;
        bits = bits << 6 | value;
        count += 6;
        if (count < 8) continue;
        count -= 8;
        out += static_cast<char>(bits >> count & 0xFF);
    }
    return out;
}

}  // namespace tarn::Base64
