#pragma once

#include <span>

namespace tarn {

struct Screen;

/// What a person meets less often: refusals, questions, sheets for volumes and servers.
std::span<const Screen> rarerScreens();

/// Windows with a menu or a list open above them. They have the keyboard for themselves, so they are
/// only looked at.
std::span<const Screen> popupScreens();

}  // namespace tarn
