#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "Tarn/model/EventWatch.h"
#include "tests/ui/MachineStrain.h"

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

    void OnTestStart(const testing::TestInfo&) override {
        watch_.reset();
        strain_ = {};
    }
    void OnTestEnd(const testing::TestInfo&) override {
        const EventWatch::Event& hardest = watch_.hardest();
        const EventWatch::Event& longest = watch_.longest();
        if (faults(hardest, longest, strain_).empty()) return;
        measure();
        EXPECT_EQ(faults(hardest, longest, strain_), "")
            << hardest.seconds << " s: " << hardest.name.toStdString() << "\n"
            << longest.seconds << " s, waits included: " << longest.name.toStdString() << "\n"
            << "on a machine that works " << strain_.ofWork << " times as long as usual, and waits "
            << strain_.ofWaits << " times as long";
    }

    /// How the machine is while a test runs, as MachineStrain tells.
    struct Strain {
        double ofWork = 1;
        double ofWaits = 1;
    };
    /// "work" where an event has worked for too long, "wait" where one has taken too long with what
    /// it waited for; both, or none.
    static std::string faults(const EventWatch::Event& hardest, const EventWatch::Event& longest,
                              const Strain& strain) {
        std::string found;
        if (hardest.seconds > slowness * EventWatch::longestAllowed * strain.ofWork) found = "work";
        if (longest.seconds > EventWatch::waitingAllowed * strain.ofWaits)
            found += found.empty() ? "wait" : " wait";
        return found;
    }

private:
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr bool isSlow = true;
#else
    static constexpr bool isSlow = false;
#endif

    /// Tests are built for debugging, not for speed.
    static constexpr double slowness = 2;

    explicit EventListener(EventWatch& watch) : watch_(watch) {
        // How the machine is at that moment counts, not how it is when the test ends.
        QObject::connect(&watch, &EventWatch::tookLong, [this](const EventWatch::Event& event) {
            if (event.seconds > slowness * EventWatch::longestAllowed) measure();
        });
    }

    void measure() {
        strain_.ofWork = std::max(strain_.ofWork, MachineStrain::ofWork());
        strain_.ofWaits = std::max(strain_.ofWaits, MachineStrain::ofWaits());
    }

    EventWatch& watch_;
    Strain strain_;
};

}  // namespace tarn
