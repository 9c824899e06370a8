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
    platform::Interface content;
    for (const auto& [partName, kind] : interfaces[name])
        content.parts[partName] = makePart(kind);
    content.root = content.parts["mainView"];
    for (const auto& [partName, part] : content.parts)
        if (part != content.root)
            content.root->addSubview(part);
    return loaded[name] = content;
}

} // namespace kestrin::test
