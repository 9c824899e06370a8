#include "services/util/MainThread.h"
#include "services/util/Singleton.h"
#include "services/util/Snapshot.h"
#include "support/FakePlatform.h"

#include <gmock/gmock.h>

#include <atomic>
#include <set>
#include <thread>

using namespace kestrin;

namespace {

struct Inner {
    static inline std::atomic<int> made = 0;
    Inner() { ++made; }
};
struct Outer {
    std::shared_ptr<Inner> inner = singleton<Inner>();
};

void inThreads(int count, const std::function<void(int)>& work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back(work, i);
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

TEST(Singleton, IsMadeOnceByWhoeverComesFirst) {
    Inner::made = 0;
    std::mutex mutex;
    std::set<void*> seen;
    inThreads(8, [&](int) {
        const auto outer = singleton<Outer>();
        const std::lock_guard lock(mutex);
        seen.insert(outer.get());
        seen.insert(outer->inner.get());
    });
    EXPECT_EQ(seen.size(), 2U);
    EXPECT_EQ(Inner::made, 1);

    const auto former = singleton<Inner>();
    resetSingletons();
    EXPECT_NE(singleton<Inner>(), former);
    EXPECT_EQ(Inner::made, 2);
    resetSingletons();
}

TEST(Snapshot, LosesNoUpdateAndNeverChangesUnderAReader) {
    Snapshot<std::vector<int>> snapshot;
    const auto before = snapshot.read();
    inThreads(4, [&](int which) {
        for (int i = 0; i < 200; ++i) {
            if (which == 0) {
                const auto seen = snapshot.read();
                EXPECT_EQ(*seen, std::vector<int>(seen->size(), 1));
            } else {
                snapshot.update([](auto& values) { values.push_back(1); });
            }
        }
    });
    EXPECT_EQ(snapshot.read()->size(), 600U);
    EXPECT_TRUE(before->empty());
}

using MainThreadTest = test::PlatformTest;

TEST_F(MainThreadTest, RunsAtOnceOnMainAndLaterFromElsewhere) {
    int runs = 0;
    onMain([&] { ++runs; });
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(divertToMain([&] { ++runs; }));
    test::offMain([&] {
        onMain([&] { ++runs; });
        EXPECT_TRUE(divertToMain([&] { ++runs; }));
    });
    EXPECT_EQ(runs, 1);
    runMain();
    EXPECT_EQ(runs, 3);
}
