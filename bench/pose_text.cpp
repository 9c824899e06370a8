// Pose matrix to finished script text, against printing the sixteen floats as JSON.

#include "AllocationCount.h"
#include "PrintedPose.h"
#include "Report.h"
#include "Statistics.h"
#include "services/util/Format.h"
#include "tracking/CompressorUtil.h"

#include <chrono>
#include <cmath>
#include <vector>

using namespace kestrin;
using namespace kestrin::bench;

namespace {

constexpr int kBlocks = 400;
constexpr int kPosesPerBlock = 512;

/// What the host view does for every frame.
std::string packedPose(const platform::Matrix& pose, float seconds) {
    return format("window.__KRJ_Native_IN.onPose(atob('%@'));",
                  CompressorUtil::compressMatrixAsPoseTsToBitString(pose, seconds));
}

/// A walk around a table: no two matrices are alike, and their numbers are as long as in real ones.
std::vector<platform::Matrix> walk() {
    std::vector<platform::Matrix> poses;
    for (int i = 0; i < kPosesPerBlock; ++i) {
        const double angle = 2 * M_PI * i / kPosesPerBlock;
        const auto c = float(std::cos(angle)), s = float(std::sin(angle));
        poses.push_back(
            {{{{c, 0, -s, 0}, {0, 1, 0, 0}, {s, 0, c, 0}, {1.7F * s, 1.4F + 0.1F * c, 1.7F * c, 1}}}});
    }
    return poses;
}

/// Nanoseconds a pose. The texts are used, so that none of the work can be left out.
template <class ToText>
double timeBlock(const std::vector<platform::Matrix>& poses, ToText toText, std::size_t& characters) {
    const auto begin = std::chrono::steady_clock::now();
    float seconds = 0;
    for (const platform::Matrix& pose : poses)
        characters += toText(pose, seconds += 0.033F).size();
    const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - begin;
    return taken.count() / double(poses.size());
}

double allocationsPerPose(const std::vector<platform::Matrix>& poses) {
    const std::size_t before = allocationCount();
    std::size_t characters = 0;
    timeBlock(poses, packedPose, characters);
    return double(allocationCount() - before) / double(poses.size());
}

} // namespace

int main(int argc, char** argv) {
    Report report("pose_text", argc, argv);
    const auto poses = walk();
    std::vector<double> ours, baseline;
    std::size_t characters = 0;
    for (int block = 0; block < kBlocks; ++block) {
        ours.push_back(timeBlock(poses, packedPose, characters));
        baseline.push_back(timeBlock(poses, printedPose, characters));
    }
    report.progress(std::to_string(characters) + " characters made");
    report.value("time", "ns", median(ours), atMost(120));
    report.ratio("time against printing", "ns", median(ours), median(baseline), atMost(0.1));
    report.value("allocations", "", allocationsPerPose(poses), atMost(2));
    return report.finish();
}
