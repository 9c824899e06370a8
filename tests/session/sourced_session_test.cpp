#include "FakeSource.h"
#include "Listener.h"
#include "session/Geometry.h"
#include "session/SourcedSession.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace kestrin::session::test {

namespace {

using platform::ArFrame;
using testing::ElementsAre;
using FrameRef = std::shared_ptr<const ArFrame>;

struct SourcedSessionTest : testing::Test {
    std::shared_ptr<FakeSource::Script> script = std::make_shared<FakeSource::Script>();
    std::shared_ptr<Listener> listener = std::make_shared<Listener>();
    platform::InterfaceOrientation orientation{1};
    platform::ArConfiguration configuration;

    std::shared_ptr<SourcedSession> make(Pacing pacing, int buffers = 6) {
        configuration.lightEstimationEnabled = true;
        auto session = std::make_shared<SourcedSession>(std::make_unique<FakeSource>(script),
                                                        SessionOptions{pacing, buffers, &orientation, {}});
        session->setDelegate(listener);
        return session;
    }
    std::shared_ptr<SourcedSession> makeStepped() {
        auto session = make(Pacing::stepped);
        session->run(configuration, 0);
        return session;
    }
};

TEST_F(SourcedSessionTest, CurrentFrameExistsFromRunOnAndSurvivesPause) {
    const auto session = make(Pacing::stepped);
    EXPECT_FALSE(session->currentFrame());
    EXPECT_FALSE(session->configuration());
    session->run(configuration, platform::kResetTracking);
    const FrameRef bare = session->currentFrame();
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->camera->intrinsics().fy, 510);
    EXPECT_EQ(bare->camera->transform() * screenTurn(1), platform::Matrix::identity());
    EXPECT_FALSE(bare->capturedImage);

    FrameRef told, currentThen;
    listener->onFrame = [&](const FrameRef& frame) {
        told = frame;
        currentThen = session->currentFrame();
    };
    ASSERT_TRUE(session->step());
    EXPECT_EQ(told, currentThen);
    EXPECT_EQ(told->ambientIntensity, 900);
    session->pause();
    EXPECT_EQ(session->currentFrame(), told);

    configuration.lightEstimationEnabled = false;
    session->run(configuration, 0);
    EXPECT_EQ(session->currentFrame()->capturedImage, told->capturedImage);
    ASSERT_TRUE(session->step());
    EXPECT_FALSE(told->ambientIntensity);
}

TEST_F(SourcedSessionTest, EachStepIsOneFrame) {
    script->count = 4;
    const auto session = make(Pacing::stepped);
    EXPECT_FALSE(session->step(0.02)) << "not running yet";
    session->run(configuration, 0);
    bool stepInside = true;
    listener->onFrame = [&](const FrameRef&) { stepInside = session->step(); };
    for (std::size_t i = 1; i <= 3; ++i) {
        EXPECT_TRUE(session->step());
        EXPECT_EQ(listener->count("frame"), i);
    }
    EXPECT_FALSE(stepInside);
    session->pause();
    EXPECT_FALSE(session->step(0.02)) << "paused";
    EXPECT_EQ(listener->count("frame"), 3U);
    session->run(configuration, 0);
    EXPECT_TRUE(session->step());
    EXPECT_FALSE(session->step()) << "at the end";
}

TEST_F(SourcedSessionTest, AnchorsFollowTheirFrameWhichAlreadyHasThem) {
    script->anchors[0].added = {makeAnchor("A"), makeAnchor("B")};
    script->anchors[1].added = {makeAnchor("C")};
    script->anchors[1].updated = {makeAnchor("A")};
    const auto session = makeStepped();
    std::vector<std::size_t> sizes;
    listener->onFrame = [&](const FrameRef& frame) { sizes.push_back(frame->anchors.size()); };
    session->step();
    session->removeAnchor("B");
    session->step();
    EXPECT_THAT(listener->events(), ElementsAre("frame", "+A", "+B", "frame", "+C", "~A", "-B"));
    EXPECT_THAT(sizes, ElementsAre(2, 2));
}

