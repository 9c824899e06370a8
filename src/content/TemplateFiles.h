#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kestrin::content {

/// Owns a file descriptor.
class FileDescriptor {
  public:
    explicit FileDescriptor(int number = -1) : m_number(number) {}
    ~FileDescriptor();
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&&) = delete;

    int number() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

  private:
    int m_number;
};

struct TemplateFile {
    FileDescriptor descriptor;
    std::uint64_t size = 0;
    std::string mediaType;
};

/// The files of a template, and no others. Thread: any.
class TemplateFiles {
  public:
    /// `page` is canonical: a folder that holds index.html, or one HTML file. Throws std::runtime_error.
    explicit TemplateFiles(const std::filesystem::path& page);

    /// The name of the page that opens the template.
    const std::string& index() const { return m_index; }

    /// A regular file below the folder, or none. `segments` is the decoded path; a last empty one asks for
    /// the index of that folder. What is opened is judged by where it really lies, after every link was
    /// followed, so nothing that is renamed or linked in the meantime leads outside.
    std::optional<TemplateFile> open(const std::vector<std::string>& segments) const;

  private:
    bool serves(const std::filesystem::path& real) const;

    std::filesystem::path m_folder;
    std::string m_index;
    bool m_indexOnly;
};

} // namespace kestrin::content
