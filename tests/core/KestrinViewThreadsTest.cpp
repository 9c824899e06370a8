#include "KestrinViewTest.h"
#include "support/FakePixelBuffer.h"

#include <atomic>
#include <functional>
#include <random>
#include <thread>

namespace kestrin {

using namespace platform;
using namespace test;

using Threads = KestrinViewTest;

namespace {

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

} // namespace

// Frames, anchors and turns on the session thread, drawing on its own, hosts that call what may be called
// from anywhere, and main with resizes, commands and notifications. The sanitizers watch.
TEST_F(Threads, WorkTogether) {
    constexpr int kSteps = 600;
    startUp();
    post("onResumeAREngine");
    FakeRenderPeer& peer = *system->graphics.newest;
    FakeArSession& source = session();
    std::atomic<int> running = 0;
    std::vector<std::thread> threads;
    const auto repeat = [&](std::function<void(int)> work) {
        ++running;
        threads.emplace_back([&running, work] {
            for (int step = 0; step < kSteps; ++step) {
                work(step);
                std::this_thread::yield();
            }
            --running;
        });
    };
    repeat([&](int step) { sendAll(source, step); });
    repeat([&](int step) {
        if (step % 10 == 0) // a drawing waits for the page and sleeps
            peer.draw();
    });
    const auto parent = makeView<View>();
    auto operations = divertedOperations();
    operations.insert(operations.end(), {{"", [&] { view->pause(); }},
                                         {"", [&] { view->resume(); }},
                                         {"", [&] { view->addToParentView(parent); }},
                                         {"", [&] { view->removeFromParentView(); }},
                                         {"", [&] { view->clipToParent(); }}});
    for (const unsigned seed : {3, 5})
        repeat([&, random = std::minstd_rand(seed)](int) mutable {
            operations[random() % operations.size()].second();
        });
    for (int round = 0; running > 0; ++round) {
        view->toolkitResized({200.0 + round % 7, 300});
        peer.resizeDrawable({});
        page().post("kestrin", base64Encode(R"({"eventName":"onResumeAREngine"})"));
        notify(round % 2 == 0 ? kDidBecomeActive : kWillResignActive);
        advance(0.02);
    }
    for (auto& thread : threads)
        thread.join();

    // Nothing is stuck: the view can be started once more, and a frame reaches the page.
    startUp();
    view->resume();
    post("onResumeAREngine");
    takeScripts();
    session().send(makeFrame(1));
    runMain();
    EXPECT_EQ(takeScripts().size(), 1U);
}

} // namespace kestrin
