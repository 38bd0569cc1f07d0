#include <atomic>
#include <future>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "Tarn/model/MachinePause.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/platform/memory/MemoryMachineLoad.h"

namespace tarn {
namespace {

/// Looks that would come by themselves come too late for any test.
constexpr MachinePause::Timing seldom{.betweenLooks = 1e6, .betweenBatteryLooks = 1e6, .calm = 0};

class MachinePauseTest : public testing::Test {
protected:
    /// Waits on another thread; the future is ready at its end.
    std::future<void> waiting() {
        auto ended = std::make_shared<std::promise<void>>();
        queue.run([this, ended] {
            pause.wait(token);
            ended->set_value();
        });
        return ended->get_future();
    }

    std::shared_ptr<MemoryMachineLoad> load = std::make_shared<MemoryMachineLoad>();
    std::promise<std::optional<MachinePause::Reason>> told;
    MachinePause pause{load, seldom, [this](auto reason) { told.set_value(reason); }};
    CancelToken token;
    SerialQueue queue{"test.waiting"};
};

TEST_F(MachinePauseTest, whoeverWaitsOnABatteryIsWokenByTheTokenAlone) {
    load->setOnBattery(true);
    auto end = waiting();
    EXPECT_EQ(told.get_future().get(), MachinePause::Reason::battery);
    token.cancel();
    pause.wake();
    end.wait();
    EXPECT_TRUE(pause.holds());
}

TEST_F(MachinePauseTest, whoeverWaitsForThePersonGoesOnAtOnce) {
    pause.setPaused(true);
    auto end = waiting();
    EXPECT_NE(end.wait_for(std::chrono::milliseconds(20)), std::future_status::ready);
    pause.setPaused(false);
    end.wait();
}

TEST_F(MachinePauseTest, aTokenThatIsSetAlreadyIsSeen) {
    pause.setPaused(true);
    token.cancel();
    waiting().wait();
}

}  // namespace
}  // namespace tarn
