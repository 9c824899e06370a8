#include "content/TemplateFiles.h"

#include "content/MediaType.h"

#include <algorithm>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrin::content {
namespace {

std::string linkOf(const FileDescriptor& descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor.number());
}

bool isPlainName(const std::string& segment) {
    return !segment.empty() && segment != "." && segment != ".." &&
           segment.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

} // namespace

FileDescriptor::~FileDescriptor() {
    if (m_number >= 0)
        close(m_number);
}

TemplateFiles::TemplateFiles(const std::filesystem::path& page)
    : m_folder(page), m_index("index.html"), m_indexOnly(!std::filesystem::is_directory(page)) {
    if (m_indexOnly) {
        m_folder = page.parent_path();
        m_index = page.filename().string();
    }
    if (!open({m_index}))
        throw std::runtime_error("the page " + (m_folder / m_index).string() + " cannot be read");
}

std::optional<TemplateFile> TemplateFiles::open(const std::vector<std::string>& segments) const {
    std::filesystem::path path = m_folder;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        const bool asksIndex = segments[i].empty() && i + 1 == segments.size();
        const std::string& name = asksIndex ? m_index : segments[i];
        if (!isPlainName(name))
            return std::nullopt;
        path /= name;
    }

    // First only as a place, which has no effect on pipes and devices; then as the very same file to read.
    const FileDescriptor place(::open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat status {};
    if (!place || fstat(place.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    std::error_code unknown;
    const std::filesystem::path real = std::filesystem::read_symlink(linkOf(place), unknown);
    if (unknown || !serves(real))
        return std::nullopt;
    FileDescriptor file(::open(linkOf(place).c_str(), O_RDONLY | O_CLOEXEC));
    if (!file)
        return std::nullopt;
    return TemplateFile{std::move(file), static_cast<std::uint64_t>(status.st_size),
                        mediaType(path.filename().string())};
}

bool TemplateFiles::serves(const std::filesystem::path& real) const {
    if (m_indexOnly)
        return real == m_folder / m_index;
    const auto [folder, rest] = std::mismatch(m_folder.begin(), m_folder.end(), real.begin(), real.end());
    return folder == m_folder.end() && rest != real.end();
}

} // namespace kestrin::content
