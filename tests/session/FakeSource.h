#pragma once

#include "session/FrameSource.h"

#include <atomic>
#include <map>
#include <utility>

namespace kestrin::session::test {

inline std::shared_ptr<platform::ArAnchor> makeAnchor(const std::string& identifier) {
    auto anchor = std::make_shared<platform::ArAnchor>();
    anchor->identifier = identifier;
    return anchor;
}

/// Frames without a picture, at a fixed rate, with anchors by script.
class FakeSource final : public FrameSource {
  public:
    /// What a test sees and sets while the session has the source.
    struct Script {
        double rate = 100;
        std::uint64_t count = UINT64_MAX;               ///< of frames
        std::map<std::uint64_t, AnchorChanges> anchors; ///< by frame
        std::atomic<int> skipped{0}, made{0}, ended{0};
    };

    explicit FakeSource(std::shared_ptr<Script> script) : m_script(std::move(script)) {}
    ~FakeSource() override { ++m_script->ended; }

    CameraModel model() const override { return {{500, 510, 320.5, 239}, 64, 48, Mounting::upright}; }
    double rate() const override { return m_script->rate; }
    std::optional<std::string> open() override { return std::nullopt; }
    void begin(const platform::ArConfiguration&, unsigned) override {}
    void forget(const std::string& identifier) override {
        m_changes.removed.push_back(makeAnchor(identifier));
    }
    std::optional<double> nextTime() const override {
        return m_index < m_script->count ? std::optional(double(m_index) / m_script->rate) : std::nullopt;
    }
    void skip() override {
        ++m_index;
        ++m_script->skipped;
    }
    std::optional<SourcedFrame> next(int, Nv12Buffer& picture) override {
        picture.bytes()[0] = std::uint8_t(m_index);
        if (const auto changes = m_script->anchors.find(m_index); changes != m_script->anchors.end()) {
            m_changes.added = changes->second.added;
            m_changes.updated = changes->second.updated;
        }
        ++m_script->made;
        const double time = double(m_index++) / m_script->rate;
        return SourcedFrame{
            time, platform::Matrix::identity(), model().intrinsics, platform::TrackingReason::none,
            900,  std::exchange(m_changes, {})};
    }

  private:
    const std::shared_ptr<Script> m_script;
    AnchorChanges m_changes;
    std::uint64_t m_index = 0;
};

} // namespace kestrin::session::test
