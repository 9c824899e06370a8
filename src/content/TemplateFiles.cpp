#include "content/TemplateFiles.h"

#include <stdexcept>

namespace kestrin::content {
namespace {

bool isPlainName(const std::string& segment) {
    return !segment.empty() && segment != "." && segment != ".." &&
           segment.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

} // namespace

TemplateFiles::TemplateFiles(const std::filesystem::path& page)
    : m_folder(page), m_index("index.html"), m_indexOnly(!std::filesystem::is_directory(page)) {
    if (m_indexOnly) {
        m_folder = page.parent_path();
        m_index = page.filename().string();
    }
    if (!open({m_index}))
        throw std::runtime_error("the page " + (m_folder / m_index).string() + " cannot be read");
}

std::optional<OpenFile> TemplateFiles::open(const std::vector<std::string>& segments) const {
    std::filesystem::path path = m_folder;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const bool asksIndex = segments[i].empty() && i + 1 == segments.size();
        const std::string& name = asksIndex ? m_index : segments[i];
        if (!isPlainName(name))
            return std::nullopt;
        path /= name;
    }

    return openFile(path, [this](const std::filesystem::path& real) { return serves(real); });
}

bool TemplateFiles::serves(const std::filesystem::path& real) const {
    return m_indexOnly ? real == m_folder / m_index : liesBelow(m_folder, real);
}

} // namespace kestrin::content
