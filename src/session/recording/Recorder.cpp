#include "session/recording/Recorder.h"

#include "session/recording/AnchorDifference.h"
#include "session/recording/RecordingWriter.h"
#include "session/recording/VideoWriter.h"

#include <pthread.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

namespace kestrin::session {

namespace {

constexpr std::size_t kMostWaiting = 8;

} // namespace

class Recorder::Work {
  public:
    explicit Work(RecorderOptions options) : m_options(std::move(options)) {}

    void push(TappedFrame&& frame) {
        {
            const std::lock_guard lock(m_mutex);
            if (m_isEnding || m_hasFailed)
                return;
            if (m_waiting.size() == kMostWaiting) {
                ++m_missed;
                return;
            }
            m_waiting.push_back(std::move(frame));
        }
        m_changed.notify_one();
    }
    void end() {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
        }
        m_changed.notify_one();
    }
    std::pair<std::uint64_t, std::uint64_t> counts() const {
        const std::lock_guard lock(m_mutex);
        return {m_recorded, m_missed};
    }

    void run() {
        pthread_setname_np(pthread_self(), "recorder");
        VideoWriter::prepare();
        while (auto frame = waitForFrame())
            if (const auto error = write(std::move(*frame)))
                return fail(*error);
        finish();
    }

  private:
    std::optional<TappedFrame> waitForFrame() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_isEnding || !m_waiting.empty(); });
        if (m_waiting.empty())
            return {};
        std::optional<TappedFrame> frame = std::move(m_waiting.front());
        m_waiting.pop_front();
        return frame;
    }

    std::optional<RecordingError> write(TappedFrame tapped) {
        if (!m_writer) {
            tapped.camera.intrinsics = tapped.frame.intrinsics;
            auto writer =
                RecordingWriter::create(m_options.folder, {tapped.camera, tapped.rate, m_options.origin});
            if (auto* error = std::get_if<RecordingError>(&writer))
                return std::move(*error);
            m_writer = std::move(std::get<0>(writer));
        }
        RecordedFrame recorded{std::move(tapped.frame), {}};
        // A session that begins anew goes on behind the one before.
        if (recorded.frame.time + m_offset <= m_time)
            m_offset = m_time + 1 / tapped.rate - recorded.frame.time;
        recorded.frame.time += m_offset;
        recorded.frame.anchors = m_anchors.look(tapped.anchors);
        if (auto error = m_writer->add(recorded, *tapped.picture))
            return error;
        m_time = recorded.frame.time;
        const std::lock_guard lock(m_mutex);
        ++m_recorded;
        return {};
    }

    void finish() {
        if (!m_writer)
            return;
        if (const auto error = m_writer->finish())
            return fail(*error);
        const auto [recorded, missed] = counts();
        log(m_options.folder.string() + ": " + std::to_string(recorded) + " frames, " +
            std::to_string(missed) + " missed");
    }

    void fail(const RecordingError& error) {
        log(error.text);
        std::deque<TappedFrame> dropped;
        const std::lock_guard lock(m_mutex);
        m_hasFailed = true;
        dropped.swap(m_waiting);
    }

    void log(const std::string& text) const {
        if (m_options.log)
            m_options.log("Kestrin - recording - " + text);
    }

    const RecorderOptions m_options;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    // Guarded by m_mutex.
    std::deque<TappedFrame> m_waiting;
    bool m_isEnding = false, m_hasFailed = false;
    std::uint64_t m_recorded = 0, m_missed = 0;

    // Thread: recorder.
    std::unique_ptr<RecordingWriter> m_writer;
    AnchorDifference m_anchors;
    double m_time = -1, m_offset = 0; ///< seconds
};

std::variant<std::shared_ptr<Recorder>, RecordingError> Recorder::create(const RecorderOptions& options) {
    std::error_code error;
    if (std::filesystem::exists(std::filesystem::symlink_status(options.folder, error)))
        return RecordingError{options.folder.string() + ": is there already"};
    return std::shared_ptr<Recorder>(new Recorder(std::make_shared<Work>(options)));
}

Recorder::Recorder(std::shared_ptr<Work> work)
    : m_work(std::move(work)), m_thread([work = m_work] { work->run(); }) {}

Recorder::~Recorder() { finish(); }

void Recorder::deliver(TappedFrame frame) { m_work->push(std::move(frame)); }

/// Those that wait and the one that is being written.
int Recorder::pictures() const { return int(kMostWaiting) + 1; }

void Recorder::finish() {
    m_work->end();
    std::call_once(m_finished, [this] {
        // A picture that goes back may have been what held the session that held this.
        if (m_thread.get_id() == std::this_thread::get_id())
            m_thread.detach();
        else
            m_thread.join();
    });
}

std::uint64_t Recorder::recorded() const { return m_work->counts().first; }

std::uint64_t Recorder::missed() const { return m_work->counts().second; }

} // namespace kestrin::session
