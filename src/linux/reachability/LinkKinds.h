#pragma once

#include <filesystem>
#include <string>

namespace kestrin::gtk {

/// What kind of network device a link is, as the kernel's files tell. Thread: any.
class LinkKinds {
  public:
    /// `root`: where sysfs is.
    explicit LinkKinds(std::filesystem::path root) : m_root(std::move(root)) {}

    bool isWireless(const std::string& link) const;
    bool isCellular(const std::string& link) const;

  private:
    std::filesystem::path folderOf(const std::string& link) const { return m_root / "class" / "net" / link; }

    const std::filesystem::path m_root;
};

} // namespace kestrin::gtk
