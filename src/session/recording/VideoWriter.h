#pragma once

#include "session/Nv12Buffer.h"
#include "session/recording/ElementChain.h"
#include "session/recording/OutputFile.h"

#include <optional>
#include <string>

namespace kestrin::session {

/// Writes pictures to a Matroska file without loss (docs/recordings.md). Not thread-safe.
class VideoWriter {
  public:
    /// So that the first one does not take longer than others.
    static void prepare();
    VideoWriter(const std::filesystem::path& file, int width, int height);

    /// The picture is in the file when it returns. Why it is not, otherwise.
    std::optional<std::string> add(double time, const Nv12Buffer& picture);
    std::optional<std::string> finish();
    /// Why nothing can be written.
    const std::optional<std::string>& error() const { return m_error ? m_error : m_file.error(); }

  private:
    const std::string m_name;
    OutputFile m_file;
    std::optional<std::string> m_error;
    std::unique_ptr<ElementChain> m_chain;
};

} // namespace kestrin::session
