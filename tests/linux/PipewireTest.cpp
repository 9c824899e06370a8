#include "CaptureTest.h"
#include "PrivatePipewire.h"

#include <algorithm>

namespace kestrin::gtk {
namespace {

TEST_F(CaptureTest, ACameraOfPipewireComesBackAfterItsDaemonWasKilled) {
    kestrin::test::PrivatePipewire daemon;
    ASSERT_TRUE(open("test PATT")) << lastLine() << ", though part of its name is enough";
    EXPECT_EQ(
        std::ranges::count(lines(), "Kestrin::YUVCameraAccess::initialise::Back Device Name = Test pattern"),
        1);
    access().start();
    ASSERT_TRUE(consumer->waitFor(5));
    EXPECT_EQ(consumer->newest->planeCount(), 2);
    EXPECT_GT(consumer->times.back(), consumer->times.front());

    const auto failures = [&] {
        return std::ranges::count_if(lines(), [](const std::string& line) {
            return line.starts_with("Kestrin - Camera - Test pattern has stopped: ");
        });
    };
    daemon.kill();
    EXPECT_TRUE(waitUntil([&] { return failures() > 0; })) << lastLine();
    const std::size_t before = consumer->count();
    access().stop();
    access().deinitialise();
    EXPECT_FALSE(access().initialise());
    EXPECT_EQ(lastLine(), "Kestrin::YUVCameraAccess::initialise::Couldn't find suitable camera.");

    daemon.start();
    EXPECT_EQ(consumer->count(), before);
    ASSERT_TRUE(waitUntil([&] { return reopen(); })) << lastLine();
    EXPECT_TRUE(access().start());
    EXPECT_TRUE(consumer->waitFor(5));
    EXPECT_EQ(failures(), 1) << "told once";
    close();
}

} // namespace
} // namespace kestrin::gtk
