#pragma once

#include "platform/Widgets.h"
#include "support/RecordedView.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace kestrin::test {

struct FakeImageViewPeer : RecordingPeer<platform::ImageViewPeer> {
    void setImage(const platform::Image& value) override { image = value; }
    platform::Image image;
};

struct FakeLabelPeer : RecordingPeer<platform::LabelPeer> {
    void setText(const std::string& value) override { text = value; }
    std::string text;
};

struct FakeButtonPeer : RecordingPeer<platform::ButtonPeer> {
    void onClick(std::function<void()> value) override { click = std::move(value); }
    std::function<void()> click;
};

struct FakeSpinnerPeer : RecordingPeer<platform::SpinnerPeer> {
    void setColor(const platform::Color& value) override { color = value; }
    platform::Color color;
};

/// Offers the framework's three overlays and the preview, with their parts, unless a test changes
/// `interfaces`.
class FakeViewToolkit : public platform::ViewToolkit {
  public:
    enum class Part { view, image, label, spinner, button };

    FakeViewToolkit();
    std::unique_ptr<platform::ViewPeer> makePeer(platform::View& view) override;
    platform::Interface loadInterface(const std::string& name) override;

    /// Resource name to part names and kinds.
    std::map<std::string, std::map<std::string, Part>> interfaces;
    /// What was loaded last of each.
    std::map<std::string, platform::Interface> loaded;
};

} // namespace kestrin::test
