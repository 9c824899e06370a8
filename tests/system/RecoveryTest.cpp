// The page's process dies, and dies again, under a running host.

#include "Processes.h"
#include "Stage.h"

#include <gtest/gtest.h>

#include <csignal>

namespace kestrin::test {

namespace {

TEST(Recovery, APageWhoseProcessDiesComesBackOnceAndTheHostGoesOn) {
    Stage stage({});
    const auto tracks = [&] {
        stage.forgetTold();
        return stage.runUntil([&] { return stage.told("pose").size() > 5; }, kPatience);
    };
    const auto kill = [&] {
        const auto processes = webProcesses();
        ASSERT_EQ(processes.size(), 1U);
        ::kill(processes[0], SIGKILL);
        EXPECT_TRUE(stage.runUntil([&] { return webProcesses() != processes; }, kPatience));
    };
    ASSERT_TRUE(tracks());
    const auto error = stage.view().subviews().back();
    kill();
    EXPECT_TRUE(tracks());
    EXPECT_FALSE(stage.told("projection").empty());
    EXPECT_TRUE(error->isHidden());

    // On a slow machine the second one is not soon enough, but the third is.
    for (int deaths = 0; deaths < 2 && error->isHidden(); ++deaths) {
        kill();
        EXPECT_TRUE(stage.runUntil([&] { return !error->isHidden() || webProcesses().size() == 1; }));
    }
    EXPECT_FALSE(error->isHidden());
    const auto frames = stage.tracking().frames();
    stage.runFor(1);
    EXPECT_GT(stage.tracking().frames(), frames);
    EXPECT_TRUE(webProcesses().empty());

    stage.view().start();
    EXPECT_TRUE(tracks());
    EXPECT_TRUE(error->isHidden());
}

} // namespace

} // namespace kestrin::test
