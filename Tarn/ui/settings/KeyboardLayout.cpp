#include "Tarn/ui/settings/KeyboardLayout.h"

#include <cstdlib>
#include <memory>
#include <span>

#include <QtGui/QKeyEvent>
#include <xcb/xcb.h>

#include "Tarn/ui/quicksearch/XDisplay.h"

namespace tarn::KeyboardLayout {
namespace {

/// In the state of a key event, as the keyboard extension of the X server has it.
constexpr unsigned groupShift = 13;
constexpr unsigned groupMask = 3;
/// The server lists the first two groups as pairs: without Shift, with Shift.
constexpr std::size_t pairCount = 2;

/// Absent for keys that are no character, dead ones among them, and for the numbers that old
/// alphabets had before Unicode.
std::optional<char32_t> characterOf(xcb_keysym_t keysym) {
    constexpr xcb_keysym_t unicode = 0x01000000;
    constexpr xcb_keysym_t lastOfUnicode = unicode + 0x10FFFF;
    const bool isLatin1 = (keysym > 0x20 && keysym < 0x7F) || (keysym > 0xA0 && keysym <= 0xFF);
    if (isLatin1) return static_cast<char32_t>(keysym);
    if (keysym > unicode && keysym <= lastOfUnicode) return static_cast<char32_t>(keysym - unicode);
    return std::nullopt;
}

}  // namespace

std::optional<char32_t> withoutShift(const QKeyEvent& event) {
    xcb_connection_t* x = XDisplay::connection();
    if (!x) return std::nullopt;
    return withoutShift(*x, event.nativeScanCode(),
                        (event.nativeModifiers() >> groupShift) & groupMask,
                        static_cast<char32_t>(event.key()));
}

std::optional<char32_t> withoutShift(xcb_connection_t& x, std::uint32_t keycode, unsigned group,
                                     char32_t shifted) {
    const xcb_setup_t* setup = xcb_get_setup(&x);
    if (!setup || keycode < setup->min_keycode || keycode > setup->max_keycode) return std::nullopt;
    struct Freed {
        void operator()(void* reply) const { std::free(reply); }
    };
    const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, Freed> reply(
        xcb_get_keyboard_mapping_reply(
            &x, xcb_get_keyboard_mapping(&x, static_cast<xcb_keycode_t>(keycode), 1), nullptr));
    if (!reply) return std::nullopt;
    const std::span<const xcb_keysym_t> keysyms(
        xcb_get_keyboard_mapping_keysyms(reply.get()),
        static_cast<std::size_t>(xcb_get_keyboard_mapping_keysyms_length(reply.get())));
    for (std::size_t i = 0; i < pairCount; ++i) {
        const std::size_t pair = 2 * ((group + i) % pairCount);
        if (pair + 1 >= keysyms.size() || characterOf(keysyms[pair + 1]) != shifted) continue;
        if (const auto plain = characterOf(keysyms[pair])) return plain;
    }
    return std::nullopt;
}

}  // namespace tarn::KeyboardLayout
