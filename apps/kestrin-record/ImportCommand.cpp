#include "Commands.h"
#include "Ending.h"
#include "Progress.h"
#include "Recordings.h"
#include "SideFolder.h"

#include "session/import/Import.h"

#include <cstdio>

namespace kestrin::record {

namespace {

using session::DataSet;

struct Request {
    std::optional<DataSet> kind;
    std::filesystem::path folder, recording;
    session::ImportOptions options;
    bool quiet = false;
};

/// A:B, of which either may be missing.
session::PictureRange readRange(const std::string& text) {
    session::PictureRange range;
    const auto colon = text.find(':');
    const std::string from = text.substr(0, colon), to = colon == text.npos ? "" : text.substr(colon + 1);
    const auto first = from.empty() ? 0 : wholeNumber(from), last = to.empty() ? range.to : wholeNumber(to);
    if (colon == text.npos || !first || !last || *first >= *last)
        throw Ending(kMisused, "--frames: expected FROM:TO, such as 0:100, not '" + text + "'");
    return {*first, *last};
}

Request readRequest(int argc, char** argv) {
    char *frames = nullptr, *rate = nullptr, *intrinsics = nullptr;
    gboolean quiet = FALSE;
    const GOptionEntry entries[] = {
        {"frames", 0, 0, G_OPTION_ARG_STRING, &frames,
         "Only the pictures from number FROM up to, not including, TO; the first is 0", "FROM:TO"},
        {"rate", 0, 0, G_OPTION_ARG_STRING, &rate,
         "Frames a second, where the pictures have no times (default: 30)", "HZ"},
        {"intrinsics", 0, 0, G_OPTION_ARG_STRING, &intrinsics,
         "The camera of a TUM folder: fx,fy,cx,cy[,k1,k2,p1,p2[,k3]]", "NUMBERS"},
        {"quiet", 'q', 0, G_OPTION_ARG_NONE, &quiet, "Show no progress", nullptr},
        {}};
    const std::vector<std::string> rest =
        parse({"[KIND] FOLDER OUT.krs", "Makes a recording of a data set with known poses.",
               "KIND is euroc, tum or pictures; it is told from the files when left out.\n"
               "Example: kestrin-record import MH_01_easy/mav0 hall.krs --frames 0:600\n",
               entries},
              argc, argv);
    Request request;
    if (const auto text = take(frames))
        request.options.pictures = readRange(*text);
    if (const auto text = take(rate))
        request.options.rate = number("--rate", *text);
    if (request.options.rate && !(*request.options.rate >= 0.1 && *request.options.rate <= 1000))
        throw Ending(kMisused, "--rate: expected a number from 0.1 to 1000");
    request.options.calibration = take(intrinsics);
    request.quiet = quiet;
    if (rest.size() == 3 && !(request.kind = session::dataSetNamed(rest[0])))
        throw Ending(kMisused, "expected euroc, tum or pictures, not '" + rest[0] + "'");
    request.folder = rest[rest.size() - 2];
    request.recording = recordingName(rest.back());
    return request;
}

session::Sequence readFolder(const Request& request) {
    const std::string name = request.folder.string();
    if (!std::filesystem::is_directory(request.folder))
        throw Ending(kFailed, name + ": no such folder");
    const auto kind = request.kind ? request.kind : session::dataSetIn(request.folder);
    if (!kind)
        throw Ending(kFailed, name + ": neither an EuRoC nor a TUM folder, nor one of pictures with poses");
    auto read = session::readSequence(*kind, request.folder, request.options);
    if (const auto* error = std::get_if<session::RecordingError>(&read))
        throw Ending(kFailed, error->text);
    return std::get<session::Sequence>(std::move(read));
}

void run(int argc, char** argv) {
    const Request request = readRequest(argc, argv);
    SideFolder side(request.recording);
    const session::Sequence sequence = readFolder(request);
    {
        Progress progress("Importing", sequence.shots.size(), request.quiet);
        check(session::writeRecording(sequence,
                                      std::filesystem::weakly_canonical(request.folder).filename().string(),
                                      side.path(), [&progress] { progress.step(); }));
    }
    side.takePlace();
    std::printf("%s: %s, %.3f s", request.recording.c_str(), counted(sequence.shots.size(), "frame").c_str(),
                session::seconds(sequence.shots.back().stamp - sequence.shots.front().stamp));
    if (sequence.leftOut > 0)
        std::printf(", %s outside the ground truth left out", counted(sequence.leftOut, "picture").c_str());
    std::printf("\n");
}

} // namespace

const Command kImport{"import", "make a recording of a data set with known poses", run};

} // namespace kestrin::record
