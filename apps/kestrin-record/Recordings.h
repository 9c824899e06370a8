#pragma once

#include "CommandLine.h"

#include "session/recording/RecordingReader.h"

#include <filesystem>
#include <memory>

namespace kestrin::record {

/// Throws Ending with the error's line.
std::unique_ptr<session::RecordingReader> openRecording(const std::filesystem::path& folder,
                                                        session::Damage damage);
std::unique_ptr<session::RecordingReader> openRecording(const std::filesystem::path& folder,
                                                        const Conversion& options);
/// Decodes the picture of a frame. Throws Ending.
void readPicture(session::RecordingReader& reader, const std::filesystem::path& folder, std::size_t index,
                 session::Nv12Buffer& picture);
/// Of the size of the recording's pictures.
session::Nv12Buffer pictureBuffer(const session::RecordingReader& reader);
/// Seconds from the first frame to the last.
double durationOf(const session::RecordingReader& reader);
/// The name of a recording ends in .krs. Throws Ending.
std::filesystem::path recordingName(const std::string& text);

/// Throws Ending when there is an error.
void check(const std::optional<session::RecordingError>& error);

} // namespace kestrin::record
