#pragma once

#include <cstdlib>
#include <string_view>

#include <gtest/gtest.h>

#include "Tarn/model/EventWatch.h"

namespace tarn {

/// Fails tests in which one event keeps the main thread for too long.
class EventListener final : public testing::EmptyTestEventListener {
public:
    /// From now on. Sanitizers, and whatever else makes the program run in slow motion, are let
    /// off; TARN_WATCH_EVENTS=0 lets off everything, as on a machine that is emulated.
    static void install(EventWatch& watch) {
        const char* wish = std::getenv("TARN_WATCH_EVENTS");
        if (isSlow || (wish && std::string_view(wish) == "0")) return;
        testing::UnitTest::GetInstance()->listeners().Append(new EventListener(watch));
    }

    void OnTestStart(const testing::TestInfo&) override { watch_.reset(); }
    void OnTestEnd(const testing::TestInfo&) override {
        const EventWatch::Event& hardest = watch_.hardest();
        EXPECT_LE(hardest.seconds, slowness * EventWatch::longestAllowed)
            << hardest.name.toStdString();
        const EventWatch::Event& longest = watch_.longest();
        EXPECT_LE(longest.seconds, EventWatch::waitingAllowed) << longest.name.toStdString();
    }

private:
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr bool isSlow = true;
#else
    static constexpr bool isSlow = false;
#endif

    /// Tests are built for debugging, not for speed.
    static constexpr double slowness = 2;

    explicit EventListener(EventWatch& watch) : watch_(watch) {}

    EventWatch& watch_;
};

}  // namespace tarn
