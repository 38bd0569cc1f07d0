#pragma once

#include <cstdint>
#include <optional>

class QKeyEvent;
struct xcb_connection_t;

/// What the keys of the keyboard in use give. Main thread only.
namespace tarn::KeyboardLayout {

/// The character that the key gives without Shift, where Shift made another one of it: "7" for the
/// "/" of a German keyboard. Absent where nobody tells: only an X server does.
std::optional<char32_t> withoutShift(const QKeyEvent& event);

/// The same, asked of this server: `keycode` and `group` (one of the layouts that the person
/// switches between, from 0) are its own, `shifted` is the character that came.
std::optional<char32_t> withoutShift(xcb_connection_t& x, std::uint32_t keycode, unsigned group,
                                     char32_t shifted);

}  // namespace tarn::KeyboardLayout
