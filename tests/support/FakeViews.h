#pragma once

#include "platform/Widgets.h"
#include "support/FakePeer.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace kestrin::test {

struct FakeImageViewPeer : FakePeer<platform::ImageViewPeer> {
    void setImage(const platform::Image&) override {}
};
struct FakeLabelPeer : FakePeer<platform::LabelPeer> {
    void setText(const std::string&) override {}
};
struct FakeButtonPeer : FakePeer<platform::ButtonPeer> {
    void onClick(std::function<void()>) override {}
};
struct FakeSpinnerPeer : FakePeer<platform::SpinnerPeer> {
    void setColor(const platform::Color&) override {}
};

/// Offers the framework's three overlays and the preview, with their parts, unless a test changes
/// `interfaces`.
class FakeViewToolkit : public platform::ViewToolkit {
  public:
    using Part = std::shared_ptr<platform::View> (*)();

    std::unique_ptr<platform::ViewPeer> makePeer(platform::View&) override {
        return std::make_unique<FakePeer<platform::ViewPeer>>();
    }
    platform::Interface loadInterface(const std::string& name) override {
        platform::Interface content;
        for (const auto& [partName, make] : interfaces[name])
            content.parts[partName] = make();
        content.root = content.parts["mainView"];
        for (const auto& [partName, part] : content.parts)
            if (part != content.root)
                content.root->addSubview(part);
        return loaded[name] = content;
    }

    static std::shared_ptr<platform::View> plain() { return platform::makeView<platform::View>(); }
    template <class Kind, class Peer>
    static std::shared_ptr<platform::View> special() {
        return platform::makeView<Kind>(std::make_unique<Peer>());
    }
    static constexpr Part kImage = special<platform::ImageView, FakeImageViewPeer>,
                          kLabel = special<platform::Label, FakeLabelPeer>,
                          kSpinner = special<platform::Spinner, FakeSpinnerPeer>,
                          kButton = special<platform::Button, FakeButtonPeer>;

    /// Resource name to part names and what makes them.
    std::map<std::string, std::map<std::string, Part>> interfaces{
        {"SdkLoading",
         {{"mainView", plain},
          {"backgroundImage", kImage},
          {"loadingSpinner", kSpinner},
          {"message", kLabel}}},
        {"ErrorPreview",
         {{"mainView", plain}, {"title", kLabel}, {"backgroundView", plain}, {"body", kLabel}}},
        {"MarkerLoading", {{"mainView", plain}, {"backgroundImage", kImage}}},
        {"ImagePreview",
         {{"mainView", plain},
          {"imageHolder", plain},
          {"cancelButton", kButton},
          {"shareButton", kButton},
          {"imageView", kImage},
          {"safeView", plain}}}};
    /// What was loaded last of each.
    std::map<std::string, platform::Interface> loaded;
};

} // namespace kestrin::test
