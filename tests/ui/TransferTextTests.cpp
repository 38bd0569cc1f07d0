#include <gtest/gtest.h>

#include "Tarn/ui/transfers/TimeLeft.h"
#include "Tarn/ui/transfers/TransferText.h"

namespace tarn {
namespace {

TEST(TransferText, saysHowFarItHasComeOrWhyNot) {
    TransferProgress running;
    running.state = TransferState::running;
    running.doneBytes = 1'200'000'000;
    running.totalBytes = 3'400'000'000;
    running.bytesPerSecond = 120'000'000;
    TransferProgress items;
    items.state = TransferState::running;
    items.doneItems = 12;
    items.totalItems = 1500;
    const auto with = [](TransferProgress progress, TransferState state, bool finishing = false) {
        progress.state = state;
        progress.isFinishingWriting = finishing;
        return progress;
    };
    const struct {
        TransferProgress progress;
        std::optional<double> left;
        bool isQueued;
        const char* text;
    } cases[] = {
        {running, 20, false, "1.2 GB of 3.4 GB · 120 MB/s · About 20 seconds left"},
        {running, std::nullopt, false, "1.2 GB of 3.4 GB · 120 MB/s"},
        {with(running, TransferState::paused), 20, false, "Paused · 1.2 GB of 3.4 GB"},
        {with(running, TransferState::running, true), 20, false, "Finishing writing…"},
        {with(running, TransferState::waiting), 20, false, "Waiting for your answer"},
        {with({}, TransferState::scanning), std::nullopt, false, "Preparing…"},
        {{}, std::nullopt, true, "Waiting for another transfer between these disks"},
        {items, std::nullopt, false, "12 of 1,500 items"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(TransferText::detail(c.progress, c.left, c.isQueued), QString::fromUtf8(c.text));
    }
}

TEST(TimeLeft, neverJumpsAboutWhileTheEstimateDoes) {
    TimeLeft time;
    std::optional<double> shown;
    int rises = 0;
    // A minute of work whose estimate is off by up to a half, up and down.
    for (int step = 0; step <= 240; ++step) {
        const double now = step * 0.25;
        const double truth = 60 - now;
        const double estimate = truth * (step % 2 == 0 ? 1.5 : 0.6);
        const auto next = time.update(estimate, now);
        if (now < 1)
            EXPECT_FALSE(next);
        else
            ASSERT_TRUE(next);
        if (shown && next && *next > *shown) ++rises;
        if (next) {
            EXPECT_LT(std::abs(*next - truth), 25) << now;
            shown = next;
        }
    }
    EXPECT_EQ(rises, 0);
}

TEST(TimeLeft, admitsThatItTakesLongerAfterAWhile) {
    TimeLeft time;
    for (int step = 0; step < 20; ++step) time.update(20, step * 0.25);
    const auto before = time.update(20, 5);
    EXPECT_EQ(before, 20);
    // The disk has become five times slower.
    EXPECT_EQ(time.update(100, 5.25), before);
    std::optional<double> after;
    for (int step = 0; step < 60; ++step) after = time.update(100, 5.5 + step * 0.25);
    ASSERT_TRUE(after);
    EXPECT_GT(*after, 80);
    EXPECT_FALSE(time.update(std::nullopt, 30));
}

}  // namespace
}  // namespace tarn
