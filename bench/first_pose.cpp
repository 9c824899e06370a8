// From the start of a process to the first pose in its page, against the start of a process that shows the
// same page of the same server in a bare WebKitGTK window, until the page's script runs.

#include "BareWebView.h"
#include "HostApplication.h"
#include "MainLoop.h"
#include "PosePage.h"
#include "Report.h"
#include "Statistics.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <unistd.h>

using namespace kestrin;
using namespace kestrin::bench;

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* kOurs = "--child-ours"; // KEY-STRING HOST-MAP-ENTRY
constexpr const char* kBare = "--child-bare"; // URL
constexpr int kRuns = 10;
constexpr double kPatience = 30; // seconds
constexpr std::chrono::milliseconds kFramePeriod(33);

// The child processes. They end at once when their moment has come, and the line they print says so.

[[noreturn]] void arrived() {
    std::puts("arrived");
    std::fflush(stdout);
    _exit(0);
}

int runOurs(const char* keyString, const char* hostMapEntry) {
    const auto tracking = installPlatform(hostMapEntry);
    const auto view = startHostView(keyString, [](double time) {
        if (time >= 0)
            arrived();
    });
    std::thread([tracking] {
        for (int frame = 0;; ++frame) {
            tracking->send(frame * 0.033);
            std::this_thread::sleep_for(kFramePeriod);
        }
    }).detach();
    runFor(kPatience);
    return 1;
}

int runBare(const char* url) {
    gtk_init();
    BareWebView view([](std::string_view message) {
        if (timeIn(message))
            arrived();
    });
    showWindow(view.widget(), kWindowWidth, kWindowHeight);
    view.load(url);
    runFor(kPatience);
    return 1;
}

// The process that measures.

/// Milliseconds from starting this program with the arguments to its line; ends this process when none comes.
double timeChild(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "/proc/self/exe");
    arguments.push_back(nullptr);
    const auto begin = Clock::now();
    const auto child = gtk::GRef<GSubprocess>::adopt(
        g_subprocess_newv(arguments.data(), G_SUBPROCESS_FLAGS_STDOUT_PIPE, nullptr));
    const auto lines = gtk::GRef<GDataInputStream>::adopt(
        g_data_input_stream_new(child ? g_subprocess_get_stdout_pipe(child.get()) : nullptr));
    const gtk::GText line(g_data_input_stream_read_line(lines.get(), nullptr, nullptr, nullptr));
    const std::chrono::duration<double, std::milli> taken = Clock::now() - begin;
    g_subprocess_wait(child.get(), nullptr, nullptr);
    if (!line) {
        std::fprintf(stderr, "first_pose: no answer from: %s\n", arguments[1]);
        std::exit(2);
    }
    return taken.count();
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], kOurs) == 0)
        return runOurs(argv[2], argv[3]);
    if (argc == 3 && std::strcmp(argv[1], kBare) == 0)
        return runBare(argv[2]);

    Report report("first_pose", argc, argv);
    // Keeps the display open: a virtual one starts afresh when its last client leaves.
    gtk_init();
    const auto server = servePosePage();
    const std::string key = server->keyString(content::Form::Direct);
    const std::string hostMap = server->hostMapEntry(content::Form::Direct);
    const std::string url = server->templateUrl(content::Form::Direct);
    std::vector<double> ours, baseline;
    for (int run = 0; run <= kRuns; ++run) {
        report.progress(run == 0 ? "warming up"
                                 : "run " + std::to_string(run) + " of " + std::to_string(kRuns));
        ours.push_back(timeChild({kOurs, key.c_str(), hostMap.c_str()}));
        baseline.push_back(timeChild({kBare, url.c_str()}));
        if (run == 0) {
            ours.clear();
            baseline.clear();
        }
    }
    report.ratio("median", "ms", median(ours), median(baseline), atMost(1.5));
    return report.finish();
}
