#pragma once

#include "session/recording/RecordedAnchors.h"
#include "session/recording/RecordingReader.h"

#include <functional>
#include <string_view>

namespace kestrin::session {

/// The frames of a recording, as a session sees them. Tracking that is reset begins at the first frame again,
/// with its times: whoever resets it sees the same every time.
class RecordedSource final : public FrameSource {
  public:
    struct Options {
        std::filesystem::path folder;
        Damage damage = Damage::refused;
        bool loops = false; ///< begins again at the end, while time goes on
        std::function<void(std::string_view)> log;
    };
    RecordedSource(RecordingInfo info, Options options);

    CameraModel model() const override { return m_info.camera; }
    double rate() const override { return m_info.rate; }
    std::optional<std::string> open() override;
    void begin(const platform::ArConfiguration& configuration, unsigned options) override;
    void forget(const std::string& identifier) override { m_anchors.forget(identifier); }
    std::optional<double> nextTime() const override;
    void skip() override;
    std::optional<SourcedFrame> next(int orientation, Nv12Buffer& picture) override;

  private:
    /// The next frame, whose changes of anchors are taken up.
    SourcedFrame advance();
    void tellOfMissing(std::size_t index);

    const RecordingInfo m_info;
    const Options m_options;
    std::unique_ptr<RecordingReader> m_reader;
    RecordedAnchors m_anchors;
    std::size_t m_index = 0;
    double m_offset = 0;       ///< of the pass, seconds
    std::size_t m_missing = 0; ///< pictures in a row that could not be decoded
    bool m_hasLogged = false;
};

} // namespace kestrin::session
