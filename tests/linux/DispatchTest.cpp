#include "linux/toolkit/MainLoopDispatch.h"

#include <gtest/gtest.h>

#include <glib.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <limits>
#include <stdexcept>
#include <thread>
#include <vector>

namespace kestrin::gtk {
namespace {

using platform::Task;
using Clock = std::chrono::steady_clock;

struct CountingLog : platform::LogSink {
    void write(std::string_view line) override {
        const std::lock_guard lock(mutex);
        lines.emplace_back(line);
    }
    std::mutex mutex;
    std::vector<std::string> lines;
};

class DispatchTest : public ::testing::Test {
  protected:
    static bool runUntil(const std::function<bool()>& done, double seconds = 10) {
        const auto end = Clock::now() + std::chrono::duration<double>(seconds);
        const auto goOn = [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; };
        const guint tick = g_timeout_add(1, goOn, nullptr);
        while (!done() && Clock::now() < end)
            g_main_context_iteration(nullptr, true);
        g_source_remove(tick);
        return done();
    }

    std::shared_ptr<CountingLog> log = std::make_shared<CountingLog>();
    std::unique_ptr<MainLoopDispatch> dispatch = std::make_unique<MainLoopDispatch>(log);
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

TEST_F(DispatchTest, ATaskNeverRunsInsideThePostingCall) {
    std::string order;
    dispatch->mainAsync([&] {
        dispatch->mainAsync([&] { order += 'c'; });
        order += 'b';
    });
    order += 'a';
    EXPECT_TRUE(runUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, "abc");
}

TEST_F(DispatchTest, DelaysAreKeptAndOrdered) {
    const auto start = Clock::now();
    std::string order;
    std::vector<double> late;
    const auto after = [&](double seconds, char name) {
        dispatch->mainAfter(seconds, [&, seconds, name] {
            order += name;
            late.push_back(std::chrono::duration<double>(Clock::now() - start).count() - seconds);
        });
    };
    after(0.06, 'c');
    after(0.02, 'b');
    after(0, 'a');
    dispatch->mainAfter(std::numeric_limits<double>::quiet_NaN(), [&] { order += 'a'; });
    EXPECT_TRUE(runUntil([&] { return order.size() == 4; }));
    EXPECT_EQ(order, "aabc");
    EXPECT_GE(*std::ranges::min_element(late), 0);
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

    struct Redraws {
        int count = 0;
        Clock::time_point last = Clock::now();
        Clock::duration longest{};
    } redraws;
    // The toolkit redraws at a priority below that of events and above that of idle work.
    const auto redraw = [](gpointer data) -> gboolean {
        auto& self = *static_cast<Redraws*>(data);
        ++self.count;
        self.longest = std::max(self.longest, Clock::now() - std::exchange(self.last, Clock::now()));
        return G_SOURCE_CONTINUE;
    };
    const guint source = g_timeout_add_full(G_PRIORITY_HIGH_IDLE + 20, 10, redraw, &redraws, nullptr);
    runUntil([] { return false; }, 1);
    g_source_remove(source);
    floods = false;
    EXPECT_GT(redraws.count, 40);
    EXPECT_LT(redraws.longest, std::chrono::milliseconds(100));
    EXPECT_GT(flooded, 2000); // and the flood itself keeps most of the time
    EXPECT_TRUE(runUntil([&, n = flooded]() mutable { return std::exchange(n, flooded) == flooded; }));
}

TEST_F(DispatchTest, AnExceptionEndsItsTaskOnly) {
    std::atomic<int> ran = 0;
    dispatch->mainAsync([] { throw std::runtime_error("Invalid Settings"); });
    dispatch->mainAsync([&] { ++ran; });
    dispatch->globalAsync([] { throw 7; });
    dispatch->globalAsync([&] { ++ran; });
    const auto queue = dispatch->makeSerialQueue("test");
    queue->async([] { throw std::runtime_error("serial"); });
    queue->async([&] { ++ran; });
    int ticks = 0;
    const auto timer = dispatch->every(0.002, [&] {
        ++ticks;
        throw std::runtime_error("tick");
    });
    EXPECT_TRUE(runUntil([&] { return ran == 3 && ticks >= 2; }));
    const std::lock_guard lock(log->mutex);
    for (const char* part : {"Invalid Settings", "unknown error", "serial", "tick"})
        EXPECT_TRUE(std::ranges::any_of(log->lines, [&](const std::string& line) {
            return line.find(part) != std::string::npos;
        })) << part;
}

TEST_F(DispatchTest, WorkersRunSideBySide) {
    std::atomic<int> here = 0, met = 0;
    for (int i = 0; i < 4; ++i)
        dispatch->globalAsync([&] {
            ++here;
            for (int wait = 0; wait < 2000 && here < 4; ++wait)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            met += here == 4 ? 1 : 100;
        });
    EXPECT_TRUE(runUntil([&] { return met >= 4; }));
    EXPECT_EQ(met, 4);
}

TEST_F(DispatchTest, ASerialQueueIsInOrderAndFinishesAfterItsEnd) {
    std::vector<int> seen;
    std::atomic<int> done = 0;
    std::atomic<bool> isBusy = false, overlapped = false;
    auto queue = dispatch->makeSerialQueue("test");
    for (int i = 0; i < 500; ++i)
        queue->async([&, i] {
            overlapped = overlapped || isBusy.exchange(true);
            seen.push_back(i);
            isBusy = false;
            ++done;
        });
    queue.reset();
    EXPECT_TRUE(runUntil([&] { return done == 500; }));
    EXPECT_FALSE(overlapped);
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

TEST_F(DispatchTest, ATimerKeepsItsRateWithoutDrift) {
    const auto start = Clock::now();
    std::vector<double> times;
    const auto timer = dispatch->every(
        0.01, [&] { times.push_back(std::chrono::duration<double>(Clock::now() - start).count()); });
    EXPECT_TRUE(runUntil([&] { return times.size() == 50; }));
    EXPECT_GE(times.front(), 0.01);
    EXPECT_NEAR(times.back(), 0.5, 0.1);
}

TEST_F(DispatchTest, ATimerMayEndInsideItsOwnTaskAndNeverFiresAgain) {
    int ticks = 0;
    std::unique_ptr<platform::RepeatingTimer> timer;
    const auto held = std::make_shared<int>(0);
    timer = dispatch->every(0.002, [&, held] {
        ++ticks;
        timer.reset();
        ++*held; // what the task holds outlives it
    });
    EXPECT_TRUE(runUntil([&] { return ticks == 1; }));
    runUntil([] { return false; }, 0.03);
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
    runUntil([] { return false; }, 0.02);
    EXPECT_EQ(ticks, present);
}

TEST_F(DispatchTest, WhatIsLeftIsDroppedWithTheQueue) {
    const auto held = std::make_shared<int>(0);
    dispatch->mainAsync([held] { FAIL(); });
    dispatch->mainAfter(0.001, [held] { FAIL(); });
    const auto timer = dispatch->every(0.001, [held] { FAIL(); });
    dispatch.reset();
    EXPECT_EQ(held.use_count(), 2); // the timer's own
    runUntil([] { return false; }, 0.02);
}

TEST_F(DispatchTest, TheQueueMayEndInsideItsOwnTask) {
    bool ran = false;
    dispatch->mainAsync([&] {
        dispatch.reset();
        ran = true;
    });
    dispatch->mainAsync([] { FAIL(); });
    EXPECT_TRUE(runUntil([&] { return ran; }));
    runUntil([] { return false; }, 0.02);
}

} // namespace
} // namespace kestrin::gtk
