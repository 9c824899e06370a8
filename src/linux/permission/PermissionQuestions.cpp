#include "linux/permission/PermissionQuestions.h"

namespace kestrin::gtk {

namespace {

constexpr const char* kAllow = "_Allow";
constexpr const char* kRefuse = "_Don’t Allow";

std::string applicationName() {
    const char* const name = g_get_application_name();
    return name ? "“" + std::string(name) + "”" : "this application";
}

} // namespace

Question cameraQuestion() {
    return {"Camera Access", "Allow " + applicationName() + " to use the camera?",
            "What the camera sees is shown behind the application’s pages, which place things in it and may "
            "take screenshots. Your answer is remembered.",
            kAllow, kRefuse};
}

Question photosQuestion() {
    return {"Photo Access", "Allow " + applicationName() + " to save pictures to your photos?",
            "They go into the folder “Kestrin” among your pictures. The pictures that are there already stay "
            "as they are. Your answer is remembered.",
            kAllow, kRefuse};
}

} // namespace kestrin::gtk
