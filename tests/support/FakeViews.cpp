#include "support/FakeViews.h"

namespace kestrin::test {

using platform::makeView;
using platform::View;

namespace {

std::shared_ptr<View> makePart(FakeViewToolkit::Part part) {
    switch (part) {
    case FakeViewToolkit::Part::image:
        return makeView<platform::ImageView>(std::make_unique<FakeImageViewPeer>());
    case FakeViewToolkit::Part::label:
        return makeView<platform::Label>(std::make_unique<FakeLabelPeer>());
    case FakeViewToolkit::Part::spinner:
        return makeView<platform::Spinner>(std::make_unique<FakeSpinnerPeer>());
    case FakeViewToolkit::Part::button:
        return makeView<platform::Button>(std::make_unique<FakeButtonPeer>());
    case FakeViewToolkit::Part::view:
        break;
    }
    return makeView<View>();
}

} // namespace

FakeViewToolkit::FakeViewToolkit() {
    interfaces["SdkLoading"] = {{"mainView", Part::view},
                                {"backgroundImage", Part::image},
                                {"loadingSpinner", Part::spinner},
                                {"message", Part::label}};
    interfaces["ErrorPreview"] = {{"mainView", Part::view},
                                  {"title", Part::label},
                                  {"backgroundView", Part::view},
                                  {"body", Part::label}};
    interfaces["MarkerLoading"] = {{"mainView", Part::view}, {"backgroundImage", Part::image}};
    interfaces["ImagePreview"] = {{"mainView", Part::view},       {"imageHolder", Part::view},
                                  {"cancelButton", Part::button}, {"shareButton", Part::button},
                                  {"imageView", Part::image},     {"safeView", Part::view}};
}

std::unique_ptr<platform::ViewPeer> FakeViewToolkit::makePeer(View&) {
    return std::make_unique<RecordingPeer<platform::ViewPeer>>();
}

platform::Interface FakeViewToolkit::loadInterface(const std::string& name) {
    platform::Interface loaded;
    const auto found = interfaces.find(name);
    if (found == interfaces.end())
        return loaded;
    for (const auto& [partName, kind] : found->second)
        loaded.parts[partName] = makePart(kind);
    loaded.root = loaded.parts.at("mainView");
    for (const auto& [partName, part] : loaded.parts)
        if (part != loaded.root)
            loaded.root->addSubview(part);
    return loaded;
}

} // namespace kestrin::test
