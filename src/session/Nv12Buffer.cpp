#include "session/Nv12Buffer.h"

namespace kestrin::session {

platform::PixelPlane Nv12Buffer::plane(int index) const {
    if (index == 0)
        return {m_bytes.data(), m_width, m_height, stride()};
    if (index == 1)
        return {m_bytes.data() + std::ptrdiff_t(stride()) * m_height, (m_width + 1) / 2, (m_height + 1) / 2,
                stride()};
    return {};
}

} // namespace kestrin::session
