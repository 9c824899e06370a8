#pragma once

#include "RecordingListener.h"
#include "core/config/KestrinFeatureFlags.h"
#include "support/FakePlatform.h"
#include "tracking/ARKitMarkerlessProcessor.h"

#include <functional>
#include <memory>

namespace kestrin::test {

struct ProcessorTest : PlatformTest {
    ProcessorTest() {
        resetSingletons();
        system->files.resources["KestrinCache/Features/feature_flags.json"] = "[]";
    }
    ~ProcessorTest() override { processor->detach(); }

    void flag(const char* word) { KestrinFeatureFlags::getInstance()->put(word); }
    FakeArSession& session() { return *system->worldTracking.newest(); }
    /// Set up, started, and the camera running; nothing recorded.
    void run() {
        processor->setup(480, 640);
        processor->start();
        processor->startCamera();
        listener->take();
        takeLog();
    }
    std::shared_ptr<platform::ArFrame> frame(double time,
                                             std::function<void(FakeArCamera&)> shape = nullptr) {
        auto made = makeFrame(time);
        auto camera = std::make_shared<FakeArCamera>();
        if (shape)
            shape(*camera);
        made->camera = camera;
        return made;
    }

    std::shared_ptr<RecordingListener> listener = std::make_shared<RecordingListener>();
    std::shared_ptr<ARKitMarkerlessProcessor> processor =
        ARKitMarkerlessProcessor::initWithDelegate(listener, nullptr);
};

} // namespace kestrin::test
