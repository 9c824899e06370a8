#include "services/util/Singleton.h"
#include "services/util/Snapshot.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace kestrin;

namespace {

struct Inner {};
struct Outer {
    std::shared_ptr<Inner> inner = singleton<Inner>();
};

} // namespace

TEST(SharedState, SingletonsAreMadeOnceAndNoUpdateIsLost) {
    Snapshot<std::vector<std::shared_ptr<Inner>>> seen;
    const auto before = seen.read();
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            for (int each = 0; each < 100; ++each)
                seen.update([](auto& values) { values.push_back(singleton<Outer>()->inner); });
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(*seen.read(), std::vector(800, singleton<Inner>()));
    EXPECT_TRUE(before->empty());
    resetSingletons();
}
