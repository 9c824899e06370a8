#pragma once

#include <filesystem>

namespace kestrin::record {

/// A folder that is made under another name beside its place and takes it when it is whole; else nothing
/// of it stays.
class SideFolder {
  public:
    /// Nothing may be in the place. Throws Ending.
    explicit SideFolder(const std::filesystem::path& place);
    ~SideFolder();
    SideFolder(const SideFolder&) = delete;
    SideFolder& operator=(const SideFolder&) = delete;

    /// Where to make it; not there yet.
    const std::filesystem::path& path() const { return m_path; }
    /// Throws Ending.
    void takePlace();

  private:
    const std::filesystem::path m_place, m_path;
};

} // namespace kestrin::record
