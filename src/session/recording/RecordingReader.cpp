#include "session/recording/RecordingReader.h"

#include "session/FileBytes.h"
#include "session/recording/DecodeAhead.h"
#include "session/recording/RecordingIndex.h"
#include "session/recording/RecordingLimits.h"

#include <utility>

namespace kestrin::session {

struct RecordingReader::State {
    RecordingIndex index;
    std::optional<RecordingError> damage;
    std::unique_ptr<VideoReader> video; ///< until the first picture is asked for
    std::optional<DecodeAhead> decoder;

    /// Why the pictures do not fit the frames; those that have no picture are dropped.
    std::optional<RecordingError> matchPictures(const std::filesystem::path& file) {
        const std::size_t pictures = video ? video->size() : 0, frames = index.frames.size();
        if (pictures < frames)
            index.frames.erase(index.frames.begin() + std::ptrdiff_t(pictures), index.frames.end());
        if (!index.isFinished || pictures == frames)
            return {};
        const std::string count = std::to_string(frames) + " frames";
        if (pictures > frames)
            return RecordingError{file.string() + ": has more pictures than the " + count};
        index.isFinished = false;
        return RecordingError{file.string() + ": ends after " + std::to_string(pictures) + " of " + count};
    }
};

RecordingReader::RecordingReader(std::unique_ptr<State> state) : m_state(std::move(state)) {}

RecordingReader::~RecordingReader() = default;

std::variant<std::unique_ptr<RecordingReader>, RecordingError>
RecordingReader::open(const std::filesystem::path& folder, Damage damage) {
    const std::filesystem::path textFile = folder / "session.jsonl", videoFile = folder / "video.mkv";
    auto state = std::make_unique<State>();
    {
        const auto text = readFile(textFile, kMostText);
        if (!text)
            return RecordingError{textFile.string() + ": cannot be read"};
        state->index = readIndex(*text);
    }
    RecordingIndex& index = state->index;
    if (const auto& fault = index.fault) {
        state->damage = {textFile.string() + ":" + std::to_string(fault->line) + ": " + fault->text};
        if (!index.info || damage == Damage::refused)
            return *state->damage;
    }
    const CameraModel& camera = index.info->camera;
    auto video = VideoReader::open(videoFile, camera.width, camera.height, index.frames.size() + 1);
    // One that was killed before its first frame may have no more than an empty file.
    const bool isEmpty = index.frames.empty() && !index.isFinished && std::filesystem::exists(videoFile);
    if (auto* opened = std::get_if<std::unique_ptr<VideoReader>>(&video))
        state->video = std::move(*opened);
    else if (!isEmpty)
        return RecordingError{std::get<std::string>(video)};
    if (auto error = state->matchPictures(videoFile)) {
        if (damage == Damage::refused)
            return *error;
        state->damage = std::move(error);
    }
    return std::unique_ptr<RecordingReader>(new RecordingReader(std::move(state)));
}

const RecordingInfo& RecordingReader::info() const { return *m_state->index.info; }

std::size_t RecordingReader::size() const { return m_state->index.frames.size(); }

const RecordedFrame& RecordingReader::frame(std::size_t index) const { return m_state->index.frames[index]; }

bool RecordingReader::isFinished() const { return m_state->index.isFinished; }

const std::optional<RecordingError>& RecordingReader::damage() const { return m_state->damage; }

bool RecordingReader::picture(std::size_t index, Nv12Buffer& picture) {
    const CameraModel& camera = info().camera;
    if (index >= size() || picture.width() != camera.width || picture.height() != camera.height)
        return false;
    if (!m_state->decoder)
        m_state->decoder.emplace(std::move(m_state->video), camera.width, camera.height);
    return m_state->decoder->take(index, picture);
}

} // namespace kestrin::session
