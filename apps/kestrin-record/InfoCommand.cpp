#include "Commands.h"
#include "Ending.h"
#include "Recordings.h"

#include "session/TrackingReasonName.h"

#include <boost/json.hpp>

#include <cstdio>
#include <map>

namespace kestrin::record {

namespace {

struct Summary {
    std::map<std::string_view, std::size_t> tracking; ///< frames by state
    std::size_t added = 0, updated = 0, removed = 0;  ///< anchors
    std::size_t imu = 0;                              ///< samples
};

Summary summarize(const session::RecordingReader& reader) {
    Summary summary;
    for (std::size_t i = 0; i < reader.size(); ++i) {
        const session::RecordedFrame& recorded = reader.frame(i);
        ++summary.tracking[session::nameOf(recorded.frame.reason)];
        summary.added += recorded.frame.anchors.added.size();
        summary.updated += recorded.frame.anchors.updated.size();
        summary.removed += recorded.frame.anchors.removed.size();
        summary.imu += recorded.imu.size();
    }
    return summary;
}

void printJson(const session::RecordingReader& reader, const Summary& summary) {
    const session::RecordingInfo& info = reader.info();
    boost::json::object tracking;
    for (const auto& [name, frames] : summary.tracking)
        tracking[name] = frames;
    boost::json::object result{
        {"width", info.camera.width},
        {"height", info.camera.height},
        {"rate", info.rate},
        {"duration", durationOf(reader)},
        {"frames", reader.size()},
        {"tracking", tracking},
        {"anchors", {{"added", summary.added}, {"updated", summary.updated}, {"removed", summary.removed}}},
        {"imu", summary.imu},
        {"origin", info.origin},
        {"finished", reader.isFinished()}};
    if (reader.damage())
        result["damage"] = reader.damage()->text;
    std::printf("%s\n", boost::json::serialize(result).c_str());
}

void printText(const session::RecordingReader& reader, const Summary& summary) {
    const session::RecordingInfo& info = reader.info();
    std::printf("size      %dx%d\nrate      %.4g frames/s\nduration  %.3f s\nframes    %zu\n",
                info.camera.width, info.camera.height, info.rate, durationOf(reader), reader.size());
    std::string states;
    for (const auto& [name, frames] : summary.tracking)
        states += (states.empty() ? "" : ", ") + std::string(name) + " " + std::to_string(frames);
    std::printf("tracking  %s\nanchors   %zu added, %zu updated, %zu removed\nimu       %s\n", states.c_str(),
                summary.added, summary.updated, summary.removed, counted(summary.imu, "sample").c_str());
    if (!info.origin.empty())
        std::printf("origin    %s\n", info.origin.c_str());
    std::printf("state     %s\n", reader.isFinished() ? "finished" : "interrupted");
    if (reader.damage())
        std::printf("damage    %s\n", reader.damage()->text.c_str());
}

void run(int argc, char** argv) {
    gboolean json = FALSE;
    const GOptionEntry entries[] = {
        {"json", 0, 0, G_OPTION_ARG_NONE, &json, "Print one JSON object", nullptr}, {}};
    const std::vector<std::string> rest = parse(
        {"RECORDING.krs", "Says what a recording holds. Of a damaged one, what comes before the damage.",
         nullptr, entries},
        argc, argv);
    const auto reader = openRecording(rest[0], session::Damage::tolerated);
    const Summary summary = summarize(*reader);
    if (json)
        printJson(*reader, summary);
    else
        printText(*reader, summary);
}

} // namespace

const Command kInfo{"info", "say what a recording holds", run};

} // namespace kestrin::record
