#include "Commands.h"
#include "Ending.h"
#include "Progress.h"
#include "Recordings.h"
#include "SideFolder.h"

#include "session/AnchorLedger.h"
#include "session/recording/RecordingWriter.h"

#include <cstdio>

namespace kestrin::record {

namespace {

using session::RecordedFrame;
using session::RecordingReader;

struct Request {
    std::filesystem::path from, to;
    double begin = 0;
    std::optional<double> end;
    Conversion options;
};

Request readRequest(int argc, char** argv) {
    char *from = nullptr, *to = nullptr;
    const GOptionEntry entries[] = {
        {"from", 0, 0, G_OPTION_ARG_STRING, &from, "The first moment to keep (default: 0)", "SECONDS"},
        {"to", 0, 0, G_OPTION_ARG_STRING, &to, "The last moment to keep (default: the end)", "SECONDS"},
        {}};
    Request request;
    const std::vector<std::string> rest =
        parse({"RECORDING.krs OUT.krs", "Makes a recording of a part of another.",
               "Its first frame is at time 0 and adds the anchors that are there by then.\n"
               "Example: kestrin-record trim hall.krs part.krs --from 2 --to 4.5\n",
               entries, &request.options},
              argc, argv);
    if (const auto text = take(from))
        request.begin = number("--from", *text);
    if (const auto text = take(to))
        request.end = number("--to", *text);
    request.from = rest[0];
    request.to = recordingName(rest[1]);
    return request;
}

/// The frames that are kept: from the first up to, not including, the last.
struct Part {
    std::size_t first = 0, last = 0;
};

Part partOf(const RecordingReader& reader, const Request& request) {
    Part part;
    while (part.first < reader.size() && reader.frame(part.first).frame.time < request.begin)
        ++part.first;
    part.last = part.first;
    while (part.last < reader.size() && (!request.end || reader.frame(part.last).frame.time <= *request.end))
        ++part.last;
    if (part.first == part.last)
        throw Ending(kFailed, request.from.string() + ": has no frame in the part to keep");
    return part;
}

/// The anchors that are there once a frame has been told.
platform::ArAnchors anchorsAt(const RecordingReader& reader, std::size_t frame) {
    session::AnchorLedger ledger;
    for (std::size_t i = 0; i <= frame; ++i)
        ledger.apply(reader.frame(i).frame.anchors);
    return ledger.current();
}

RecordedFrame shifted(RecordedFrame frame, double begin) {
    std::erase_if(frame.imu, [begin](const session::ImuSample& sample) { return sample.time < begin; });
    frame.frame.time -= begin;
    for (session::ImuSample& sample : frame.imu)
        sample.time -= begin;
    return frame;
}

void write(RecordingReader& reader, const Request& request, const Part& part,
           const std::filesystem::path& place) {
    session::RecordingInfo info = reader.info();
    info.camera.intrinsics = reader.frame(part.first).frame.intrinsics;
    auto made = session::RecordingWriter::create(place, info);
    if (const auto* error = std::get_if<session::RecordingError>(&made))
        throw Ending(kFailed, error->text);
    session::RecordingWriter& writer = *std::get<0>(made);
    session::Nv12Buffer picture = pictureBuffer(reader);
    Progress progress("Trimming", part.last - part.first, request.options.quiet);
    for (std::size_t i = part.first; i < part.last; ++i) {
        RecordedFrame frame = shifted(reader.frame(i), reader.frame(part.first).frame.time);
        if (i == part.first)
            frame.frame.anchors = {anchorsAt(reader, i), {}, {}};
        readPicture(reader, request.from, i, picture);
        check(writer.add(frame, picture));
        progress.step();
    }
    check(writer.finish());
}

void run(int argc, char** argv) {
    const Request request = readRequest(argc, argv);
    const auto reader = openRecording(request.from, request.options);
    const Part part = partOf(*reader, request);
    SideFolder side(request.to);
    write(*reader, request, part, side.path());
    side.takePlace();
    std::printf("%s: %s\n", request.to.c_str(), counted(part.last - part.first, "frame").c_str());
}

} // namespace

const Command kTrim{"trim", "make a recording of a part of another", run};

} // namespace kestrin::record
