#pragma once

#include "content/OpenFile.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kestrin::content {

/// The files of a template, and no others. Thread: any.
class TemplateFiles {
  public:
    /// `page` is canonical: a folder that holds index.html, or one HTML file. Throws std::runtime_error.
    explicit TemplateFiles(const std::filesystem::path& page);

    /// The name of the page that opens the template.
    const std::string& index() const { return m_index; }

    /// A regular file below the folder, or none. `segments` is the decoded path; a last empty one asks for
    /// the index of that folder.
    std::optional<OpenFile> open(const std::vector<std::string>& segments) const;

  private:
    bool serves(const std::filesystem::path& real) const;

    std::filesystem::path m_folder;
    std::string m_index;
    bool m_indexOnly;
};

} // namespace kestrin::content
