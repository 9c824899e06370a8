// Two hundred image triggers from the cache, against libjpeg-turbo reading the same files one after the
// other.

#include "HostApplication.h"
#include "Report.h"
#include "Statistics.h"
#include "services/util/KestrinUtil.h"
#include "tracking/TriggerSetBuild.h"

#include <stdlib.h>
#include <turbojpeg.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <string>

using namespace kestrin;
using namespace kestrin::bench;

namespace {

constexpr int kTriggers = 200;
constexpr int kSide = 1024; // pixels
constexpr int kRounds = 7;

using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// As printed matter is: even colours with sharp edges, and a grain over all of it.
platform::Image makePrint(std::uint32_t seed) {
    std::vector<std::uint8_t> pixels(std::size_t(kSide) * kSide * 4, 255);
    std::uint32_t noise = seed * 2654435761U + 1;
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        const auto x = i / 4 % kSide, y = i / 4 / kSide;
        const auto tile = (x / 37 + seed) * 73 ^ (y / 53 + seed) * 151;
        noise = noise * 1664525 + 1013904223;
        for (std::size_t channel = 0; channel < 3; ++channel)
            pixels[i + channel] =
                std::uint8_t(40 + tile * (channel + 3) % 160 + x / 32 + (noise >> (20 + channel * 3) & 3));
    }
    return {kSide, kSide, std::move(pixels)};
}

TriggerBundle cacheTriggers() {
    TriggerBundle bundle;
    for (int i = 0; i < kTriggers; ++i) {
        bundle.triggers.push_back({"trigger-" + std::to_string(i), "https://127.0.0.1:9/none", 0, 0});
        KestrinUtil::saveJPGImage(makePrint(std::uint32_t(i)), bundle.triggers.back().id);
    }
    bundle.records = bundle.triggers.size();
    return bundle;
}

double loadOnce(const TriggerBundle& bundle) {
    std::promise<TriggerSet> built;
    const auto begin = Clock::now();
    TriggerSetBuild::start(
        bundle, [](float) {}, [&](TriggerSet set) { built.set_value(std::move(set)); });
    if (built.get_future().get().size() != kTriggers)
        std::abort();
    return msSince(begin);
}

std::vector<std::string> readFiles(const std::filesystem::path& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        if (entry.path().extension() == ".jpg")
            files.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return files;
}

double decodeOnce(const std::vector<std::string>& files) {
    std::vector<std::uint8_t> pixels(std::size_t(kSide) * kSide * 4);
    const auto begin = Clock::now();
    void* decoder = tjInitDecompress();
    for (const std::string& file : files)
        if (tjDecompress2(decoder, reinterpret_cast<const std::uint8_t*>(file.data()), file.size(),
                          pixels.data(), kSide, 0, kSide, TJPF_RGBA, 0) != 0)
            std::abort();
    tjDestroy(decoder);
    return msSince(begin);
}

/// The most memory that the process held since `forgetPeak`, MB.
double peak() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::stod(line.substr(6)) * 1024 / 1e6;
    return std::numeric_limits<double>::quiet_NaN();
}

void forgetPeak() { std::ofstream("/proc/self/clear_refs") << 5; }

} // namespace

int main(int argc, char** argv) {
    Report report("triggers", argc, argv);
    std::string name = (std::filesystem::temp_directory_path() / "kestrin-bench-XXXXXX").string();
    const std::filesystem::path folder = mkdtemp(name.data());
    setenv("XDG_DATA_HOME", folder.c_str(), 1);
    installPlatform("");
    report.progress("caching " + std::to_string(kTriggers) + " pictures");
    const TriggerBundle bundle = cacheTriggers();
    forgetPeak();
    loadOnce(bundle);
    const double most = peak();
    const auto files = readFiles(folder);
    std::vector<double> ours, baseline;
    for (int round = 0; round < kRounds; ++round) {
        ours.push_back(loadOnce(bundle));
        baseline.push_back(decodeOnce(files));
    }
    std::filesystem::remove_all(folder);
    report.ratio("200 of 1024x1024", "ms", median(ours), median(baseline), atMost(0.8));
    report.value("most memory of the process", "MB", most, atMost(256));
    return report.finish();
}
