#include "MemoryTracking.h"

#include "session/Nv12Buffer.h"
#include "session/PinholeCamera.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kestrin::bench {

using namespace platform;

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 480;
constexpr std::size_t kGreys = 8;
const session::CameraModel kModel{{525, 525, 320, 240}, kWidth, kHeight, session::Mounting::upright};

std::shared_ptr<const PixelBuffer> greyPicture(std::uint8_t luma) {
    auto picture = std::make_shared<session::Nv12Buffer>(kWidth, kHeight);
    const std::ptrdiff_t lumaBytes = std::ptrdiff_t(picture->stride()) * kHeight;
    const std::ptrdiff_t allBytes = std::ptrdiff_t(picture->stride()) * picture->rows();
    std::fill(picture->bytes(), picture->bytes() + lumaBytes, luma);
    std::fill(picture->bytes() + lumaBytes, picture->bytes() + allBytes, std::uint8_t(128));
    return picture;
}

std::shared_ptr<const PixelBuffer> pictureOf(std::uint64_t number) {
    static const auto pictures = [] {
        std::array<std::shared_ptr<const PixelBuffer>, kGreys> made;
        for (std::size_t i = 0; i < kGreys; ++i)
            made[i] = greyPicture(std::uint8_t(32 + 24 * i));
        return made;
    }();
    return pictures[number % kGreys];
}

std::shared_ptr<const ArFrame> makeFrame(std::uint64_t number, double timestamp) {
    auto frame = std::make_shared<ArFrame>();
    frame->timestamp = timestamp;
    frame->capturedImage = pictureOf(number);
    frame->camera =
        std::make_shared<session::PinholeCamera>(kModel, Matrix::identity(), 3, TrackingReason::none);
    frame->ambientIntensity = 1000;
    return frame;
}

} // namespace

class MemoryTracking::Session : public ArSession {
  public:
    void setDelegate(std::weak_ptr<ArSessionDelegate> delegate) override {
        const std::lock_guard lock(m_mutex);
        m_delegate = std::move(delegate);
    }
    void run(const ArConfiguration& configuration, unsigned) override {
        const std::lock_guard lock(m_mutex);
        m_configuration = configuration;
        m_runs = true;
        if (!m_frame)
            m_frame = makeFrame(0, 0);
    }
    void pause() override {
        const std::lock_guard lock(m_mutex);
        m_runs = false;
    }
    std::shared_ptr<const ArFrame> currentFrame() const override {
        const std::lock_guard lock(m_mutex);
        return m_frame;
    }
    std::optional<ArConfiguration> configuration() const override {
        const std::lock_guard lock(m_mutex);
        return m_configuration;
    }
    void removeAnchor(const std::string&) override {}

    bool send(std::shared_ptr<const ArFrame> frame) {
        std::shared_ptr<ArSessionDelegate> delegate;
        {
            const std::lock_guard lock(m_mutex);
            delegate = m_runs ? m_delegate.lock() : nullptr;
            if (delegate)
                m_frame = frame;
        }
        if (delegate)
            delegate->didUpdateFrame(frame);
        return delegate != nullptr;
    }

  private:
    mutable std::mutex m_mutex;
    std::weak_ptr<ArSessionDelegate> m_delegate;
    std::optional<ArConfiguration> m_configuration;
    std::shared_ptr<const ArFrame> m_frame;
    bool m_runs = false;
};

MemoryTracking::MemoryTracking() : m_session(std::make_shared<Session>()) {}

MemoryTracking::~MemoryTracking() = default;

std::shared_ptr<ArSession> MemoryTracking::makeSession() { return m_session; }

bool MemoryTracking::send(double timestamp) { return m_session->send(makeFrame(m_sent++, timestamp)); }

} // namespace kestrin::bench
