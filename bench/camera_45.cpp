// Camera pictures of 640x480 offered 45 times a second to a window of 800x600 below a transparent page: how
// many are shown, what that costs main, and whether pacing by a page that never answers keeps main from
// answering.

#include "AnswerTime.h"
#include "AwakeCores.h"
#include "HostApplication.h"
#include "MainLoop.h"
#include "PaintCount.h"
#include "ProcessorTime.h"
#include "Report.h"
#include "Statistics.h"
#include "bridge/KestrinWebView.h"
#include "linux/toolkit/Widget.h"
#include "tracking/CVManager.h"

#include <atomic>
#include <chrono>
#include <thread>

using namespace kestrin;
using namespace kestrin::bench;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kRounds = 5;
constexpr double kSettleSeconds = 0.5;
constexpr double kCountSeconds = 2;
constexpr double kWatchSeconds = 3;
constexpr double kOfferedPerSecond = 45;

/// Sends frames at their rate while it lives.
class Camera {
  public:
    explicit Camera(MemoryTracking& tracking) : m_thread([this, &tracking] { run(tracking); }) {}
    ~Camera() {
        m_ends = true;
        m_thread.join();
    }

  private:
    void run(MemoryTracking& tracking) {
        const auto begin = Clock::now();
        for (int i = 0; !m_ends; ++i) {
            const std::chrono::duration<double> due(i / kOfferedPerSecond);
            std::this_thread::sleep_until(begin + std::chrono::duration_cast<std::chrono::nanoseconds>(due));
            tracking.send(due.count());
        }
    }

    std::atomic<bool> m_ends = false;
    std::thread m_thread;
};

/// What is seen while the camera runs in one way.
struct Observed {
    std::vector<double> shown;           ///< pictures a second
    std::vector<double> cpuMilliseconds; ///< of main, a picture
    std::vector<double> answers;         ///< milliseconds

    void observe(GtkWidget* window) {
        runFor(kSettleSeconds);
        shown.push_back(countPictures(window));
        watchMain(shown.back());
    }

  private:
    static double countPictures(GtkWidget* window) {
        const PaintCount paint(window);
        const auto begin = Clock::now();
        runFor(kCountSeconds);
        return paint.pictures() / std::chrono::duration<double>(Clock::now() - begin).count();
    }
    // Apart from the counting, which keeps main busy itself.
    void watchMain(double perSecond) {
        AnswerTime answerTime;
        const auto begin = Clock::now();
        const double before = threadMs();
        runFor(kWatchSeconds);
        const double used = threadMs() - before;
        const double pictures = perSecond * std::chrono::duration<double>(Clock::now() - begin).count();
        cpuMilliseconds.push_back(used / pictures);
        const auto more = answerTime.take();
        answers.insert(answers.end(), more.begin(), more.end());
    }
};

} // namespace

int main(int argc, char** argv) {
    Report report("camera_45", argc, argv);
    const auto tracking = installPlatform("");

    // The host view's parts without the host view, which keeps the pace locked for as long as the camera
    // runs.
    const auto root = platform::makeView<platform::View>();
    root->setFrame({{}, {kWindowWidth, kWindowHeight}});
    const auto manager = CVManager::initWithKeys(nullptr);
    const auto page = std::make_shared<KestrinWebView>();
    page->prepare(manager);
    page->loadUrl("data:text/html,<body style='background: transparent'>above", false);
    manager->addToParentView(root);
    page->addToParentView(root);
    GtkWidget* window = showWindow(gtk::widget(*root), kWindowWidth, kWindowHeight);
    manager->startCamera();
    const AwakeCores awake; // locked and unlocked paint at different rates
    const Camera camera(*tracking);
    runFor(2);

    Observed unlocked, locked;
    for (int round = 1; round <= kRounds; ++round) {
        report.progress("round " + std::to_string(round) + " of " + std::to_string(kRounds));
        manager->stopMarkerlessTracking(); // the camera goes on, unlocked
        unlocked.observe(window);
        manager->startMarkerlessTracking();
        locked.observe(window);
    }
    report.value("unlocked: shown", "/s", median(unlocked.shown), atLeast(43));
    report.value("unlocked: CPU of main", "ms/shown", median(unlocked.cpuMilliseconds), atMost(1.5));
    report.value("locked: shown", "/s", median(locked.shown), {28, 31});
    report.value("locked: CPU of main", "ms/shown", median(locked.cpuMilliseconds));
    report.ratio("locked: p95 answer of main", "ms", percentile(locked.answers, 0.95),
                 percentile(unlocked.answers, 0.95), atMost(1.1));
    return report.finish();
}
