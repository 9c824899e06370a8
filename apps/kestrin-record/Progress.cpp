#include "Progress.h"

#include "Ending.h"
#include "Interrupt.h"

#include <cstdio>
#include <unistd.h>

namespace kestrin::record {

namespace {

constexpr std::chrono::milliseconds kBetween{100};

} // namespace

Progress::Progress(std::string doing, std::size_t total, bool quiet)
    : m_doing(std::move(doing)), m_total(total), m_shown(!quiet && isatty(STDERR_FILENO)) {}

Progress::~Progress() {
    if (m_shown)
        std::fputs("\r\033[K", stderr);
}

void Progress::step() {
    ++m_done;
    if (isInterrupted())
        throw Ending(kInterrupted, "interrupted");
    const auto now = std::chrono::steady_clock::now();
    if (!m_shown || now - m_last < kBetween)
        return;
    m_last = now;
    std::fprintf(stderr, "\r\033[K%s: %zu of %zu frames", m_doing.c_str(), m_done, m_total);
}

} // namespace kestrin::record
