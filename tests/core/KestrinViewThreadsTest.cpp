#include "KestrinViewTest.h"
#include "support/FakePixelBuffer.h"

#include <atomic>
#include <random>
#include <thread>

namespace kestrin {

using namespace platform;
using namespace test;

using Threads = KestrinViewTest;

namespace {

/// Threads that take turns loosely: nobody gets more than a few steps ahead of main.
class Rounds {
  public:
    static constexpr int kStepsPerRound = 4;

    /// Whether to take the step; waits for its round.
    bool waitFor(int step) const {
        while (!m_done && step >= kStepsPerRound * (m_round + 1))
            std::this_thread::yield();
        return !m_done;
    }
    void next() { ++m_round; }
    void finish() { m_done = true; }

  private:
    std::atomic<int> m_round = 0;
    std::atomic<bool> m_done = false;
};

void sendAll(FakeArSession& session, int step) {
    const auto plane = std::make_shared<ArPlaneAnchor>();
    plane->geometry = std::make_shared<ArPlaneGeometry>(ArPlaneGeometry{{{1, 2, 3}}, {0, 0, 0}});
    const auto frame = makeFrame(step);
    frame->capturedImage = std::make_shared<FakePixelBuffer>(64, 48);
    frame->ambientIntensity = step;
    const InterfaceOrientation::Pin pin(1 + step / 16 % 4);
    session.send(frame);
    session.add({plane});
    session.update({plane});
    session.remove({plane});
}

void operate(KestrinView& view, unsigned choice, const KestrinSettings& settings) {
    switch (choice % 8) {
    case 0:
        return view.pause();
    case 1:
        return view.resume();
    case 2:
        return view.resize(choice % 500, 300);
    case 3:
        return view.hide();
    case 4:
        return view.show();
    case 5:
        return view.setup(settings);
    case 6:
        return view.start();
    default:
        return view.destroy();
    }
}

} // namespace

// Frames, anchors and turns on the session thread, drawing on its own, hosts that call what may be called
// from anywhere, and main with resizes, commands and notifications. The sanitizers watch.
TEST_F(Threads, WorkTogether) {
    constexpr int kRounds = 300;
    startUp();
    post("onResumeAREngine");
    FakeRenderPeer& peer = *system->graphics.newest;
    FakeArSession& source = session();
    Rounds rounds;
    std::atomic<int> operations = 0;

    std::vector<std::thread> threads;
    threads.emplace_back([&] {
        for (int step = 0; rounds.waitFor(step); ++step)
            sendAll(source, step);
    });
    threads.emplace_back([&] {
        for (int step = 0; rounds.waitFor(step); ++step)
            peer.draw();
    });
    for (unsigned seed = 1; seed <= 2; ++seed)
        threads.emplace_back([&, seed] {
            std::minstd_rand random(seed);
            for (int step = 0; rounds.waitFor(step); ++step, ++operations)
                operate(*view, unsigned(random()), settingsFor("shop.example", "A1"));
        });
    for (int round = 0; round < kRounds; ++round, rounds.next()) {
        view->toolkitResized({200.0 + round % 7, 300});
        page().post("kestrin", "onSubmit");
        if (round % 5 == 0)
            page().post("kestrin", base64Encode(R"({"eventName":"onResumeAREngine"})"));
        notify(round % 2 == 0 ? kDidBecomeActive : kWillResignActive);
        advance(0.02);
        while (operations < round)
            std::this_thread::yield();
    }
    rounds.finish();
    for (auto& thread : threads)
        thread.join();
    runMain();

    // Nothing is stuck: the view can be started once more, and a frame reaches the page.
    setup();
    view->start();
    runMain();
    view->resume();
    post("onResumeAREngine");
    runMain();
    takeScripts();
    session().send(makeFrame(1));
    runMain();
    EXPECT_EQ(std::ranges::count_if(takeScripts(), [](const auto& s) { return s.find("onPose") != s.npos; }),
              1);
}

} // namespace kestrin
