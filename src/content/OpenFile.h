#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>

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

struct OpenFile {
    FileDescriptor descriptor;
    std::uint64_t size = 0;
    std::string mediaType; // told from the name it was asked for by
};

/// Opens a regular file for reading, if `mayServe` grants the place where it really lies, after every link
/// was followed: nothing that is renamed or linked in the meantime leads elsewhere. Thread: any.
std::optional<OpenFile> openFile(const std::filesystem::path& path,
                                 const std::function<bool(const std::filesystem::path& real)>& mayServe);

/// Whether a place is inside a folder. Both paths are canonical.
bool liesBelow(const std::filesystem::path& folder, const std::filesystem::path& place);

} // namespace kestrin::content
