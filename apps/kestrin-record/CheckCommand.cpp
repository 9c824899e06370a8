#include "Commands.h"
#include "Ending.h"
#include "Progress.h"
#include "Recordings.h"

#include <cstdio>

namespace kestrin::record {

namespace {

void run(int argc, char** argv) {
    gboolean quiet = FALSE;
    const GOptionEntry entries[] = {{"quiet", 'q', 0, G_OPTION_ARG_NONE, &quiet, "Show no progress", nullptr},
                                    {}};
    const std::vector<std::string> rest = parse(
        {"RECORDING.krs", "Reads all of a recording, every picture too. Ends with 1 at the first damage.",
         "A recording that was interrupted is whole up to there.", entries},
        argc, argv);
    const auto reader = openRecording(rest[0], session::Damage::refused);
    session::Nv12Buffer picture = pictureBuffer(*reader);
    {
        Progress progress("Checking", reader->size(), quiet);
        for (std::size_t i = 0; i < reader->size(); ++i) {
            readPicture(*reader, rest[0], i, picture);
            progress.step();
        }
    }
    std::printf("%s: %s, %s\n", rest[0].c_str(), counted(reader->size(), "frame").c_str(),
                reader->isFinished() ? "whole" : "whole up to where it was interrupted");
}

} // namespace

const Command kCheck{"check", "read all of a recording, every picture too", run};

} // namespace kestrin::record
