#pragma once

#include "session/recording/RecordedFrame.h"

#include <filesystem>
#include <fstream>

namespace kestrin::session {

/// Writes the general form of a folder of pictures with poses, which the importer reads again. What goes
/// wrong throws ImportError that names the file.
class PicturesFolderWriter {
  public:
    enum class Format { png, jpeg };

    /// The folder must be there.
    PicturesFolderWriter(const std::filesystem::path& folder, const CameraModel& camera, Format format);
    void add(const RecordedFrame& frame, const Nv12Buffer& picture);
    void finish();

  private:
    const std::filesystem::path m_folder;
    const Format m_format;
    std::ofstream m_poses;
    std::size_t m_count = 0;
};

} // namespace kestrin::session
