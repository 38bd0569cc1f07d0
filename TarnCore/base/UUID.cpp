#include "TarnCore/base/UUID.h"

#include <random>

#include <sys/random.h>

namespace tarn {
namespace {

bool isDashPosition(std::size_t i) { return i == 8 || i == 13 || i == 18 || i == 23; }

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

}  // namespace

UUID UUID::random() {
    UUID uuid;
    if (getrandom(uuid.bytes_.data(), uuid.bytes_.size(), 0) !=
        static_cast<ssize_t>(uuid.bytes_.size())) {
        std::random_device device;
        for (auto& byte : uuid.bytes_) byte = static_cast<std::uint8_t>(device());
    }
    uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0F) | 0x40);
    uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3F) | 0x80);
    return uuid;
}

std::optional<UUID> UUID::parse(std::string_view text) {
    if (text.size() != 36) return std::nullopt;
    UUID uuid;
    std::size_t digit = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isDashPosition(i)) {
            if (text[i] != '-') return std::nullopt;
            continue;
        }
        const int value = hexValue(text[i]);
        if (value < 0) return std::nullopt;
        auto& byte = uuid.bytes_[digit / 2];
        byte = static_cast<std::uint8_t>(digit % 2 == 0 ? value << 4 : byte | value);
        ++digit;
    }
    return uuid;
}

std::string UUID::string() const {
    static constexpr std::string_view hex = "0123456789ABCDEF";
    std::string out;
    for (const std::uint8_t byte : bytes_) {
        if (isDashPosition(out.size())) out += '-';
        out += hex[byte >> 4];
        out += hex[byte & 15];
    }
    return out;
}

}  // namespace tarn
