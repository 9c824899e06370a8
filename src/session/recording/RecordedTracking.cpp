#include "session/recording/RecordedTracking.h"

#include "session/recording/RecordedSource.h"

#include <utility>

namespace kestrin::session {

std::variant<std::shared_ptr<RecordedTracking>, RecordingError>
RecordedTracking::open(const RecordedOptions& options) {
    auto reader = RecordingReader::open(options.folder, options.damage);
    if (auto* error = std::get_if<RecordingError>(&reader))
        return std::move(*error);
    return std::shared_ptr<RecordedTracking>(new RecordedTracking(options, *std::get<0>(reader)));
}

RecordedTracking::RecordedTracking(const RecordedOptions& options, const RecordingReader& reader)
    : SourcedTracking(options.session), m_options(options), m_info(reader.info()), m_size(reader.size()),
      m_damage(reader.damage()) {}

std::unique_ptr<FrameSource> RecordedTracking::makeSource() const {
    return std::make_unique<RecordedSource>(
        m_info,
        RecordedSource::Options{m_options.folder, m_options.damage, m_options.loops, m_options.session.log});
}

} // namespace kestrin::session
