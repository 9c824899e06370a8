#include "Recordings.h"

#include "Ending.h"

namespace kestrin::record {

using session::RecordingReader;

std::unique_ptr<RecordingReader> openRecording(const std::filesystem::path& folder, session::Damage damage) {
    auto opened = RecordingReader::open(folder, damage);
    if (const auto* error = std::get_if<session::RecordingError>(&opened))
        throw Ending(kFailed, error->text);
    return std::get<0>(std::move(opened));
}

std::unique_ptr<RecordingReader> openRecording(const std::filesystem::path& folder,
                                               const Conversion& options) {
    return openRecording(folder, options.tolerant ? session::Damage::tolerated : session::Damage::refused);
}

void readPicture(RecordingReader& reader, const std::filesystem::path& folder, std::size_t index,
                 session::Nv12Buffer& picture) {
    if (!reader.picture(index, picture))
        throw Ending(kFailed, (folder / "video.mkv").string() + ": the picture of frame " +
                                  std::to_string(index) + " cannot be read");
}

session::Nv12Buffer pictureBuffer(const RecordingReader& reader) {
    return {reader.info().camera.width, reader.info().camera.height};
}

double durationOf(const RecordingReader& reader) {
    return reader.size() == 0 ? 0 : reader.frame(reader.size() - 1).frame.time - reader.frame(0).frame.time;
}

std::filesystem::path recordingName(const std::string& text) {
    const std::filesystem::path path = std::filesystem::path(text + "/").parent_path();
    if (path.extension() != ".krs")
        throw Ending(kMisused, "expected a name that ends in .krs, not '" + text + "'");
    return path;
}

void check(const std::optional<session::RecordingError>& error) {
    if (error)
        throw Ending(kFailed, error->text);
}

} // namespace kestrin::record
