#include "CaptureTest.h"
#include "linux/toolkit/GRef.h"
#include "support/TemporaryFolder.h"

#include <gio/gio.h>

#include <algorithm>
#include <initializer_list>

namespace kestrin::gtk {
namespace {

/// A PipeWire daemon of the test's own, with one camera, "Test pattern", and a session manager. Made before
/// the process uses PipeWire for the first time.
class PrivatePipewire {
  public:
    PrivatePipewire() {
        m_folder.write("daemon.conf", kConfiguration);
        g_setenv("XDG_RUNTIME_DIR", m_folder.path().c_str(), TRUE);
        start();
    }
    ~PrivatePipewire() { kill(); }

    void start() {
        m_daemon = run({"pipewire", "-c", (m_folder / "daemon.conf").c_str()});
        for (int waits = 0; waits < 1000 && !std::filesystem::exists(m_folder / "pipewire-0"); ++waits)
            g_usleep(10'000);
        m_manager = run({"dbus-run-session", "--", "wireplumber"});
    }
    /// The session manager ends with its daemon.
    void kill() {
        g_subprocess_force_exit(m_daemon.get());
        g_subprocess_wait(m_daemon.get(), nullptr, nullptr);
        g_subprocess_wait(m_manager.get(), nullptr, nullptr);
        std::filesystem::remove(m_folder / "pipewire-0");
    }

  private:
    static constexpr const char* kConfiguration = R"(
context.properties = { core.daemon = true core.name = pipewire-0 support.dbus = false }
context.spa-libs = { videotestsrc = videotestsrc/libspa-videotestsrc support.* = support/libspa-support }
context.modules = [
  { name = libpipewire-module-protocol-native }
  { name = libpipewire-module-metadata }
  { name = libpipewire-module-spa-node-factory }
  { name = libpipewire-module-client-node }
  { name = libpipewire-module-adapter }
  { name = libpipewire-module-link-factory }
  { name = libpipewire-module-session-manager }
  { name = libpipewire-module-access }
]
context.objects = [ { factory = spa-node-factory args = {
  factory.name = videotestsrc node.name = pattern node.description = "Test pattern" media.class = "Video/Source"
} } ]
)";

    GRef<GSubprocess> run(std::initializer_list<const char*> words) {
        std::vector<const char*> arguments(words);
        arguments.push_back(nullptr);
        GFailure failure;
        auto process = GRef<GSubprocess>::adopt(g_subprocess_newv(
            arguments.data(),
            GSubprocessFlags(G_SUBPROCESS_FLAGS_STDERR_SILENCE | G_SUBPROCESS_FLAGS_STDOUT_SILENCE),
            failure.out()));
        if (!process)
            throw std::runtime_error(failure.text());
        return process;
    }

    const kestrin::test::TemporaryFolder m_folder;
    GRef<GSubprocess> m_daemon, m_manager;
};

TEST_F(CaptureTest, ACameraOfPipewireComesBackAfterItsDaemonWasKilled) {
    PrivatePipewire daemon;
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
