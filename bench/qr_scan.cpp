// What looking for QR codes costs the session's thread, at 1280x960 and 30 frames a second.

#include "HostApplication.h"
#include "MainLoop.h"
#include "ProcessorTime.h"
#include "Report.h"
#include "Statistics.h"
#include "core/config/KestrinFeatureFlags.h"
#include "services/KestrinQRScanner.h"
#include "session/QrImage.h"
#include "tracking/CVManager.h"

#include <atomic>
#include <chrono>
#include <numeric>
#include <thread>

using namespace kestrin;
using namespace kestrin::bench;

namespace {

constexpr int kRounds = 10;
constexpr int kFrames = 60; // a round
constexpr std::chrono::milliseconds kPeriod{33};

/// Frames from a thread of their own, while main runs: its processor time for each, milliseconds.
std::vector<double> sendFrames(MemoryTracking& tracking) {
    std::vector<double> used;
    std::atomic<bool> isDone = false;
    std::thread session([&] {
        auto due = std::chrono::steady_clock::now();
        for (int i = 0; i < kFrames; ++i) {
            std::this_thread::sleep_until(due += kPeriod);
            const double before = threadMs();
            tracking.send(i / 30.0);
            used.push_back(threadMs() - before);
        }
        isDone = true;
    });
    while (!isDone)
        runFor(0.1);
    session.join();
    return used;
}

double mean(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / double(values.size());
}

} // namespace

int main(int argc, char** argv) {
    Report report("qr_scan", argc, argv);
    const auto tracking =
        installPlatform("", {1280, 960, session::makeQrImage("https://kestrin.example/room")});
    KestrinFeatureFlags::getInstance()->put("qrscanner");
    const auto manager = CVManager::initWithKeys(nullptr);
    manager->startCamera();
    manager->startMarkerlessTracking();
    const auto scanner = KestrinQRScanner::getInstance();
    sendFrames(*tracking);

    std::vector<double> idle, scanning;
    double found = 0;
    for (int round = 1; round <= kRounds; ++round) {
        report.progress("round " + std::to_string(round) + " of " + std::to_string(kRounds));
        idle.push_back(mean(sendFrames(*tracking)));
        scanner->startRealtimeScan([&](const std::string&) { ++found; });
        scanning.push_back(mean(sendFrames(*tracking)));
        scanner->stopRealtimeScan();
    }
    report.value("processor time of the session's thread a frame", "ms", median(idle));
    report.value("more of it under a scan", "ms", median(scanning) - median(idle), atMost(0.1));
    report.value("frames whose code was read", "", found / (kRounds * kFrames), atLeast(0.9));
    return report.finish();
}
