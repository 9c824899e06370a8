#include "Recording.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrin::session::test {

/// A program of its own, because the process that is killed is a copy of one without threads.
TEST(RecordingKilled, PlaysUpToThere) {
    const kestrin::test::TemporaryFolder scratch;
    int written[2];
    ASSERT_EQ(pipe(written), 0);
    const pid_t child = fork();
    if (child == 0) {
        const auto writer = createRecording(scratch / "desk.krs");
        for (int i = 0;; ++i) {
            if (writer->add(testFrame(i), testPicture(96, 64, unsigned(i))) || write(written[1], "x", 1) != 1)
                _exit(1);
        }
    }
    close(written[1]);
    char x = 0;
    std::size_t count = 0;
    while (count < 20 && read(written[0], &x, 1) == 1)
        ++count;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    ASSERT_EQ(count, 20U);
    while (read(written[0], &x, 1) == 1)
        ++count;

    const auto reader = openRecording(scratch / "desk.krs");
    EXPECT_FALSE(reader->isFinished());
    EXPECT_GE(reader->size(), count);
    Nv12Buffer picture(96, 64);
    for (std::size_t i = 0; i < reader->size(); ++i) {
        ASSERT_TRUE(reader->picture(i, picture));
        EXPECT_EQ(pixelsOf(picture), pixelsOf(testPicture(96, 64, unsigned(i)))) << i;
    }
}

} // namespace kestrin::session::test
