#include "Cameras.h"

#include "linux/capture/CameraFinder.h"
#include "linux/capture/FileProbe.h"
#include "linux/capture/ModeText.h"
#include "linux/toolkit/MainLoopDispatch.h"
#include "linux/toolkit/StructuredLog.h"

#include <set>
#include <string_view>

namespace kestrin::view {

namespace {

constexpr double kLongestSearch = 10; // seconds
constexpr std::string_view kFilePrefix = "file:";

gtk::CameraDescriptions allCameras(platform::Dispatch& dispatch) {
    const auto finder = std::make_shared<gtk::CameraFinder>("", dispatch);
    finder->begin();
    finder->waitForFirstLook(kLongestSearch);
    return finder->cameras();
}

/// In quotation marks, each once.
std::string namesOf(const gtk::CameraDescriptions& cameras) {
    std::set<std::string> names;
    for (const auto& camera : cameras)
        names.insert("'" + camera->name + "'");
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

bool haveOneName(const gtk::CameraDescriptions& cameras) {
    return namesOf(cameras) == namesOf({cameras.back()});
}

} // namespace

Ending listCameras() {
    gtk::MainLoopDispatch dispatch(std::make_shared<gtk::StructuredLog>(gtk::LogLevel::off));
    Ending ending;
    for (const auto& camera : allCameras(dispatch)) {
        ending.text += (ending.text.empty() ? "" : "\n") + camera->name;
        if (!camera->devicePath.empty())
            ending.text += "  " + camera->devicePath;
        if (camera->canFocus)
            ending.text += "  autofocus";
        for (const std::string& line : gtk::modeTexts(camera->offered.get()))
            ending.text += "\n    " + line;
    }
    if (ending.text.empty())
        ending.text = "There is no camera. One can be played: --camera test, --camera file:clip.mkv";
    return ending;
}

bool isRealCamera(const std::string& name) { return name != "test" && !name.starts_with(kFilePrefix); }

std::string faultOfCamera(const std::string& name, platform::Dispatch& dispatch) {
    if (name.starts_with(kFilePrefix)) {
        const std::string path = name.substr(kFilePrefix.size());
        const std::string fault = gtk::faultOfVideo(path);
        return fault.empty() ? "" : "--camera: " + path + ": " + fault;
    }
    if (!isRealCamera(name))
        return "";
    const auto all = allCameras(dispatch);
    if (all.empty())
        return "--camera: there is no camera";
    const auto named = gtk::camerasNamed(all, name);
    if (named.empty())
        return "--camera: there is no '" + name + "', only " + namesOf(all);
    return haveOneName(named) ? "" : "--camera: '" + name + "' may be any of " + namesOf(named);
}

} // namespace kestrin::view
