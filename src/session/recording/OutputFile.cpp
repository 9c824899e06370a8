#include "session/recording/OutputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace kestrin::session {

OutputFile::OutputFile(std::filesystem::path path)
    : m_path(std::move(path)), m_file(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)) {
    if (m_file < 0)
        fail();
}

OutputFile::~OutputFile() {
    if (m_file >= 0)
        ::close(m_file);
}

bool OutputFile::write(const void* bytes, std::size_t size) {
    const char* rest = static_cast<const char*>(bytes);
    while (size > 0 && !m_error) {
        const ssize_t written = ::write(m_file, rest, size);
        if (written < 0 && errno != EINTR)
            return fail();
        if (written > 0) {
            rest += written;
            size -= std::size_t(written);
        }
    }
    return !m_error;
}

bool OutputFile::fail() {
    m_error = m_path.string() + ": " + std::generic_category().message(errno);
    return false;
}

} // namespace kestrin::session
