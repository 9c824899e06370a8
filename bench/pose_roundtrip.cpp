// A frame of the session to the page's onPose and back to main, against a bare WebKitGTK view that evaluates
// the same texts, handed over from the same second thread, and whose page answers alike.

#include "BareWebView.h"
#include "HostApplication.h"
#include "MainLoop.h"
#include "PosePage.h"
#include "Report.h"
#include "Road.h"
#include "Statistics.h"
#include "services/util/Format.h"
#include "tracking/CompressorUtil.h"

#include <atomic>
#include <thread>

using namespace kestrin;
using namespace kestrin::bench;

namespace {

constexpr int kBlocks = 100;
constexpr int kFramesPerBlock = 100;
constexpr int kFlood = 10'000;
constexpr double kFrameSeconds = 1000; // the page hears a thousandth of a frame's time

std::string poseText(int frame) {
    return format(
        "window.__KRJ_Native_IN.onPose(atob('%@'));",
        CompressorUtil::compressMatrixAsPoseTsToBitString(platform::Matrix::identity(), float(frame)));
}

struct Times {
    std::vector<double> ours, baseline;
};

void append(std::vector<double>& all, const std::vector<double>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

/// Thread: session.
Times measure(Road& ours, Road& baseline) {
    ours.pingPong(kFramesPerBlock); // to warm up, as the next
    baseline.pingPong(kFramesPerBlock);
    Times times;
    for (int i = 0; i < kBlocks; ++i) {
        append(times.ours, ours.pingPong(kFramesPerBlock));
        append(times.baseline, baseline.pingPong(kFramesPerBlock));
    }
    return times;
}

/// Runs the main loop for as long as `work` needs on a thread of its own.
template <class Work>
void runBeside(Work work) {
    std::atomic<bool> done = false;
    std::thread thread([&] {
        work();
        done = true;
        g_main_context_wakeup(nullptr);
    });
    runUntil(600, [&] { return done.load(); });
    thread.join();
}

} // namespace

int main(int argc, char** argv) {
    Report report("pose_roundtrip", argc, argv);
    const auto server = servePosePage();
    const auto tracking = installPlatform(server->hostMapEntry(content::Form::Direct));

    int ready = 0;
    Road ours([&](int frame) { tracking->send(frame * kFrameSeconds); });
    const auto hear = [&ready](Road& road, double frame) {
        frame < 0 ? void(++ready) : road.answered(frame);
    };
    const auto view =
        startHostView(server->keyString(content::Form::Direct), [&](double frame) { hear(ours, frame); });

    std::optional<BareWebView> bare;
    Road baseline([&](int frame) { bare->evaluate(poseText(frame)); });
    bare.emplace([&](std::string_view message) {
        if (const auto frame = timeIn(message))
            hear(baseline, *frame);
    });
    showWindow(bare->widget(), kWindowWidth, kWindowHeight);
    bare->load(server->templateUrl(content::Form::Direct));

    if (!runUntil(30, [&] { return ready == 2; })) {
        report.progress("a page does not answer");
        return 2;
    }
    runFor(1);

    Times times;
    report.progress("one frame at a time");
    runBeside([&] { times = measure(ours, baseline); });
    report.progress("all frames at once");
    runBeside([&] { ours.flood(kFlood); });

    report.ratio("median", "us", median(times.ours), median(times.baseline), atMost(1.2));
    report.value("frames", "", ours.sent(), atLeast(kFlood));
    report.value("lost", "", ours.lost(), atMost(0));
    report.value("out of order", "", ours.disordered(), atMost(0));
    return report.finish();
}
