#include "MemoryTracking.h"

#include "session/Nv12Buffer.h"
#include "session/PinholeCamera.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>
#include <vector>

namespace kestrin::bench {

using namespace platform;

namespace {

constexpr std::size_t kGreys = 8;

session::CameraModel modelOf(const MemoryPictures& of) {
    const double focal = 525 * of.width / 640.0;
    return {{float(focal), float(focal), float(of.width) / 2, float(of.height) / 2},
            of.width,
            of.height,
            session::Mounting::upright};
}

/// The print in the middle of one grey.
std::shared_ptr<const PixelBuffer> makePicture(const MemoryPictures& of, std::uint8_t luma) {
    auto picture = std::make_shared<session::Nv12Buffer>(of.width, of.height);
    const std::ptrdiff_t stride = picture->stride();
    std::uint8_t* const bytes = picture->bytes();
    std::fill(bytes, bytes + stride * of.height, luma);
    std::fill(bytes + stride * of.height, bytes + stride * picture->rows(), std::uint8_t(128));
    const int left = (of.width - of.print.pixelWidth()) / 2, top = (of.height - of.print.pixelHeight()) / 2;
    for (int y = 0; y < of.print.pixelHeight(); ++y)
        for (int x = 0; x < of.print.pixelWidth(); ++x)
            bytes[stride * (top + y) + left + x] =
                of.print.pixels()[4 * std::size_t(y * of.print.pixelWidth() + x)];
    return picture;
}

std::vector<std::shared_ptr<const PixelBuffer>> makePictures(const MemoryPictures& of) {
    std::vector<std::shared_ptr<const PixelBuffer>> made;
    for (std::size_t i = 0; i < kGreys; ++i)
        made.push_back(makePicture(of, std::uint8_t(32 + 24 * i)));
    return made;
}

} // namespace

class MemoryTracking::Session : public ArSession {
  public:
    explicit Session(const MemoryPictures& of) : m_model(modelOf(of)), m_pictures(makePictures(of)) {}

    void setDelegate(std::weak_ptr<ArSessionDelegate> delegate) override {
        const std::lock_guard lock(m_mutex);
        m_delegate = std::move(delegate);
    }
    void run(const ArConfiguration& configuration, unsigned) override {
        const std::lock_guard lock(m_mutex);
        m_configuration = configuration;
        m_runs = true;
        if (!m_frame)
            m_frame = makeFrame(0);
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

    bool send(double timestamp) {
        const auto frame = makeFrame(timestamp);
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
    std::shared_ptr<const ArFrame> makeFrame(double timestamp) {
        auto frame = std::make_shared<ArFrame>();
        frame->timestamp = timestamp;
        frame->capturedImage = m_pictures[m_made++ % m_pictures.size()];
        frame->camera =
            std::make_shared<session::PinholeCamera>(m_model, Matrix::identity(), 3, TrackingReason::none);
        frame->ambientIntensity = 1000;
        return frame;
    }

    const session::CameraModel m_model;
    const std::vector<std::shared_ptr<const PixelBuffer>> m_pictures;
    std::atomic<std::size_t> m_made = 0;
    mutable std::mutex m_mutex;
    std::weak_ptr<ArSessionDelegate> m_delegate;
    std::optional<ArConfiguration> m_configuration;
    std::shared_ptr<const ArFrame> m_frame;
    bool m_runs = false;
};

MemoryTracking::MemoryTracking(const MemoryPictures& of) : m_session(std::make_shared<Session>(of)) {}

MemoryTracking::~MemoryTracking() = default;

std::shared_ptr<ArSession> MemoryTracking::makeSession() { return m_session; }

bool MemoryTracking::send(double timestamp) { return m_session->send(timestamp); }

} // namespace kestrin::bench
