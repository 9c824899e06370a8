#pragma once

#include "camera/CameraFrameProvider.h"
#include "camera/ListenerList.h"

#include <mutex>
#include <vector>

namespace kestrin::test {

/// Sends frames when asked, and remembers for which viewports it was asked.
class FakeProvider : public CameraFrameProvider {
  public:
    void initialiseCamera() override {}
    void startCamera() override {}
    void stopCamera() override {}
    void addDelegate(const std::shared_ptr<CameraFrameConsumer>& consumer) override { list.add(consumer); }
    void removeDelegate(const CameraFrameConsumer& consumer) override { list.remove(consumer); }
    void removeDelegates() override { list.clear(); }
    platform::AffineTransform getOrientationWithViewport(const platform::Size& viewport) const override {
        const std::lock_guard lock(m_mutex);
        m_asked.push_back(viewport);
        return transform;
    }

    void send(const platform::PixelBufferRef& buffer, int width, int height) {
        list.forEach([&](CameraFrameConsumer& consumer) {
            returned = consumer.cameraFrameReceivedWithBuffer(buffer, 0, width, height);
        });
    }
    std::vector<platform::Size> asked() const {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }

    ListenerList<CameraFrameConsumer> list;
    platform::AffineTransform transform{0, -1, 1, 0, 0, 1};
    platform::Size returned;

  private:
    mutable std::mutex m_mutex;
    mutable std::vector<platform::Size> m_asked;
};

} // namespace kestrin::test
