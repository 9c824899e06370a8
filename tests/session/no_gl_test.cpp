#include "Listener.h"
#include "session/SimulatedTracking.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace kestrin::session::test {

/// A program of its own, because EGL reads its environment once.
TEST(NoGl, IsOneLogLineAndNoFrame) {
    setenv("__EGL_VENDOR_LIBRARY_FILENAMES", "/nowhere.json", 1);
    std::vector<std::string> lines;
    auto listener = std::make_shared<Listener>();
    SimulatedOptions options;
    options.session.pacing = Pacing::stepped;
    options.session.log = [&](std::string_view line) { lines.emplace_back(line); };
    SimulatedTracking tracking(options);
    auto session = tracking.makeSession();
    session->setDelegate(listener);
    session->run({}, 0);
    EXPECT_FALSE(tracking.step());
    EXPECT_TRUE(listener->events().empty());
    EXPECT_THAT(lines, testing::ElementsAre(testing::StartsWith("Kestrin - session - no frames: EGL")));
}

} // namespace kestrin::session::test
