#include <gtest/gtest.h>

#include "tests/ui/EventListener.h"
#include "tests/ui/MachineStrain.h"

namespace tarn {
namespace {

TEST(EventListener, judgesWorkAndWaitsByWhatTheMachineCanDo) {
    const struct {
        double work;
        double whole;
        double strainOfWork;
        double strainOfWaits;
        const char* faults;
    } cases[] = {
        {0.09, 0.45, 1, 1, ""},        {0.12, 0.12, 1, 1, "work"},
        {0.12, 0.12, 1.3, 1, ""},  // The same work takes longer there.
        {0.25, 0.25, 1.3, 10, "work"}, {0.01, 0.6, 1, 1, "wait"},
        {0.01, 0.6, 10, 1, "wait"},  // A slow processor makes no disk slow.
        {0.01, 0.6, 1, 1.5, ""},       {0.01, 2, 1, 1.5, "wait"},
        {0.3, 2, 1, 1, "work wait"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.work << " " << c.whole << " " << c.strainOfWork << " "
                                        << c.strainOfWaits);
        const EventListener::Strain strain{c.strainOfWork, c.strainOfWaits};
        EXPECT_EQ(EventListener::faults({c.work, {}}, {c.whole, {}}, strain), c.faults);
    }
}

TEST(MachineStrain, isToldByTheMachine) {
    const double work = MachineStrain::ofWork();
    EXPECT_GE(work, 1);
    EXPECT_LE(work, MachineStrain::most);
    const double waits = MachineStrain::ofWaits();
    EXPECT_GE(waits, 1);
    EXPECT_LE(waits, MachineStrain::most);
    const struct {
        const char* text;
        double strain;
    } cases[] = {
        {"some avg10=0.00 avg60=97.00 avg300=94.10 total=52106442300\nfull avg10=0.00", 1},
        {"some avg10=50.00 avg60=0.00 avg300=0.00 total=1\nfull avg10=0.00", 2},
        {"some avg10=75.00 avg60=0.00 avg300=0.00 total=1\nfull avg10=90.00", 4},
        {"some avg10=98.04 avg60=0.00 avg300=0.00 total=1", MachineStrain::most},
        {"some avg10=100.00", MachineStrain::most},
        {"some avg10=", 1},
        {"", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_DOUBLE_EQ(MachineStrain::ofPressure(c.text), c.strain);
    }
}

}  // namespace
}  // namespace tarn
