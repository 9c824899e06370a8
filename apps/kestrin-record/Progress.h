#pragma once

#include <chrono>
#include <string>

namespace kestrin::record {

/// Says on a terminal how far long work is, on one line that is wiped at the end. Says nothing when the
/// standard error is no terminal.
class Progress {
  public:
    Progress(std::string doing, std::size_t total, bool quiet);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// One more is done. Throws Ending when the program is to stop.
    void step();

  private:
    const std::string m_doing;
    const std::size_t m_total;
    const bool m_shown;
    std::size_t m_done = 0;
    std::chrono::steady_clock::time_point m_last;
};

} // namespace kestrin::record
