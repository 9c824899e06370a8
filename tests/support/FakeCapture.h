#pragma once

#include "platform/Capture.h"
#include "support/FakePixelBuffer.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrin::test {

/// A camera that takes pictures when the test says.
class FakeCamera : public platform::CaptureDevice, public std::enable_shared_from_this<FakeCamera> {
  public:
    explicit FakeCamera(std::string label) : name(std::move(label)) {}

    std::string localizedName() const override { return name; }
    std::vector<platform::FrameRateRange> frameRateRanges() const override { return rates; }
    bool supportsContinuousAutoFocus() const override { return focuses; }
    void focusContinuously(double duration) override { longestFrame = duration; }
    std::variant<std::shared_ptr<platform::CaptureInput>, std::string> open() override {
        if (!error.empty())
            return error;
        return std::make_shared<Input>(shared_from_this());
    }

    /// A picture for the queue, if the session runs.
    void take(const platform::PixelBufferRef& picture, double time) {
        if (!running)
            return;
        output->queue->async([delegate = output->delegate, picture, time] {
            if (const auto taker = delegate.lock())
                taker->captureOutput(picture, time);
        });
    }

    std::string name, error;
    std::vector<platform::FrameRateRange> rates;
    bool focuses = false;
    double longestFrame = 0;
    std::optional<platform::CaptureOutput> output; ///< of the session there is
    bool running = false;

  private:
    struct Session : platform::CaptureSession {
        explicit Session(std::shared_ptr<FakeCamera> c) : camera(std::move(c)) {}
        ~Session() override { camera->output.reset(); }
        void startRunning() override { camera->running = true; }
        void stopRunning() override { camera->running = false; }
        const std::shared_ptr<FakeCamera> camera;
    };
    struct Input : platform::CaptureInput {
        explicit Input(std::shared_ptr<FakeCamera> c) : camera(std::move(c)) {}
        std::unique_ptr<platform::CaptureSession> makeSession(platform::CaptureOutput asked) override {
            camera->output = std::move(asked);
            return std::make_unique<Session>(camera);
        }
        const std::shared_ptr<FakeCamera> camera;
    };
};

class FakeCapture : public platform::CaptureSystem {
  public:
    std::vector<std::shared_ptr<platform::CaptureDevice>> backCameras() override { return cameras; }

    std::vector<std::shared_ptr<platform::CaptureDevice>> cameras;
};

} // namespace kestrin::test
