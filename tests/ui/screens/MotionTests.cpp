#include <QtCore/QAnimationDriver>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "tests/ui/screens/Screens.h"

namespace tarn {
namespace {

/// Drives all animations of the program, and counts how often there was something to drive.
class CountingDriver final : public QAnimationDriver {
public:
    CountingDriver() {
        install();
        connect(this, &QAnimationDriver::started, this, [this] { ++starts_; });
    }
    ~CountingDriver() override { uninstall(); }
    int starts() const { return starts_; }

private:
    int starts_ = 0;
};

/// What usually moves: a panel, the search field, a message.
void useTheWindow(Stage& stage) {
    stage.model().setShowsInspector(true);
    stage.model().focusSearch();
    stage.pane().setSearchText("notes");
    stage.wait([&] { return !stage.pane().isSearching(); });
    Toast toast;
    toast.message = QStringLiteral("Copied");
    stage.model().showToast(toast);
    stage.model().setShowsTransfers(true);
    stage.settle();
}

TEST(Screens, standStillWhenMotionIsOff) {
    const CountingDriver driver;
    for (const Screen& screen : allScreens()) {
        SCOPED_TRACE(screen.name);
        Stage stage(screen);
        EXPECT_EQ(driver.starts(), 0);
    }
    Stage stage(allScreens().front());
    useTheWindow(stage);
    EXPECT_EQ(driver.starts(), 0);
    // It is seen when there is some.
    Theme::shared().setAnimations(true);
    stage.pane().clearSearch(false);
    stage.window().setFocus();
    stage.model().focusSearch();
    EXPECT_TRUE(QTest::qWaitFor([&] { return driver.starts() > 0; }, 5000));
    Theme::shared().setAnimations(false);
}

}  // namespace
}  // namespace tarn
