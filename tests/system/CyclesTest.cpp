// Hosts that set up, start and destroy over and over.

#include "Processes.h"
#include "Stage.h"

#include <gtest/gtest.h>

namespace kestrin::test {

namespace {

class Cycles : public testing::Test {
  protected:
    static StageOptions options() {
        StageOptions options;
        options.width = 320;
        options.height = 240;
        return options;
    }

    void expectTracking() {
        stage.forgetTold();
        ASSERT_TRUE(stage.runUntil([&] { return stage.told("pose").size() > 1; }, kPatience));
    }

    /// Goes round `warmUp` times and then `times`, and says what that has cost.
    Memory growth(int warmUp, int times, const std::function<void()>& again) {
        Memory before;
        expectTracking();
        for (int i = 0; i < warmUp + times && !HasFatalFailure(); ++i) {
            if (i == warmUp)
                before = memory();
            again();
            expectTracking();
            EXPECT_LE(webProcesses().size(), 2U) << i;
        }
        EXPECT_TRUE(stage.runUntil([&] { return webProcesses().size() == 1; }, kPatience));
        Memory after = memory();
        // The last round's pictures may still be on their way out.
        stage.runUntil([&] { return (after = memory()).inUse < before.inUse + 2; }, kPatience);
        std::cout << "resident " << before.resident << " to " << after.resident << " MB, in use "
                  << before.inUse << " to " << after.inUse << " MB\n";
        return {after.resident - before.resident, after.inUse - before.inUse};
    }

    Stage stage{options()};
};

TEST_F(Cycles, FiftyTimesTheSameView) {
    const Memory grown = growth(10, 50, [&] {
        stage.view().destroy();
        stage.start();
    });
    EXPECT_LT(grown.resident, 8);
    EXPECT_LT(grown.inUse, 2);
}

// What is resident goes up and down by more, as the allocator keeps what each of the ended threads had.
TEST_F(Cycles, NewViewsInNewWindows) {
    const Memory grown = growth(5, 10, [&] { stage.reopen(); });
    EXPECT_LT(grown.inUse, 2);
}

} // namespace

} // namespace kestrin::test
