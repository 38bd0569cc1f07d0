#include <atomic>
#include <latch>
#include <vector>

#include <gtest/gtest.h>

#include "TarnCore/base/Debounce.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/TaskPool.h"

namespace tarn {
namespace {

TEST(TaskPool, forEachRunsEveryIndexOnceEvenWhenNested) {
    TaskPool pool(2);
    std::vector<std::atomic<int>> counts(64 * 64);
    pool.forEach(
        64, [&](std::size_t i) { pool.forEach(64, [&](std::size_t j) { ++counts[i * 64 + j]; }); });
    for (const auto& count : counts) EXPECT_EQ(count, 1);
}

TEST(TaskPool, urgentWorkOvertakesBackgroundWork) {
    TaskPool pool(1);
    std::latch started(1), go(1), done(3);
    std::vector<char> order;
    pool.run([&] {
        started.count_down();
        go.wait();
        order.push_back('a');
        done.count_down();
    });
    started.wait();
    pool.run(
        [&] {
            order.push_back('b');
            done.count_down();
        },
        TaskPriority::background);
    pool.run([&] {
        order.push_back('u');
        done.count_down();
    });
    go.count_down();
    done.wait();
    EXPECT_EQ(std::string(order.begin(), order.end()), "aub");
}

TEST(TaskPool, whoeverWaitsIsServedWhileEveryThreadSharesLongWork) {
    std::latch bothShare(3), served(2), done(1);
    TaskPool pool(2);
    pool.run([&] {
        pool.forEach(2, [&](std::size_t) {
            bothShare.arrive_and_wait();
            served.wait();
        });
        done.count_down();
    });
    bothShare.arrive_and_wait();
    pool.run([&] { served.count_down(); });
    pool.run([&] { pool.forEach(2, [&](std::size_t i) { served.count_down(i == 0 ? 1 : 0); }); });
    done.wait();
}

TEST(TaskPool, whoeverWaitsIsServedWhileEachThreadIsKept) {
    std::latch begun(2), kept(2), served(1);
    TaskPool pool(2);
    const auto runTwo = [&](std::latch& has, TaskPriority priority) {
        for (int i = 0; i < 2; ++i)
            pool.run(
                [&] {
                    has.count_down();
                    served.wait();
                },
                priority);
        has.wait();
    };
    runTwo(begun, TaskPriority::background);
    runTwo(kept, TaskPriority::userWaits);
    pool.run([&] { served.count_down(); });
    served.wait();
}

TEST(TaskPool, goingDropsWhatHasNotBegun) {
    std::atomic<int> ran = 0;
    std::latch started(1), go(1);
    {
        TaskPool pool(1);
        pool.run([&] {
            started.count_down();
            go.wait();
            ++ran;
        });
        started.wait();
        for (int i = 0; i < 100; ++i) pool.run([&] { ++ran; });
        go.count_down();
    }
    EXPECT_GE(ran, 1);
}

TEST(SerialQueue, keepsOrderAndFinishesWhenItGoes) {
    std::vector<int> order;
    {
        SerialQueue queue("tarn.test");
        for (int i = 0; i < 100; ++i) queue.run([&order, i] { order.push_back(i); });
        queue.flush();
        EXPECT_EQ(order.size(), 100U);
        EXPECT_FALSE(queue.isCurrent());
        bool inside = false;
        queue.run([&] {
            inside = queue.isCurrent();
            order.push_back(100);
        });
        queue.flush();
        EXPECT_TRUE(inside);
        queue.run([&] { order.push_back(101); });
        queue.runAfter(3600, [&] { order.push_back(-1); });
    }
    ASSERT_EQ(order.size(), 102U);
    for (int i = 0; i < 102; ++i) EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
}

TEST(Debounce, onlyTheLastOfABurstRuns) {
    SerialQueue queue("tarn.test");
    std::latch done(1);
    std::vector<int> ran;
    Debounce debounce(queue, 0.02);
    for (int i = 0; i < 10; ++i)
        debounce.call([&ran, &done, i] {
            ran.push_back(i);
            done.count_down();
        });
    done.wait();
    queue.flush();
    EXPECT_EQ(ran, std::vector{9});
}

}  // namespace
}  // namespace tarn
