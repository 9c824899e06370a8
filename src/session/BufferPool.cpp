#include "session/BufferPool.h"

#include <mutex>
#include <utility>

namespace kestrin::session {

struct BufferPool::Shelf {
    std::mutex mutex;
    std::vector<std::unique_ptr<Nv12Buffer>> buffers;
    const std::function<void()> returned;

    void put(std::unique_ptr<Nv12Buffer> buffer) {
        {
            const std::lock_guard lock(mutex);
            buffers.push_back(std::move(buffer));
        }
        if (returned)
            returned();
    }
};

BufferPool::BufferPool(int width, int height, int count, std::function<void()> returned)
    : m_shelf(new Shelf{{}, {}, std::move(returned)}) {
    for (int i = 0; i < count; ++i)
        m_shelf->buffers.push_back(std::make_unique<Nv12Buffer>(width, height));
}

std::shared_ptr<Nv12Buffer> BufferPool::acquire() {
    const std::lock_guard lock(m_shelf->mutex);
    if (m_shelf->buffers.empty())
        return {};
    std::unique_ptr<Nv12Buffer> buffer = std::move(m_shelf->buffers.back());
    m_shelf->buffers.pop_back();
    return {buffer.release(),
            [shelf = m_shelf](Nv12Buffer* used) { shelf->put(std::unique_ptr<Nv12Buffer>(used)); }};
}

} // namespace kestrin::session
