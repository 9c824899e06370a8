#pragma once

#include "platform/Log.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrin::test {

/// Keeps the lines. Thread: any.
class FakeLog : public platform::LogSink {
  public:
    void write(std::string_view line) override {
        const std::lock_guard lock(m_mutex);
        m_lines.emplace_back(line);
    }
    /// The lines so far; forgets them.
    std::vector<std::string> take() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_lines, {});
    }
    std::ptrdiff_t count(std::string_view line) const {
        const std::lock_guard lock(m_mutex);
        return std::ranges::count(m_lines, line);
    }

  private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

} // namespace kestrin::test
