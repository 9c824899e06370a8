#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace kestrin::test {

/// A folder of its own, gone with the test.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "kestrin-").string() + std::string(6, 'X');
        m_path = mkdtemp(name.data());
    }
    ~TemporaryFolder() {
        std::error_code ignored; // a process that ends may still be at work in it
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }
    /// Writes a file, and the folders on the way to it.
    void write(const std::string& name, const std::string& text) const {
        const std::filesystem::path file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }

  private:
    std::filesystem::path m_path;
};

} // namespace kestrin::test
