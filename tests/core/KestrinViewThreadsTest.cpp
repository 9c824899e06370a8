#include "KestrinViewTest.h"
#include "support/FakePixelBuffer.h"

#include <atomic>
#include <random>
#include <thread>

namespace kestrin {

using namespace platform;
using namespace test;

using Threads = KestrinViewTest;

// Frames, anchors and turns on the session thread, drawing on its own, hosts that call what may be called
// from anywhere, and main with resizes, commands and notifications. The sanitizers watch.
TEST_F(Threads, WorkTogether) {
    constexpr int kOperations = 1500; // of the hosts
    startUp();
    post("onResumeAREngine");
    FakeRenderPeer& peer = *system->graphics.newest;
    std::atomic<bool> done = false;
    std::atomic<int> operations = 0;

    std::thread sessionThread([&] {
        const auto picture = std::make_shared<FakePixelBuffer>(64, 48);
        const auto plane = std::make_shared<ArPlaneAnchor>();
        plane->geometry = std::make_shared<ArPlaneGeometry>(ArPlaneGeometry{{{1, 2, 3}}, {0, 0, 0}});
        for (int i = 0; !done; ++i) {
            const auto frame = makeFrame(i);
            frame->capturedImage = picture;
            frame->ambientIntensity = i;
            const InterfaceOrientation::Pin pin(1 + i / 16 % 4);
            session().send(frame);
            session().add({plane});
            session().update({plane});
            session().remove({plane});
            std::this_thread::yield();
        }
    });
    std::thread drawing([&] {
        while (!done)
            peer.draw();
    });
    std::vector<std::thread> hosts;
    for (unsigned seed = 1; seed <= 2; ++seed)
        hosts.emplace_back([&, seed] {
            std::minstd_rand random(seed);
            while (!done) {
                switch (random() % 8) {
                case 0:
                    view->pause();
                    break;
                case 1:
                    view->resume();
                    break;
                case 2:
                    view->resize(double(random() % 500), 300);
                    break;
                case 3:
                    view->hide();
                    break;
                case 4:
                    view->show();
                    break;
                case 5:
                    view->setup(settingsFor("shop.example", "A1"));
                    break;
                case 6:
                    view->start();
                    break;
                default:
                    view->destroy();
                }
                ++operations;
                std::this_thread::yield();
            }
        });
    for (int i = 0; operations < kOperations; ++i) {
        view->toolkitResized({200.0 + i % 7, 300});
        page().post("kestrin", "onSubmit");
        if (i % 5 == 0)
            page().post("kestrin", base64Encode(R"({"eventName":"onResumeAREngine"})"));
        notify(i % 2 == 0 ? kDidBecomeActive : kWillResignActive);
        for (int turn = 0; turn < 20 && system->queues.runOneMain(); ++turn) {
        }
        advance(0.02);
    }
    done = true;
    sessionThread.join();
    drawing.join();
    for (auto& host : hosts)
        host.join();
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
