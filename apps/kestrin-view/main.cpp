#include "Arguments.h"
#include "Cameras.h"
#include "Viewer.h"

#include "linux/toolkit/DebugTopics.h"

#include <cstdio>
#include <cstdlib>

namespace {

kestrin::view::Ending obey(const kestrin::view::Arguments& arguments) {
    if (arguments.listsCameras)
        return kestrin::view::listCameras();
    return arguments.forgetsPermissions ? kestrin::view::forgetPermissions() : kestrin::view::run(arguments);
}

} // namespace

int main(int argc, char** argv) {
    using namespace kestrin::view;
    ::setenv("LIBCAMERA_LOG_LEVELS", "*:ERROR", 0); // else it tells the terminal about itself
    const char* const topics = std::getenv("KESTRIN_DEBUG");
    if (topics && kestrin::gtk::readDebugWish(topics).wantsHelp) {
        std::puts(kestrin::gtk::debugHelp().c_str());
        return 0;
    }
    g_log_set_writer_func(kestrin::gtk::writeLogLine, nullptr, nullptr);
    const auto parsed = parseArguments(argc, argv);
    if (const auto* ending = std::get_if<Ending>(&parsed)) {
        std::fprintf(ending->status == 0 ? stdout : stderr, "%s\n", ending->text.c_str());
        return ending->status;
    }
    const Ending ending = obey(std::get<Arguments>(parsed));
    if (!ending.text.empty())
        std::fprintf(ending.status == 0 ? stdout : stderr, "%s\n", ending.text.c_str());
    return ending.status;
}
