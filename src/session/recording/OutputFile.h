#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace kestrin::session {

/// A new file to which bytes are added; each write has reached the system when it returns. Not thread-safe.
class OutputFile {
  public:
    explicit OutputFile(std::filesystem::path path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    bool write(const void* bytes, std::size_t size);
    /// "FILE: why", once something has failed, the making of the file included.
    const std::optional<std::string>& error() const { return m_error; }

  private:
    bool fail();

    const std::filesystem::path m_path;
    int m_file;
    std::optional<std::string> m_error;
};

} // namespace kestrin::session
