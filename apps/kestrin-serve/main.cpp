#include "Arguments.h"

#include "content/ContentServer.h"
#include "content/lookup/CameraLookup.h"

#include <boost/json.hpp>
#include <glib-unix.h>

#include <csignal>
#include <cstdio>
#include <memory>

namespace {

using namespace kestrin;
using content::Form;

enum Status { kDone = 0, kFailed = 1, kMisused = 2 };

int failure(Status status, const std::string& text) {
    std::fprintf(stderr, "kestrin-serve: %s\n", text.c_str());
    return status;
}

void log(std::string_view line) {
    const std::unique_ptr<GDateTime, decltype(&g_date_time_unref)> now(g_date_time_new_now_local(),
                                                                       g_date_time_unref);
    const std::unique_ptr<char, decltype(&g_free)> time(g_date_time_format(now.get(), "%H:%M:%S"), g_free);
    std::fprintf(stderr, "%s %.*s\n", time.get(), int(line.size()), line.data());
}

/// What a client has to be told.
std::string greeting(const content::ContentServer& server, bool keyOnly) {
    if (keyOnly)
        return server.keyString(Form::Direct);
    const std::string hostMap = server.hostMapEntry(Form::Direct);
    return boost::json::serialize(boost::json::object{{"address", hostMap.substr(hostMap.find('=') + 1)},
                                                      {"hostMap", hostMap},
                                                      {"template", server.templateUrl(Form::Direct)},
                                                      {"application", server.applicationId()},
                                                      {"key", server.keyString(Form::Direct)}});
}

/// From when it is made, an interrupt or a polite kill only ends the waiting.
class Interrupts {
  public:
    Interrupts() {
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            g_unix_signal_add(
                signal,
                +[](gpointer loop) -> gboolean {
                    g_main_loop_quit(static_cast<GMainLoop*>(loop));
                    return G_SOURCE_CONTINUE;
                },
                m_loop.get());
    }
    void await() { g_main_loop_run(m_loop.get()); }

  private:
    const std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> m_loop{g_main_loop_new(nullptr, FALSE),
                                                                          g_main_loop_unref};
};

int run(const serve::Arguments& arguments) {
    content::ServerOptions options;
    options.address = arguments.address;
    options.port = arguments.port;
    options.hostNames = arguments.hostNames;
    options.lookup = std::make_shared<content::CameraLookup>();
    if (arguments.logs)
        options.log = log;
    Interrupts interrupts;
    content::ContentServer server(content::ApplicationFolder{arguments.folder}, options);
    if (const auto wrong = server.start())
        return failure(kFailed, *wrong);
    std::printf("%s\n", greeting(server, arguments.keyOnly).c_str());
    std::fflush(stdout);
    interrupts.await();
    return kDone;
}

} // namespace

int main(int argc, char** argv) {
    try {
        const serve::Arguments arguments = serve::parseArguments(argc, argv);
        if (!arguments.asksVersion)
            return run(arguments);
        std::printf("kestrin-serve " KESTRIN_VERSION "\n");
        return kDone;
    } catch (const serve::Misuse& misuse) {
        return failure(kMisused, misuse.what());
    } catch (const std::exception& error) {
        return failure(kFailed, error.what());
    }
}
