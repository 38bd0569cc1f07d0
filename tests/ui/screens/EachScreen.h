#pragma once

#include <gtest/gtest.h>

#include "tests/ui/screens/Screens.h"

namespace tarn {

/// A claim about every screen of the table. Each screen is a test of its own, since all of them
/// would take minutes.
class EachScreen : public testing::TestWithParam<Screen> {};

}  // namespace tarn
