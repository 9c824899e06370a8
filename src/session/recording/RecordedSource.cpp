#include "session/recording/RecordedSource.h"

#include <utility>

namespace kestrin::session {

RecordedSource::RecordedSource(RecordingInfo info, Options options)
    : m_info(std::move(info)), m_options(std::move(options)) {}

std::optional<std::string> RecordedSource::open() {
    auto reader = RecordingReader::open(m_options.folder, m_options.damage);
    if (auto* error = std::get_if<RecordingError>(&reader))
        return std::move(error->text);
    m_reader = std::move(std::get<0>(reader));
    const CameraModel &now = m_reader->info().camera, &promised = m_info.camera;
    if (now.width != promised.width || now.height != promised.height)
        return m_options.folder.string() + ": has changed";
    return {};
}

void RecordedSource::begin(const platform::ArConfiguration& configuration, unsigned options) {
    if ((options & platform::kResetTracking) != 0) {
        m_index = 0;
        m_offset = 0;
    }
    m_anchors.configure(configuration);
    if ((options & platform::kRemoveExistingAnchors) != 0)
        m_anchors.forgetAll();
}

std::optional<double> RecordedSource::nextTime() const {
    if (!m_reader || m_index == m_reader->size())
        return {};
    return m_offset + m_reader->frame(m_index).frame.time;
}

SourcedFrame RecordedSource::advance() {
    SourcedFrame frame = m_reader->frame(m_index).frame;
    frame.time += m_offset;
    if (m_index == 0)
        m_anchors.restart();
    m_anchors.apply(std::exchange(frame.anchors, {}));
    ++m_index;
    // A recording of which nothing can be decoded ends nevertheless.
    if (m_index == m_reader->size() && m_options.loops && m_missing < m_index) {
        const double first = m_reader->frame(0).frame.time;
        m_offset += m_reader->frame(m_index - 1).frame.time - first + 1 / m_info.rate;
        m_index = 0;
    }
    return frame;
}

void RecordedSource::skip() { advance(); }

std::optional<SourcedFrame> RecordedSource::next(int, Nv12Buffer& picture) {
    const std::size_t index = m_index;
    const bool isDecoded = m_reader->picture(index, picture);
    m_missing = isDecoded ? 0 : m_missing + 1;
    SourcedFrame frame = advance();
    if (!isDecoded) {
        tellOfMissing(index);
        return {};
    }
    frame.anchors = m_anchors.take();
    return frame;
}

void RecordedSource::tellOfMissing(std::size_t index) {
    if (!m_options.log || std::exchange(m_hasLogged, true))
        return;
    const std::string video = (m_options.folder / "video.mkv").string();
    m_options.log("Kestrin - session - " + video + ": picture " + std::to_string(index + 1) +
                  " cannot be decoded");
}

} // namespace kestrin::session
