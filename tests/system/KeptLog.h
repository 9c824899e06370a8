#pragma once

#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <iterator>

namespace kestrin::test {

/// Keeps what this process writes to standard error meanwhile.
class KeptLog {
  public:
    KeptLog() : m_before(dup(STDERR_FILENO)) {
        const int file = open((m_folder / "log").c_str(), O_CREAT | O_WRONLY | O_APPEND, 0600);
        dup2(file, STDERR_FILENO);
        close(file);
    }
    ~KeptLog() {
        dup2(m_before, STDERR_FILENO);
        close(m_before);
    }
    KeptLog(const KeptLog&) = delete;
    KeptLog& operator=(const KeptLog&) = delete;

    bool has(const std::string& part) const {
        std::ifstream file(m_folder / "log");
        return std::string(std::istreambuf_iterator<char>(file), {}).find(part) != std::string::npos;
    }

  private:
    const TemporaryFolder m_folder;
    const int m_before;
};

} // namespace kestrin::test
