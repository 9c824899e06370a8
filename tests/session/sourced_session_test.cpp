#include "FakeSource.h"
#include "Listener.h"
#include "session/SourcedSession.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace kestrin::session::test {

namespace {

using testing::ElementsAre;
using FrameRef = std::shared_ptr<const platform::ArFrame>;

struct SourcedSessionTest : testing::Test {
    std::shared_ptr<FakeSource::Script> script = std::make_shared<FakeSource::Script>();
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    platform::InterfaceOrientation orientation{1};
    platform::ArConfiguration configuration;

    std::shared_ptr<SourcedSession> make(Pacing pacing, int buffers = 6) {
        auto session = std::make_shared<SourcedSession>(std::make_unique<FakeSource>(script),
                                                        SessionOptions{pacing, buffers, &orientation, {}});
        session->setDelegate(listener);
        return session;
    }
};

TEST_F(SourcedSessionTest, WhatAPauseLeavesUntoldIsToldOnceInTheNextRun) {
    script->anchors[0].added = {makeAnchor("A"), makeAnchor("B")};
    script->anchors[1].updated = {makeAnchor("A")};
    const auto session = make(Pacing::stepped);
    session->run(configuration, 0);
    listener->onFrame = [&](const FrameRef&) {
        session->pause();
        session->removeAnchor("B");
    };
    EXPECT_TRUE(session->step());
    EXPECT_THAT(listener->events(), ElementsAre("frame"));
    listener->onFrame = nullptr;
    session->run(configuration, 0);
    EXPECT_TRUE(session->step());
    EXPECT_THAT(listener->events(), ElementsAre("frame", "frame", "+A"));
}

TEST_F(SourcedSessionTest, HeldBuffersDropFramesBeforeAnyoneSeesThem) {
    script->rate = 200;
    const auto session = make(Pacing::realTime, 3);
    std::vector<FrameRef> held; // touched by the callback for the first three frames only
    std::atomic<int> count = 0;
    listener->onFrame = [&](const FrameRef& frame) {
        if (count < 3)
            held.push_back(frame);
        ++count;
    };
    session->run(configuration, 0);
    while (count < 3 || script->skipped < 5)
        std::this_thread::yield();
    EXPECT_EQ(listener->count("frame"), 3U);
    EXPECT_EQ(held[0]->capturedImage->plane(0).data[0], std::uint8_t(held[0]->timestamp * 200 + 0.5))
        << "held pixels do not change";
    held.clear();
    EXPECT_TRUE(listener->waitFor("frame", 6));
}

TEST_F(SourcedSessionTest, EndsInItsOwnCallback) {
    auto session = make(Pacing::realTime);
    std::atomic<bool> hasRun = false;
    listener->onFrame = [&](const FrameRef&) {
        while (!hasRun)
            std::this_thread::yield();
        session.reset();
    };
    session->run(configuration, 0);
    hasRun = true;
    ASSERT_TRUE(listener->waitFor("frame", 1));
    while (script->ended == 0)
        std::this_thread::yield();
    EXPECT_EQ(listener->count("frame"), 1U);
}

TEST_F(SourcedSessionTest, CommandsComeFromSeveralThreadsAndTheDelegateMayGo) {
    script->rate = 1000;
    const auto session = make(Pacing::realTime, 4);
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (unsigned i = 0; i < 60; ++i) {
                session->run(configuration, (t + i) % 4);
                EXPECT_TRUE(session->currentFrame()->camera);
                session->removeAnchor("A");
                orientation.set(int(i % 4) + 1);
                if (t % 2 == 0)
                    session->pause();
                std::this_thread::sleep_for(std::chrono::microseconds(300));
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    const std::size_t before = listener->count("frame");
    session->run(configuration, 0);
    EXPECT_TRUE(listener->waitFor("frame", before + 3));
    const std::weak_ptr<Listener> watch = listener;
    listener.reset();
    for (const int made = script->made; script->made < made + 5;)
        std::this_thread::yield();
    EXPECT_TRUE(watch.expired());
}

} // namespace

} // namespace kestrin::session::test
