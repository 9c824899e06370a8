#pragma once

#include "camera/YUVCameraAccess.h"
#include "linux/capture/GstCapture.h"
#include "linux/toolkit/MainLoopDispatch.h"
#include "support/FakePlatform.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <iterator>
#include <mutex>
#include <thread>
#include <vector>

namespace kestrin::gtk {

/// False when it takes longer than 20 seconds.
inline bool waitUntil(const std::function<bool()>& done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

/// The fake platform, with queues that have threads and real cameras.
struct CameraPlatform : kestrin::test::FakePlatform {
    explicit CameraPlatform(const std::string& camera)
        : threads(sharedLog), cameras({camera}, threads, sharedLog) {}
    platform::Dispatch& dispatch() override { return threads; }
    platform::CaptureSystem& capture() override { return cameras; }
    platform::LogSink& log() override { return *sharedLog; }

    const std::shared_ptr<kestrin::test::FakeLog> sharedLog = std::make_shared<kestrin::test::FakeLog>();
    MainLoopDispatch threads;
    GstCapture cameras;
};

/// Keeps what comes, and takes its time.
struct Consumer : CameraFrameConsumer {
    platform::Size cameraFrameReceivedWithBuffer(const platform::PixelBufferRef& buffer, double time,
                                                 int width, int height) override {
        std::this_thread::sleep_for(delay);
        const std::lock_guard lock(mutex);
        times.push_back(time);
        size = {double(width), double(height)};
        newest = buffer;
        if (keeps)
            kept.push_back(buffer);
        return {};
    }
    std::size_t count() const {
        const std::lock_guard lock(mutex);
        return times.size();
    }
    bool waitFor(std::size_t pictures) const {
        return waitUntil([&] { return count() >= pictures; });
    }

    std::chrono::milliseconds delay{0};
    bool keeps = false;
    mutable std::mutex mutex;
    std::vector<double> times;
    platform::Size size;
    platform::PixelBufferRef newest;
    std::vector<platform::PixelBufferRef> kept;
};

struct CaptureTest : testing::Test {
    CaptureTest() { gstreamerIsReady(); }
    ~CaptureTest() override { close(); }

    bool open(const std::string& camera) {
        close();
        m_lines.clear();
        system = std::make_shared<CameraPlatform>(camera);
        platform::installPlatform(system);
        waitUntil([this] { return !system->cameras.backCameras().empty(); });
        return reopen();
    }
    bool reopen() {
        const auto access = YUVCameraAccess::getInstance();
        consumer = std::make_shared<Consumer>();
        const bool opened = access->initialise();
        if (opened)
            access->addDelegate(consumer);
        return opened;
    }
    void close() {
        if (!system)
            return;
        YUVCameraAccess::getInstance()->deinitialise();
        resetSingletons();
        platform::installPlatform(nullptr);
        system = nullptr;
    }
    static YUVCameraAccess& access() { return *YUVCameraAccess::getInstance(); }
    /// What was logged since `open`.
    const std::vector<std::string>& lines() {
        std::ranges::move(system->sharedLog->take(), std::back_inserter(m_lines));
        return m_lines;
    }
    std::string lastLine() { return lines().empty() ? "" : lines().back(); }

    std::shared_ptr<CameraPlatform> system;
    std::shared_ptr<Consumer> consumer;

  private:
    std::vector<std::string> m_lines;
};

} // namespace kestrin::gtk
