#include "../linux-web/MainLoop.h"
#include "linux/toolkit/MainLoopDispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <limits>
#include <thread>
#include <vector>

namespace kestrin::gtk {
namespace {

using kestrin::test::runFor;
using kestrin::test::runUntil;
using Clock = std::chrono::steady_clock;

struct NoLog : platform::LogSink {
    void write(std::string_view line) override { ADD_FAILURE() << line; }
};

class DispatchTest : public ::testing::Test {
  protected:
    std::unique_ptr<MainLoopDispatch> dispatch =
        std::make_unique<MainLoopDispatch>(std::make_shared<NoLog>());
};

TEST_F(DispatchTest, TasksOfEachThreadRunOnMainInTheOrderOfPosting) {
    constexpr int kThreads = 4, kTasks = 2000;
    std::vector<std::vector<int>> seen(kThreads);
    bool allOnMain = true;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            EXPECT_FALSE(dispatch->isMain());
            for (int i = 0; i < kTasks; ++i)
                dispatch->mainAsync([&, t, i] {
                    allOnMain = allOnMain && dispatch->isMain();
                    seen[std::size_t(t)].push_back(i);
                });
        });
    const auto complete = [&] {
        return std::ranges::all_of(seen, [](const auto& list) { return list.size() == kTasks; });
    };
    EXPECT_TRUE(runUntil(complete));
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(allOnMain);
    for (const auto& list : seen)
        EXPECT_TRUE(std::ranges::is_sorted(list));
}

TEST_F(DispatchTest, DelaysAreKeptAndOrdered) {
    const auto start = Clock::now();
    std::string order;
    double earliest = 1;
    const auto after = [&](double seconds, char name) {
        dispatch->mainAfter(seconds, [&, seconds, name] {
            order += name;
            const std::chrono::duration<double> passed = Clock::now() - start;
            earliest = std::min(earliest, passed.count() - seconds);
        });
    };
    after(0.06, 'c');
    after(0.02, 'b');
    after(0, 'a');
    dispatch->mainAfter(std::numeric_limits<double>::quiet_NaN(), [&] { order += 'a'; });
    EXPECT_TRUE(runUntil([&] { return order.size() == 4; }));
    EXPECT_EQ(order, "aabc");
    EXPECT_GE(earliest, 0);
}

// A task that posts itself again keeps the queue full for ever; everything else must go on beside it.
TEST_F(DispatchTest, AFloodLeavesRoomForRedraws) {
    bool floods = true;
    long flooded = 0;
    std::function<void()> flood = [&] {
        ++flooded;
        std::this_thread::sleep_for(std::chrono::microseconds(50));
        if (floods)
            dispatch->mainAsync(flood);
    };
    dispatch->mainAsync(flood);

    int redraws = 0;
    // The toolkit redraws at a priority below that of events and above that of idle work.
    const auto redraw = [](gpointer data) -> gboolean {
        ++*static_cast<int*>(data);
        return G_SOURCE_CONTINUE;
    };
    const guint source = g_timeout_add_full(G_PRIORITY_HIGH_IDLE + 20, 10, redraw, &redraws, nullptr);
    runFor(1);
    g_source_remove(source);
    floods = false;
    EXPECT_GT(redraws, 10);  // a starved one is not seen once
    EXPECT_GT(flooded, 500); // and the flood itself goes on
    EXPECT_TRUE(runUntil([&, n = flooded]() mutable { return std::exchange(n, flooded) == flooded; }));
}

TEST_F(DispatchTest, ASerialQueueIsInOrderAndFinishesAfterItsEnd) {
    std::vector<int> seen;
    std::atomic<int> done = 0;
    auto queue = dispatch->makeSerialQueue("test");
    for (int i = 0; i < 500; ++i)
        queue->async([&, i] {
            seen.push_back(i);
            ++done;
        });
    queue.reset();
    EXPECT_TRUE(runUntil([&] { return done == 500; }));
    EXPECT_TRUE(std::ranges::is_sorted(seen));
}

TEST_F(DispatchTest, ASerialQueueMayEndInsideItsOwnTask) {
    std::atomic<int> done = 0;
    std::shared_ptr<platform::SerialQueue> queue = dispatch->makeSerialQueue("test");
    auto* const raw = queue.get();
    raw->async([&, held = std::move(queue)]() mutable {
        held.reset();
        ++done;
    });
    EXPECT_TRUE(runUntil([&] { return done == 1; }));
}

TEST_F(DispatchTest, ATimerMayEndInsideItsOwnTaskAndNeverFiresAgain) {
    int ticks = 0;
    std::unique_ptr<platform::RepeatingTimer> timer;
    const auto held = std::make_shared<int>(0);
    timer = dispatch->every(0.002, [&, held] {
        timer.reset();
        ticks += 1 + *held; // what the task holds outlives it
    });
    EXPECT_TRUE(runUntil([&] { return ticks == 1; }));
    runFor(0.03);
    EXPECT_EQ(ticks, 1);
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(DispatchTest, ATimerMayEndOnAnotherThread) {
    std::atomic<int> ticks = 0;
    for (int i = 0; i < 50; ++i) {
        auto timer = dispatch->every(0.001, [&] { ++ticks; });
        runUntil([&, n = ticks.load()] { return ticks > n; });
        std::thread([held = std::move(timer)] {}).join();
    }
    const int present = ticks;
    runFor(0.02);
    EXPECT_EQ(ticks, present);
}

TEST_F(DispatchTest, WhatIsLeftIsDroppedWithTheQueue) {
    const auto held = std::make_shared<int>(0);
    dispatch->mainAsync([held] { FAIL(); });
    dispatch->mainAfter(0.001, [held] { FAIL(); });
    const auto timer = dispatch->every(0.001, [held] { FAIL(); });
    dispatch.reset();
    EXPECT_EQ(held.use_count(), 2); // the timer's own
    runFor(0.02);
}

} // namespace
} // namespace kestrin::gtk
