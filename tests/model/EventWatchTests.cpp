#include <ctime>

#include <QtCore/QEvent>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Tarn/model/EventWatch.h"

namespace tarn {
namespace {

/// Works until the thread has used so much of a processor.
void work(double seconds) {
    const auto used = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    };
    const double end = used() + seconds;
    while (used() < end) {
    }
}

class EventWatchTest : public testing::Test {
protected:
    /// Seconds that the watch sees of one event.
    template <class Body>
    double seen(const Body& body) {
        watch.reset();
        handle(body);
        return watch.longest().seconds;
    }
    template <class Body>
    bool handle(const Body& body) {
        const QEvent event(QEvent::Paint);
        return watch.watch(&receiver, &event, [&] {
            body();
            return true;
        });
    }

    EventWatch watch;
    QObject receiver;
};

TEST_F(EventWatchTest, workCountsWithItsPartsAndIsNamed) {
    receiver.setObjectName("pane");
    int longOnes = 0;
    QObject::connect(&watch, &EventWatch::tookLong, [&] { ++longOnes; });
    const double seconds = seen([this] {
        for (int part = 0; part < 3; ++part) handle([] { work(0.03); });
    });
    EXPECT_GE(seconds, 0.09);
    EXPECT_EQ(watch.longest().name, "Paint of QObject “pane”");
    EXPECT_EQ(longOnes, 1);
    EXPECT_GE(watch.hardest().seconds, 0.09);
    EXPECT_EQ(watch.hardest().name, watch.longest().name);
}

TEST_F(EventWatchTest, waitsAreNoWorkButCount) {
    if (access("/proc/thread-self/schedstat", R_OK) != 0)
        GTEST_SKIP() << "this kernel does not tell waits apart";
    const double seconds = seen([] {
        const timespec pause{0, 100'000'000};
        nanosleep(&pause, nullptr);
    });
    EXPECT_GE(seconds, 0.09);
    EXPECT_LT(watch.hardest().seconds, 0.09);
}

TEST_F(EventWatchTest, eventsInsideOfALoopCountAndTheLoopDoesNot) {
    const double seconds = seen([this] {
        QEventLoop loop;
        QTimer::singleShot(150, &loop, [&] {
            handle([] { work(0.02); });
            loop.quit();
        });
        loop.exec();
    });
    EXPECT_GE(seconds, 0.02);
    EXPECT_LT(seconds, 0.15);
}

}  // namespace
}  // namespace tarn
