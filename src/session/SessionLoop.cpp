#include "session/SessionLoop.h"

#include <pthread.h>

#include <algorithm>
#include <utility>

namespace kestrin::session {

using platform::ArFrame;

namespace {

constexpr int kLandscapeRight = 3;
constexpr double kLongestWait = 3600; // seconds

std::chrono::nanoseconds seconds(double value) { return std::chrono::nanoseconds(std::int64_t(value * 1e9)); }

double speedOf(double speed) { return speed > 0 ? std::clamp(speed, 0.001, 1000.0) : 1; }

} // namespace

SessionLoop::SessionLoop(std::unique_ptr<FrameSource> source, SessionOptions options)
    : m_options(std::move(options)), m_model(source->model()), m_rate(source->rate()),
      m_speed(speedOf(m_options.speed)), m_source(std::move(source)) {}

void SessionLoop::setDelegate(std::weak_ptr<platform::ArSessionDelegate> delegate) {
    const std::lock_guard lock(m_mutex);
    m_delegate = std::move(delegate);
}

void SessionLoop::run(const platform::ArConfiguration& configuration, unsigned options) {
    std::shared_ptr<const ArFrame> old;
    {
        const std::lock_guard lock(m_mutex);
        ++m_generation;
        m_isRunning = m_beginAsked = true;
        m_hasEnded = false;
        m_beginOptions |= options;
        m_configuration = configuration;
        old = std::exchange(m_frame, frameForRun(options));
    }
    m_wake.notify_all();
}

void SessionLoop::pause() {
    {
        const std::lock_guard lock(m_mutex);
        ++m_generation;
        m_isRunning = false;
    }
    m_wake.notify_all();
}

void SessionLoop::stop() {
    {
        const std::lock_guard lock(m_mutex);
        ++m_generation;
        m_isStopping = true;
    }
    m_wake.notify_all();
    m_stepped.notify_all();
}

void SessionLoop::forget(const std::string& identifier) {
    const std::lock_guard lock(m_mutex);
    m_forgotten.push_back(identifier);
}

std::shared_ptr<const ArFrame> SessionLoop::currentFrame() const {
    const std::lock_guard lock(m_mutex);
    return m_frame;
}

std::optional<platform::ArConfiguration> SessionLoop::configuration() const {
    const std::lock_guard lock(m_mutex);
    return m_configuration;
}

bool SessionLoop::step(double timeout) {
    if (isSessionThread())
        return false;
    const std::lock_guard one(m_oneStep);
    Lock lock(m_mutex);
    const std::uint64_t before = m_steps;
    m_stepAsked = true;
    m_hasEnded = false;
    m_wake.notify_all();
    m_stepped.wait_for(lock, seconds(std::clamp(timeout, 0.0, kLongestWait)),
                       [&] { return m_steps != before || m_hasEnded || m_isStopping; });
    m_stepAsked = false;
    return m_steps != before;
}

bool SessionLoop::isSessionThread() const {
    const std::lock_guard lock(m_mutex);
    return std::this_thread::get_id() == m_thread;
}

void SessionLoop::work() {
    pthread_setname_np(pthread_self(), "session");
    {
        const std::lock_guard lock(m_mutex);
        m_thread = std::this_thread::get_id();
    }
    const int buffers = m_options.buffers + (m_options.tap ? m_options.tap->pictures() : 0);
    m_pool.emplace(m_model.width, m_model.height, buffers, [weak = weak_from_this()] {
        if (const auto loop = weak.lock())
            loop->wake();
    });
    if (const auto error = m_source->open()) {
        if (m_options.log)
            m_options.log("Kestrin - session - no frames: " + *error);
        stop();
    }
    while (produce(waitForJob())) {
    }
    m_pool.reset();
    m_source.reset();
}

/// So that one who is about to wait does not miss it.
void SessionLoop::wake() {
    { const std::lock_guard lock(m_mutex); }
    m_wake.notify_all();
}

SessionLoop::Job SessionLoop::waitForJob() {
    Lock lock(m_mutex);
    while (waitUntilDue(lock)) {
        if (auto picture = m_pool->acquire())
            return {std::move(picture), m_generation};
        if (m_options.pacing == Pacing::realTime)
            m_source->skip();
        else
            m_wake.wait(lock);
    }
    return {};
}

bool SessionLoop::waitUntilDue(Lock& lock) {
    while (!m_isStopping) {
        if (m_beginAsked) {
            beginRun(lock);
            continue;
        }
        if (!m_isRunning && std::exchange(m_isFed, false)) {
            lock.unlock();
            m_source->rest();
            lock.lock();
            continue;
        }
        const std::optional<double> time = m_isRunning ? m_source->nextTime() : std::nullopt;
        if (!time) {
            m_hasEnded = m_isRunning;
            m_stepped.notify_all();
            m_wake.wait(lock);
            continue;
        }
        if (m_options.pacing == Pacing::asTaken || (m_options.pacing == Pacing::stepped && m_stepAsked))
            return true;
        if (m_options.pacing == Pacing::stepped) {
            m_wake.wait(lock);
            continue;
        }
        const Clock::time_point due = m_start + seconds(*time / m_speed), now = Clock::now();
        if (now < due)
            m_wake.wait_until(lock, due);
        else if (now - due < seconds(1 / (m_rate * m_speed)))
            return true;
        else
            m_source->skip();
    }
    return false;
}

void SessionLoop::beginRun(Lock& lock) {
    m_beginAsked = false;
    const unsigned options = std::exchange(m_beginOptions, 0);
    const platform::ArConfiguration configuration = *m_configuration;
    lock.unlock();
    m_source->begin(configuration, options);
    m_isFed = true;
    m_estimatesLight = configuration.lightEstimationEnabled;
    m_start = Clock::now() - seconds(m_source->nextTime().value_or(0) / m_speed);
    lock.lock();
}

/// False when the session stops.
bool SessionLoop::produce(const Job& job) {
    if (!job.picture)
        return false;
    std::vector<std::string> forgotten;
    {
        const std::lock_guard lock(m_mutex);
        forgotten.swap(m_forgotten);
    }
    for (const std::string& identifier : forgotten)
        m_source->forget(identifier);

    const int code = orientation();
    const std::optional<SourcedFrame> sourced = m_source->next(code, *job.picture);
    if (!sourced)
        return true;
    m_anchors.apply(sourced->anchors);
    const auto frame = makeFrame(*sourced, job, code);
    if (!publish(frame, job.generation))
        return true;
    tellTap(*sourced, job);
    {
        const platform::InterfaceOrientation::Pin pin(code);
        tellDelegate(frame, job.generation);
    }
    const std::lock_guard lock(m_mutex);
    m_steps += m_stepAsked ? 1 : 0;
    m_stepAsked = false;
    m_stepped.notify_all();
    return true;
}

std::shared_ptr<const ArFrame> SessionLoop::makeFrame(const SourcedFrame& sourced, const Job& job,
                                                      int orientation) const {
    CameraModel model = m_model;
    model.intrinsics = sourced.intrinsics;
    auto frame = std::make_shared<ArFrame>();
    frame->timestamp = sourced.time;
    frame->capturedImage = job.picture;
    frame->camera = std::make_shared<PinholeCamera>(model, sourced.sensorPose, orientation, sourced.reason);
    if (m_estimatesLight)
        frame->ambientIntensity = sourced.ambientIntensity;
    frame->anchors = m_anchors.current();
    return frame;
}

bool SessionLoop::hasEnded() const {
    const std::lock_guard lock(m_mutex);
    return m_hasEnded;
}

std::uint64_t SessionLoop::frames() const {
    const std::lock_guard lock(m_mutex);
    return m_frames;
}

/// False when the run to which the frame belongs is over.
bool SessionLoop::publish(std::shared_ptr<const ArFrame> frame, Generation generation) {
    const std::lock_guard lock(m_mutex);
    if (generation != m_generation)
        return false;
    m_frame.swap(frame);
    ++m_frames;
    return true;
}

void SessionLoop::tellTap(const SourcedFrame& sourced, const Job& job) const {
    if (!m_options.tap)
        return;
    TappedFrame tapped{m_model, m_rate, sourced, m_anchors.current(), job.picture};
    tapped.frame.anchors = {};
    m_options.tap->deliver(std::move(tapped));
}

void SessionLoop::tellDelegate(const std::shared_ptr<const ArFrame>& frame, Generation generation) {
    if (const auto delegate = delegateOf(generation))
        delegate->didUpdateFrame(frame);
    // What a run that ends here leaves untold is told in the next.
    using Tell = void (platform::ArSessionDelegate::*)(const platform::ArAnchors&);
    const auto tell = [&](platform::ArAnchors (AnchorLedger::*take)(), Tell operation) {
        const auto delegate = delegateOf(generation);
        if (!delegate)
            return;
        if (const auto anchors = (m_anchors.*take)(); !anchors.empty())
            ((*delegate).*operation)(anchors);
    };
    tell(&AnchorLedger::takeAdded, &platform::ArSessionDelegate::didAddAnchors);
    tell(&AnchorLedger::takeUpdated, &platform::ArSessionDelegate::didUpdateAnchors);
    tell(&AnchorLedger::takeRemoved, &platform::ArSessionDelegate::didRemoveAnchors);
}

std::shared_ptr<platform::ArSessionDelegate> SessionLoop::delegateOf(Generation generation) const {
    const std::lock_guard lock(m_mutex);
    return generation == m_generation ? m_delegate.lock() : nullptr;
}

/// There is always a frame to ask: a bare one after a reset, without the anchors that a run removes.
std::shared_ptr<const ArFrame> SessionLoop::frameForRun(unsigned options) const {
    if (m_frame && (options & platform::kResetTracking) == 0) {
        auto frame = std::make_shared<ArFrame>(*m_frame);
        if ((options & platform::kRemoveExistingAnchors) != 0)
            frame->anchors.clear();
        return frame;
    }
    auto frame = std::make_shared<ArFrame>();
    frame->timestamp = m_frame ? m_frame->timestamp : 0;
    frame->camera = std::make_shared<PinholeCamera>(m_model, platform::Matrix::identity(), orientation(),
                                                    platform::TrackingReason::initializing);
    return frame;
}

int SessionLoop::orientation() const {
    return m_options.orientation ? m_options.orientation->current() : kLandscapeRight;
}

} // namespace kestrin::session
