#pragma once

#include "platform/Dispatch.h"
#include "platform/Log.h"

#include <memory>
#include <string>

namespace kestrin::gtk {

/// A serial queue on a thread of its own. Its destruction does not wait: the thread finishes what was posted
/// and ends. Thread: any.
class ThreadQueue final : public platform::SerialQueue {
  public:
    ThreadQueue(const std::string& label, std::shared_ptr<platform::LogSink> log);
    ~ThreadQueue() override;
    void async(platform::Task task) override;

  private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace kestrin::gtk
