#include "camera/CountingSemaphore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace kestrin {

using namespace std::chrono_literals;

TEST(CountingSemaphore, KeepsEverySignal) {
    CountingSemaphore semaphore(1);
    for (int i = 0; i < 100'000; ++i)
        semaphore.signal();
    for (int i = 0; i < 100'001; ++i)
        ASSERT_TRUE(semaphore.waitFor(0ms)) << i;
    EXPECT_FALSE(semaphore.waitFor(0ms));
}

TEST(CountingSemaphore, WakesAsManyAsWereSignalled) {
    constexpr int kRounds = 2000;
    CountingSemaphore semaphore(0);
    std::atomic<int> passed = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 2; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < kRounds; ++i) {
                semaphore.wait();
                ++passed;
            }
        });
    for (int t = 0; t < 2; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < kRounds; ++i)
                semaphore.signal();
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(passed, 2 * kRounds);
    EXPECT_FALSE(semaphore.waitFor(0ms));
}

} // namespace kestrin
