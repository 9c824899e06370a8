#pragma once

#include "session/Nv12Buffer.h"

#include <functional>
#include <memory>

namespace kestrin::session {

/// A bounded number of pictures that come back when their last reference goes. Thread: any; a picture may
/// outlive its pool.
class BufferPool {
  public:
    /// `returned` is told on the releasing thread that a picture has come back.
    BufferPool(int width, int height, int count, std::function<void()> returned = {});
    /// Empty when all are held. Its pixels are those of an earlier use.
    std::shared_ptr<Nv12Buffer> acquire();

  private:
    struct Shelf;
    std::shared_ptr<Shelf> m_shelf;
};

} // namespace kestrin::session
