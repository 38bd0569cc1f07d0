#include <tuple>

#include <gtest/gtest.h>

#include "tests/ui/Shown.h"
#include "tests/ui/screens/EachScreen.h"
#include "tests/ui/screens/Looks.h"

namespace tarn {
namespace {

/// Whatever compares pictures of screens rests on this.
TEST_P(EachScreen, looksTheSameWhenItIsMadeAgain) {
    const QImage before = Stage(GetParam()).grab();
    Stage again(GetParam());
    // Where another process reads, that one may be late.
    if (GetParam().isSlow) std::ignore = waitFor([&] { return again.grab() == before; });
    const QImage after = again.grab();
    const QRect other = Looks::differenceOf(before, after);
    EXPECT_TRUE(other.isNull()) << other.width() << " × " << other.height() << " pixels at "
                                << other.x() << ", " << other.y() << " are others";
}

}  // namespace
}  // namespace tarn
