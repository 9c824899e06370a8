#pragma once

namespace kestrin {

/// Told that the page has submitted a rendered frame. Thread: main.
class PageFrameListener {
  public:
    virtual ~PageFrameListener() = default;
    virtual void signal() = 0;
};

} // namespace kestrin
