#pragma once

#include "session/Nv12Buffer.h"
#include "session/OffscreenContext.h"

namespace kestrin::session {

/// Turns a drawn RGB picture into NV12 and brings it to memory. Thread: that of the context.
class Nv12Pass {
  public:
    Nv12Pass(const OffscreenContext& context, int width, int height);
    bool isValid() const { return m_luma != 0 && m_chroma != 0; }
    /// `texture` has the buffer's size, and the picture's top in its first row.
    void read(unsigned texture, Nv12Buffer& buffer) const;

  private:
    int m_width, m_height;
    unsigned m_luma, m_chroma; ///< programs
    unsigned m_framebuffer = 0;
};

} // namespace kestrin::session
