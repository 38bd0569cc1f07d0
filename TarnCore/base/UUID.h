#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

/// A random (version 4) or given identifier, written in upper-case hexadecimal:
/// "7A2D0000-0000-0000-0000-000000000001".
class UUID {
public:
    /// All zero.
    UUID() = default;
    /// From the kernel's random source.
    static UUID random();
    /// Any case. Absent unless it is 8-4-4-4-12 hexadecimal digits.
    static std::optional<UUID> parse(std::string_view text);
    std::string string() const;
    auto operator<=>(const UUID&) const = default;

private:
    std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace tarn
