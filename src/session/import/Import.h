#pragma once

#include "session/import/Sequence.h"
#include "session/recording/RecordedFrame.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <variant>

namespace kestrin::session {

/// The kinds of data sets that docs/importing.md describes.
enum class DataSet { euroc, tum, pictures };

/// The kind that a person names "euroc", "tum" or "pictures".
std::optional<DataSet> dataSetNamed(std::string_view name);
/// What kind of folder it is, by the files in it.
std::optional<DataSet> dataSetIn(const std::filesystem::path& folder);

/// Reads all of a data set but its pictures. Thread: any.
std::variant<Sequence, RecordingError> readSequence(DataSet kind, const std::filesystem::path& folder,
                                                    const ImportOptions& options);

/// Called after each frame; what it throws ends the writing and reaches the caller.
using AfterFrame = std::function<void()>;

/// Writes a recording of the pictures, straightened, with their poses; the first is at time 0. One that ends
/// early holds what came before. Pictures are read and straightened on threads of their own while others are
/// encoded. Thread: any; returns when it is done.
std::optional<RecordingError> writeRecording(const Sequence& sequence, const std::string& origin,
                                             const std::filesystem::path& recording,
                                             const AfterFrame& afterFrame);

} // namespace kestrin::session
