#include "content/OpenFile.h"

#include "content/MediaType.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestrin::content {
namespace {

std::string linkOf(const FileDescriptor& descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor.number());
}

} // namespace

FileDescriptor::~FileDescriptor() {
    if (m_number >= 0)
        close(m_number);
}

std::optional<OpenFile> openFile(const std::filesystem::path& path,
                                 const std::function<bool(const std::filesystem::path&)>& mayServe) {
    // First only as a place, which has no effect on pipes and devices; then as the very same file to read.
    const FileDescriptor place(::open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat status {};
    if (!place || fstat(place.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    std::error_code unknown;
    const std::filesystem::path real = std::filesystem::read_symlink(linkOf(place), unknown);
    if (unknown || !mayServe(real))
        return std::nullopt;
    FileDescriptor file(::open(linkOf(place).c_str(), O_RDONLY | O_CLOEXEC));
    if (!file)
        return std::nullopt;
    return OpenFile{std::move(file), static_cast<std::uint64_t>(status.st_size),
                    mediaType(path.filename().string())};
}

bool liesBelow(const std::filesystem::path& folder, const std::filesystem::path& place) {
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), place.begin(), place.end());
    return end == folder.end() && rest != place.end();
}

} // namespace kestrin::content
