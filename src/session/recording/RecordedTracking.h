#pragma once

#include "session/SourcedTracking.h"
#include "session/recording/RecordingReader.h"

namespace kestrin::session {

struct RecordedOptions {
    std::filesystem::path folder; ///< NAME.krs
    Damage damage = Damage::refused;
    bool loops = false; ///< begins again at the end, while time goes on
    SessionOptions session;
};

/// Sessions that play a recording, each from its beginning. Thread: any.
class RecordedTracking final : public SourcedTracking {
  public:
    /// Reads it once beforehand, so that what is wrong with it is known before any session.
    static std::variant<std::shared_ptr<RecordedTracking>, RecordingError>
    open(const RecordedOptions& options);

    const RecordingInfo& info() const { return m_info; }
    std::size_t size() const { return m_size; } ///< frames of a pass
    /// The damage that was tolerated.
    const std::optional<RecordingError>& damage() const { return m_damage; }

  protected:
    std::unique_ptr<FrameSource> makeSource() const override;

  private:
    RecordedTracking(const RecordedOptions& options, const RecordingReader& reader);

    const RecordedOptions m_options;
    const RecordingInfo m_info;
    const std::size_t m_size;
    const std::optional<RecordingError> m_damage;
};

} // namespace kestrin::session
