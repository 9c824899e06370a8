// Camera pictures of 640x480 offered 45 times a second to a window of 800x600 below a transparent page: how
// many are shown, what that costs main, and whether pacing by a page that never answers keeps main from
// answering.

#include "AnswerTime.h"
#include "HostApplication.h"
#include "MainLoop.h"
#include "PaintCount.h"
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

constexpr int kRounds = 5;
constexpr double kRoundSeconds = 4;
constexpr double kSettleSeconds = 0.5;
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
        const auto begin = std::chrono::steady_clock::now();
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
struct Shown {
    std::vector<double> perSecond;
    std::vector<double> cpuMilliseconds; ///< of main, a picture
    std::vector<double> answers;         ///< milliseconds

    void observe(PaintCount& paint, AnswerTime& answerTime) {
        runFor(kSettleSeconds);
        answerTime.take();
        const int before = paint.pictures();
        const double cpu = threadSeconds() - paint.ownSeconds();
        const auto begin = std::chrono::steady_clock::now();
        runFor(kRoundSeconds);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        const double used = threadSeconds() - paint.ownSeconds() - cpu;
        const int pictures = paint.pictures() - before;
        perSecond.push_back(pictures / taken.count());
        cpuMilliseconds.push_back(used * 1000 / pictures);
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
    const Camera camera(*tracking);
    runFor(2);

    PaintCount paint(window);
    AnswerTime answerTime;
    Shown unlocked, locked;
    for (int round = 1; round <= kRounds; ++round) {
        report.progress("round " + std::to_string(round) + " of " + std::to_string(kRounds));
        manager->stopMarkerlessTracking(); // the camera goes on, unlocked
        unlocked.observe(paint, answerTime);
        manager->startMarkerlessTracking();
        locked.observe(paint, answerTime);
    }
    report.value("unlocked: shown", "/s", median(unlocked.perSecond), atLeast(43));
    report.value("unlocked: CPU of main", "ms/shown", median(unlocked.cpuMilliseconds), atMost(1.5));
    report.value("locked: shown", "/s", median(locked.perSecond), {28, 31});
    report.value("locked: CPU of main", "ms/shown", median(locked.cpuMilliseconds));
    report.ratio("locked: p95 answer of main", "ms", percentile(locked.answers, 0.95),
                 percentile(unlocked.answers, 0.95), atMost(1.1));
    return report.finish();
}
