#pragma once

#include "linux/toolkit/MainQueue.h"

namespace kestrin::gtk {

/// A repeating timer of the main queue. It keeps to its schedule without drift, and leaves out what it
/// missed.
class MainTimer final : public platform::RepeatingTimer {
  public:
    MainTimer(std::weak_ptr<MainQueue> queue, double seconds, platform::Task task);

  private:
    class Schedule;
    std::shared_ptr<Schedule> m_schedule;
};

} // namespace kestrin::gtk
