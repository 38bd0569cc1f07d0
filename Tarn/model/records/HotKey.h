#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarn {

struct AppSettings;

/// Keys that work whatever program is in front, as AppSettings stores them. A value.
///
/// The code names a key by its label on the American keyboard (49 is the space bar), the bits what
/// is held down with it; both have the numbers of the platform whose settings files can be brought
/// along. Unlike those of commands, the modifiers mean the keys that bear their names.
struct HotKey {
    static constexpr std::uint32_t super = 0x100;
    static constexpr std::uint32_t shift = 0x200;
    static constexpr std::uint32_t alt = 0x800;
    static constexpr std::uint32_t control = 0x1000;

    std::uint32_t code = 49;
    std::uint32_t modifiers = control | shift;
    bool operator==(const HotKey&) const = default;

    static HotKey of(const AppSettings& settings);
    void store(AppSettings& settings) const;
    /// By the name that Qt gives the key in portable texts: "Space", "A", "PgUp". Absent for a key
    /// that has no code.
    static std::optional<HotKey> named(std::string_view key, std::uint32_t modifiers);

    /// There is such a key, and it stands in nobody's way while typing: Ctrl, Alt or Super is held,
    /// or it is a function key.
    bool isUsable() const;
    /// As Qt writes keys in portable texts: "Ctrl+Shift+Space". Empty for a code that no key has.
    std::string text() const;
    /// As the desktop's portal for shortcuts takes them: "CTRL+SHIFT+space".
    std::string trigger() const;
    /// The number that X gives what is on the key; 0 for a code that no key has.
    std::uint32_t keysym() const;
};

}  // namespace tarn
