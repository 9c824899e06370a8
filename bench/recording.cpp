// What recording and playing cost at 640x480. Times of threads are processor time, so that they hold beside
// other work; the time on the wall needs a machine that does nothing else.

#include "ProcessorTime.h"
#include "Report.h"
#include "Statistics.h"
#include "session/SimulatedTracking.h"
#include "session/recording/RecordedTracking.h"
#include "session/recording/Recorder.h"
#include "session/recording/RecordingWriter.h"

#include <stdlib.h>

#include <chrono>
#include <iostream>

using namespace kestrin;
using namespace kestrin::bench;
using namespace kestrin::session;

namespace {

constexpr int kFrames = 300;
constexpr double kRate = 30;

double wallMs() {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

struct Pictures {
    CameraModel camera;
    std::vector<SourcedFrame> frames;
    std::vector<std::shared_ptr<const Nv12Buffer>> pictures;
};

/// Takes the pictures of the default room, whose floor and walls are textured.
class Taker final : public SessionTap {
  public:
    explicit Taker(Pictures& taken) : m_taken(taken) {}
    void deliver(TappedFrame tapped) override {
        m_taken.camera = tapped.camera;
        m_taken.frames.push_back(tapped.frame);
        m_taken.pictures.push_back(std::make_shared<Nv12Buffer>(*tapped.picture));
    }
    int pictures() const override { return 0; }

  private:
    Pictures& m_taken;
};

Pictures takePictures() {
    Pictures taken;
    SimulatedOptions options;
    options.session.pacing = Pacing::stepped;
    options.session.tap = std::make_shared<Taker>(taken);
    SimulatedTracking tracking(options);
    const auto session = tracking.makeSession();
    session->run({}, 0);
    for (int i = 0; i < kFrames; ++i)
        tracking.step();
    return taken;
}

/// Writes one after the other, on this thread, as the recorder's thread does.
void measureWriting(Report& report, const Pictures& taken, const std::filesystem::path& folder) {
    auto writer = std::move(std::get<0>(RecordingWriter::create(folder, {taken.camera, kRate, "bench"})));
    std::vector<double> processor, wall;
    for (std::size_t i = 0; i < taken.frames.size(); ++i) {
        const double thread = threadMs(), clock = wallMs();
        if (const auto error = writer->add({taken.frames[i], {}}, *taken.pictures[i]))
            std::cerr << error->text << '\n';
        processor.push_back(threadMs() - thread);
        wall.push_back(wallMs() - clock);
    }
    writer->finish();
    report.value("record: processor time a frame", "ms", median(processor), atMost(4));
    report.value("record: time a frame", "ms", median(wall), atMost(4));
    const auto bytes = std::filesystem::file_size(folder / "video.mkv");
    report.value("record: size of a frame", "kB", double(bytes) / 1000 / double(taken.frames.size()));
}

/// What the session's thread pays: for handing a frame over while the recorder keeps up.
void measureTap(Report& report, const Pictures& taken, const std::filesystem::path& folder) {
    const auto recorder = std::move(std::get<0>(Recorder::create({folder, "bench", {}})));
    std::vector<double> processor;
    for (std::size_t i = 0; i < taken.frames.size(); ++i) {
        while (recorder->recorded() + recorder->missed() < i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        TappedFrame tapped{taken.camera, kRate, taken.frames[i], {}, taken.pictures[i]};
        const double thread = threadMs();
        recorder->deliver(std::move(tapped));
        processor.push_back(threadMs() - thread);
    }
    recorder->finish();
    report.value("tap: processor time of the session's thread a frame", "ms", median(processor),
                 atMost(0.05));
    report.value("tap: missed", "", double(recorder->missed()), atMost(0));
}

/// Plays it whole, as fast as it goes, and counts.
void measurePlaying(Report& report, const std::filesystem::path& folder) {
    RecordedOptions options;
    options.folder = folder;
    options.session.pacing = Pacing::asTaken;
    const auto tracking = std::get<0>(RecordedTracking::open(options));
    std::vector<double> speeds, processor;
    for (int pass = 0; pass < 5; ++pass) {
        const auto session = tracking->makeSession();
        const double begin = wallMs(), used = processorMs(CLOCK_PROCESS_CPUTIME_ID);
        session->run({}, 0);
        while (tracking->frames() < tracking->size())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        speeds.push_back(double(tracking->size()) / kRate * 1e3 / (wallMs() - begin));
        processor.push_back((processorMs(CLOCK_PROCESS_CPUTIME_ID) - used) / double(tracking->size()));
    }
    report.value("play: times real time", "", median(speeds), atLeast(8));
    report.value("play: processor time a frame", "ms", median(processor), atMost(4));
}

} // namespace

int main(int argc, char** argv) {
    Report report("recording", argc, argv);
    std::string name = (std::filesystem::temp_directory_path() / "kestrin-bench-XXXXXX").string();
    const std::filesystem::path folder = mkdtemp(name.data());
    report.progress("taking " + std::to_string(kFrames) + " pictures");
    const Pictures taken = takePictures();
    measureWriting(report, taken, folder / "written.krs");
    measureTap(report, taken, folder / "tapped.krs");
    measurePlaying(report, folder / "written.krs");
    std::filesystem::remove_all(folder);
    return report.finish();
}
