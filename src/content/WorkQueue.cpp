#include "content/WorkQueue.h"

namespace kestrin::content {
namespace {

constexpr std::size_t kMostWaiting = 8; // or clients lose their patience

void callIn(GMainContext* context, std::function<void()> call) {
    using Call = std::function<void()>;
    const GHandle<GSource, g_source_unref> source(g_idle_source_new());
    g_source_set_priority(source.get(), G_PRIORITY_DEFAULT);
    g_source_set_callback(
        source.get(),
        +[](gpointer function) -> gboolean {
            (*static_cast<Call*>(function))();
            return G_SOURCE_REMOVE;
        },
        new Call(std::move(call)), +[](gpointer function) { delete static_cast<Call*>(function); });
    g_source_attach(source.get(), context);
}

} // namespace

WorkQueue::WorkQueue(GMainContext* context)
    : m_context(context), m_thread([this](std::stop_token stop) { run(std::move(stop)); }) {}

bool WorkQueue::post(std::function<void(std::stop_token)> work, std::function<void()> then) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_waiting.size() >= kMostWaiting)
            return false;
        m_waiting.push_back({std::move(work), std::move(then)});
    }
    m_changed.notify_one();
    return true;
}

void WorkQueue::run(std::stop_token stop) {
    std::unique_lock lock(m_mutex);
    while (m_changed.wait(lock, stop, [this] { return !m_waiting.empty(); }) && !stop.stop_requested()) {
        const Piece piece = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        piece.work(stop);
        if (piece.then)
            callIn(m_context, piece.then);
        lock.lock();
    }
}

} // namespace kestrin::content
