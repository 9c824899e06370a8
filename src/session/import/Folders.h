#pragma once

#include "session/import/Sequence.h"

namespace kestrin::session {

/// The readers of the kinds of folders that docs/importing.md describes. Each throws ImportError.
Sequence readEurocFolder(const std::filesystem::path& folder, const ImportOptions& options);
Sequence readTumFolder(const std::filesystem::path& folder, const ImportOptions& options);
/// Pictures with a pose each: either form.
Sequence readPicturesFolder(const std::filesystem::path& folder, const ImportOptions& options);

} // namespace kestrin::session
