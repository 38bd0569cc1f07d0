#pragma once

#include <cstdint>

#include "TarnCore/platform/ActivationTokens.h"

/// What the toolkit’s connection to the window system knows of the person’s last input, by which
/// the desktop judges whose window may come to the front. Main thread only.
///
/// Qt hands this out through an interface that it keeps to itself, so it is asked only where Qt is
/// the very version that this was compiled with.
namespace tarn::WindowSystem {

/// Null where the windows are not on a Wayland compositor.
wl_display* waylandDisplay();
/// Of the window that has the keyboard. Without a display where it is not on a compositor.
ActivationTokens::Origin waylandOrigin();

/// When the last input was, in the milliseconds of the X server; 0 elsewhere.
std::uint32_t inputTime();
/// Input in another program that led here: a window that is shown next counts as asked for then.
void noteInputTime(std::uint32_t time);

}  // namespace tarn::WindowSystem
