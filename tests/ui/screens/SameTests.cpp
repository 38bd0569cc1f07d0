#include <tuple>

#include <gtest/gtest.h>

#include "Tarn/ui/states/StatusPill.h"
#include "Tarn/ui/theme/Theme.h"
#include "tests/ui/Shown.h"
#include "tests/ui/screens/EachScreen.h"
#include "tests/ui/screens/Looks.h"

namespace tarn {
namespace {

QImage pictureOf(Stage& stage) {
    // How long a search has taken is another matter each time.
    if (stage.pane().showsResults())
        for (StatusPill* pill : stage.window().findChildren<StatusPill*>()) pill->hide();
    return stage.grab();
}

void expectSame(const Screen& screen, const QImage& wanted, Stage& stage) {
    // Where another process reads, that one may be late.
    if (screen.isSlow) std::ignore = waitFor([&] { return pictureOf(stage) == wanted; });
    const QImage found = pictureOf(stage);
    const QRect other = Looks::differenceOf(wanted, found);
    EXPECT_TRUE(other.isNull()) << other.width() << " × " << other.height() << " pixels at "
                                << other.x() << ", " << other.y() << " are others";
}

/// Whatever compares pictures of screens rests on this.
TEST_P(EachScreen, looksTheSameWhenItIsMadeAgain) {
    const QImage before = [] {
        Stage stage(GetParam());
        return pictureOf(stage);
    }();
    Stage again(GetParam());
    expectSame(GetParam(), before, again);
}

/// What was drawn in the old colours and kept would give itself away.
TEST_P(EachScreen, turnsDarkAsIfItHadNeverBeenLight) {
    const QImage dark = [] {
        const ScopedMode mode(Theme::Mode::dark);
        Stage stage(GetParam());
        return pictureOf(stage);
    }();
    Stage turned(GetParam());
    const ScopedMode mode(Theme::Mode::dark);
    turned.settle();
    expectSame(GetParam(), dark, turned);
}

}  // namespace
}  // namespace tarn
