#include "session/recording/RecordingWriter.h"

#include "session/Field.h"
#include "session/recording/LineReader.h"
#include "session/recording/LineText.h"
#include "session/recording/RecordingLimits.h"
#include "session/recording/VideoWriter.h"

#include <utility>

namespace kestrin::session {

struct RecordingWriter::State {
    std::filesystem::path folder;
    RecordingInfo info;
    OutputFile text;
    VideoWriter video;
    LineReader check; ///< so that nothing is written that cannot be read
    std::size_t size = 0, frames = 0;
    std::optional<RecordingError> error;
    bool isFinished = false;

    State(const std::filesystem::path& path, const RecordingInfo& recording)
        : folder(path), info(recording), text(path / "session.jsonl"),
          video(path / "video.mkv", recording.camera.width, recording.camera.height) {
        if (text.error() || video.error())
            fail(text.error() ? *text.error() : *video.error());
    }

    std::optional<RecordingError> fail(const std::string& why) {
        error = RecordingError{why};
        return error;
    }
    std::optional<RecordingError> failLine(const std::string& why) {
        return fail((folder / "session.jsonl").string() + ":" + std::to_string(frames + 2) + ": " + why);
    }
    std::optional<RecordingError> write(std::string line) {
        line += '\n';
        size += line.size();
        return text.write(line.data(), line.size()) ? std::nullopt : fail(*text.error());
    }
};

RecordingWriter::RecordingWriter(std::unique_ptr<State> state) : m_state(std::move(state)) {}

RecordingWriter::~RecordingWriter() = default;

std::variant<std::unique_ptr<RecordingWriter>, RecordingError>
RecordingWriter::create(const std::filesystem::path& folder, const RecordingInfo& info) {
    const std::string header = headerLine(info);
    try {
        LineReader().readHeader(header);
    } catch (const FieldError& error) {
        return RecordingError{folder.string() + ": " + error.what()};
    }
    std::error_code error;
    if (!std::filesystem::create_directory(folder, error))
        return RecordingError{folder.string() + ": " + (error ? error.message() : "is there already")};
    auto state = std::make_unique<State>(folder, info);
    if (state->error || state->write(header))
        return *state->error;
    return std::unique_ptr<RecordingWriter>(new RecordingWriter(std::move(state)));
}

std::optional<RecordingError> RecordingWriter::add(const RecordedFrame& frame, const Nv12Buffer& picture) {
    State& state = *m_state;
    if (state.error)
        return state.error;
    std::string line = frameLine(frame);
    try {
        state.check.readFrame(line);
    } catch (const FieldError& error) {
        return state.failLine(error.what());
    }
    if (state.size + line.size() > kMostText)
        return state.failLine("the recording is full");
    const CameraModel& camera = state.info.camera;
    if (picture.width() != camera.width || picture.height() != camera.height)
        return state.failLine("the picture has another size than the recording");
    // The picture first: what a line tells of is there.
    if (const auto error = state.video.add(frame.frame.time, picture))
        return state.fail(*error);
    ++state.frames;
    return state.write(std::move(line));
}

std::optional<RecordingError> RecordingWriter::finish() {
    State& state = *m_state;
    if (state.error || std::exchange(state.isFinished, true))
        return state.error;
    if (const auto error = state.video.finish())
        return state.fail(*error);
    return state.write(endLine(state.frames));
}

} // namespace kestrin::session
