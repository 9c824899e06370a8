#include "linux/capture/CameraDescription.h"

#include <algorithm>
#include <iterator>

namespace kestrin::gtk {

namespace {

std::string withoutCase(const std::string& text) {
    const GText valid(g_utf8_make_valid(text.c_str(), -1));
    return GText(g_utf8_casefold(valid.get(), -1)).get();
}

template <class Test>
CameraDescriptions those(const CameraDescriptions& cameras, Test test) {
    CameraDescriptions found;
    std::ranges::copy_if(cameras, std::back_inserter(found), [&](const auto& one) { return test(*one); });
    return found;
}

} // namespace

CameraDescriptions camerasNamed(const CameraDescriptions& cameras, const std::string& name) {
    CameraDescriptions found = those(cameras, [&](const CameraDescription& camera) {
        return camera.name == name || camera.devicePath == name;
    });
    if (!found.empty() && !name.empty())
        return found;
    return those(cameras, [part = withoutCase(name)](const CameraDescription& camera) {
        return withoutCase(camera.name).find(part) != std::string::npos;
    });
}

CameraDescriptions oncePerDevice(const CameraDescriptions& cameras) {
    return those(cameras, [&](const CameraDescription& camera) {
        return camera.isDirect || std::ranges::none_of(cameras, [&](const auto& other) {
                   return other->isDirect && other->devicePath == camera.devicePath;
               });
    });
}

} // namespace kestrin::gtk
