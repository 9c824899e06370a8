#pragma once

#include "platform/Platform.h"
#include "services/util/Singleton.h"
#include "support/FakeApplication.h"
#include "support/FakeCapture.h"
#include "support/FakeDispatch.h"
#include "support/FakeGpu.h"
#include "support/FakeHttp.h"
#include "support/FakeImages.h"
#include "support/FakeLog.h"
#include "support/FakePermissions.h"
#include "support/FakeReachability.h"
#include "support/FakeStorage.h"
#include "support/FakeTracking.h"
#include "support/FakeViews.h"
#include "support/FakeVision.h"
#include "support/FakeWeb.h"

#include <gtest/gtest.h>

#include <memory>

namespace kestrin::test {

/// An operating system in memory, whose every part a test can set and look at.
class FakePlatform : public platform::Platform {
  public:
    FakeLog logSink;
    FakeDispatch queues{logSink};
    FakeViewToolkit viewToolkit;
    FakeApplication app;
    FakeImageCodec imageCodec;
    FakeWebToolkit webToolkit;
    FakeWorldTracking worldTracking;
    FakeCapture devices;
    FakeGpu graphics;
    FakeVision eyes;
    FakeHttp server{queues};
    FakeReachability network;
    FakeStorage files;
    FakePermissions person;
    double level = 12.0;

    platform::Dispatch& dispatch() override { return queues; }
    platform::LogSink& log() override { return logSink; }
    platform::ViewToolkit& views() override { return viewToolkit; }
    platform::Application& application() override { return app; }
    platform::ImageCodec& images() override { return imageCodec; }
    platform::WebToolkit& web() override { return webToolkit; }
    platform::WorldTracking& tracking() override { return worldTracking; }
    platform::CaptureSystem& capture() override { return devices; }
    platform::Gpu& gpu() override { return graphics; }
    platform::Vision& vision() override { return eyes; }
    platform::HttpClient& http() override { return server; }
    platform::ReachabilityTargets& reachability() override { return network; }
    platform::Storage& storage() override { return files; }
    platform::Permissions& permissions() override { return person; }
    platform::Device device() const override {
        return {"testhost", "Linux", "1.0", "", "Desktop", "01234567-89AB-4CDE-8F01-23456789ABCD"};
    }
    double featureLevel() const override { return level; }
};

/// A fresh platform and fresh singletons for each test. What the test leaves on the main queue is dropped
/// with it.
class PlatformTest : public ::testing::Test {
  protected:
    PlatformTest() { platform::installPlatform(system); }
    ~PlatformTest() override {
        system->queues.drop();
        system->app.presented.clear();
        system->viewToolkit.loaded.clear();
        resetSingletons();
        platform::installPlatform(nullptr);
    }

    void runMain() { system->queues.runMain(); }
    void advance(double seconds) { system->queues.advance(seconds); }
    std::vector<std::string> takeLog() { return system->logSink.take(); }

    std::shared_ptr<FakePlatform> system = std::make_shared<FakePlatform>();
};

} // namespace kestrin::test