TEST_F(SourcedSessionTest, WhatAPauseLeavesUntoldIsToldOnceInTheNextRun) {
    script->anchors[0].added = {makeAnchor("A"), makeAnchor("B")};
    script->anchors[1].updated = {makeAnchor("A")};
    const auto session = makeStepped();
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

TEST_F(SourcedSessionTest, RemovingAnchorsEmptiesTheCurrentFrame) {
    script->anchors[0].added = {makeAnchor("A")};
    const auto session = makeStepped();
    session->step();
    const FrameRef before = session->currentFrame();
    session->run(configuration, 0);
    EXPECT_EQ(session->currentFrame()->anchors.size(), 1U);
    session->run(configuration, platform::kRemoveExistingAnchors);
    EXPECT_TRUE(session->currentFrame()->anchors.empty());
    EXPECT_EQ(session->currentFrame()->capturedImage, before->capturedImage);
}

TEST_F(SourcedSessionTest, TheDelegateSeesOneOrientationAFrame) {
    const auto session = makeStepped();
    std::vector<int> seen;
    listener->onFrame = [&](const FrameRef& frame) {
        orientation.set(orientation.current() % 4 + 1);
        seen.push_back(orientation.current());
        // An upright camera has rotated its transform beforehand by the same one.
        EXPECT_EQ(frame->camera->transform() * screenTurn(seen.back()), platform::Matrix::identity());
    };
    for (int i = 0; i < 3; ++i)
        session->step();
    EXPECT_THAT(seen, ElementsAre(1, 2, 3));
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
    EXPECT_EQ(session->currentFrame(), held.back());
    EXPECT_EQ(held[0]->capturedImage->plane(0).data[0], std::uint8_t(held[0]->timestamp * 200 + 0.5))
        << "held pixels do not change";
    held.clear();
    EXPECT_TRUE(listener->waitFor("frame", 6));
}

TEST_F(SourcedSessionTest, AsTakenWaitsForBuffersAndDropsNothing) {
    script->count = 500;
    auto session = make(Pacing::asTaken, 2);
    std::vector<double> times;
    std::mutex mutex;
    std::vector<FrameRef> held;
    listener->onFrame = [&](const FrameRef& frame) {
        const std::lock_guard lock(mutex);
        times.push_back(frame->timestamp);
        held.push_back(frame);
    };
    session->run(configuration, 0);
    while (listener->count("frame") < 500) {
        const std::lock_guard lock(mutex);
        held.clear();
    }
    session.reset();
    EXPECT_EQ(script->skipped, 0);
    for (std::size_t i = 0; i < times.size(); ++i)
        EXPECT_DOUBLE_EQ(times[i], double(i) / 100);
}

TEST_F(SourcedSessionTest, RealTimeKeepsPaceWithASlowDelegate) {
    script->rate = 100;
    auto session = make(Pacing::realTime);
    double last = 0;
    listener->onFrame = [&](const FrameRef& frame) {
        last = frame->timestamp;
        std::this_thread::sleep_for(std::chrono::milliseconds(35));
    };
    const auto start = std::chrono::steady_clock::now();
    session->run(configuration, 0);
    ASSERT_TRUE(listener->waitFor("frame", 12));
    session.reset();
    const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_GT(script->skipped, 10);
    EXPECT_LT(last, elapsed + 0.001) << "no frame comes before its time";
}

TEST_F(SourcedSessionTest, AFailedSourceIsOneLogLineAndNoFrame) {
    script->openError = "no such thing";
    std::mutex mutex;
    std::vector<std::string> lines;
    SourcedSession session(std::make_unique<FakeSource>(script),
                           {Pacing::stepped, 6, nullptr, [&](std::string_view line) {
                                const std::lock_guard lock(mutex);
                                lines.emplace_back(line);
                            }});
    session.setDelegate(listener);
    session.run(configuration, 0);
    EXPECT_FALSE(session.step());
    session.run(configuration, 0);
    session.pause();
    EXPECT_TRUE(session.currentFrame());
    EXPECT_TRUE(listener->events().empty());
    const std::lock_guard lock(mutex);
    EXPECT_THAT(lines, ElementsAre("Kestrin - session - no frames: no such thing"));
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

TEST_F(SourcedSessionTest, TheDelegateMayGoAtAnyTime) {
    script->rate = 1000;
    const auto session = make(Pacing::realTime);
    session->run(configuration, 0);
    ASSERT_TRUE(listener->waitFor("frame", 3));
    const std::weak_ptr<Listener> watch = listener;
    listener.reset();
    const int made = script->made;
    while (script->made < made + 5)
        std::this_thread::yield();
    EXPECT_TRUE(watch.expired());
}

TEST_F(SourcedSessionTest, CommandsFromSeveralThreads) {
    script->rate = 1000;
    for (std::uint64_t i = 0; i < 3000; i += 3)
        script->anchors[i].added = {makeAnchor(std::to_string(i))};
    const auto session = make(Pacing::realTime, 4);
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (unsigned i = 0; i < 60; ++i) {
                session->run(configuration, (t + i) % 4);
                const FrameRef frame = session->currentFrame();
                EXPECT_TRUE(frame && frame->camera);
                session->removeAnchor(std::to_string(3 * i));
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
}

TEST(BufferPool, GivesNoMoreThanItHasAndTakesBackAfterItsEnd) {
    int returned = 0;
    std::optional<BufferPool> pool(std::in_place, 7, 5, 2, [&] { ++returned; });
    auto first = pool->acquire(), second = pool->acquire();
    EXPECT_TRUE(first && second);
    EXPECT_FALSE(pool->acquire());
    first.reset();
    EXPECT_EQ(returned, 1);
    EXPECT_TRUE(pool->acquire());
    const auto luma = second->plane(0), chroma = second->plane(1);
    EXPECT_EQ(luma.width, 7);
    EXPECT_EQ(chroma.width, 4);
    EXPECT_EQ(chroma.height, 3);
    EXPECT_EQ(chroma.data - luma.data, 5 * luma.stride);
    EXPECT_GE(luma.stride, 2 * chroma.width);
    EXPECT_EQ(second->plane(2).data, nullptr);
    pool.reset();
    second.reset();
    EXPECT_EQ(returned, 3);
}

} // namespace

} // namespace kestrin::session::test
