#include "Commands.h"
#include "Ending.h"
#include "Progress.h"
#include "Recordings.h"
#include "SideFolder.h"

#include "session/import/ImportError.h"
#include "session/import/PicturesFolderWriter.h"

#include <cstdio>

namespace kestrin::record {

namespace {

using session::PicturesFolderWriter;

struct Request {
    std::filesystem::path recording, folder;
    PicturesFolderWriter::Format format = PicturesFolderWriter::Format::png;
    Conversion options;
};

Request readRequest(int argc, char** argv) {
    char* format = nullptr;
    const GOptionEntry entries[] = {
        {"format", 0, 0, G_OPTION_ARG_STRING, &format, "Of the pictures: png or jpeg (default: png)", "NAME"},
        {}};
    Request request;
    const std::vector<std::string> rest =
        parse({"RECORDING.krs FOLDER", "Writes the pictures, their poses and the camera into a new folder.",
               "`kestrin-record import FOLDER OUT.krs` reads it again. Anchors, light and inertial readings "
               "are not in it.\n",
               entries, &request.options},
              argc, argv);
    const std::string name = take(format).value_or("png");
    if (name != "png" && name != "jpeg")
        throw Ending(kMisused, "--format: expected png or jpeg, not '" + name + "'");
    if (name == "jpeg")
        request.format = PicturesFolderWriter::Format::jpeg;
    request.recording = rest[0];
    request.folder = rest[1];
    return request;
}

void write(session::RecordingReader& reader, const Request& request, const std::filesystem::path& place) {
    std::filesystem::create_directory(place);
    PicturesFolderWriter writer(place, reader.info().camera, request.format);
    session::Nv12Buffer picture = pictureBuffer(reader);
    Progress progress("Exporting", reader.size(), request.options.quiet);
    for (std::size_t i = 0; i < reader.size(); ++i) {
        readPicture(reader, request.recording, i, picture);
        writer.add(reader.frame(i), picture);
        progress.step();
    }
    writer.finish();
}

void run(int argc, char** argv) {
    const Request request = readRequest(argc, argv);
    const auto reader = openRecording(request.recording, request.options);
    SideFolder side(request.folder);
    try {
        write(*reader, request, side.path());
    } catch (const session::ImportError& error) {
        throw Ending(kFailed, error.what());
    } catch (const std::filesystem::filesystem_error& error) {
        throw Ending(kFailed, request.folder.string() + ": " + error.code().message());
    }
    side.takePlace();
    std::printf("%s: %s\n", request.folder.c_str(), counted(reader->size(), "frame").c_str());
}

} // namespace

const Command kExport{"export", "write the pictures and poses of a recording into a folder", run};

} // namespace kestrin::record
