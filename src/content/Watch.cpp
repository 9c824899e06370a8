#include "content/Watch.h"

namespace kestrin::content {
namespace {

using Call = std::function<void()>;

gboolean callAgain(gpointer call) {
    (*static_cast<Call*>(call))();
    return G_SOURCE_CONTINUE;
}

gboolean callAgainForSocket(GSocket*, GIOCondition, gpointer call) { return callAgain(call); }

void attach(GSource* source, GSourceFunc function, Call call) {
    g_source_set_callback(
        source, function, new Call(std::move(call)), +[](gpointer done) { delete static_cast<Call*>(done); });
    g_source_attach(source, g_main_context_get_thread_default());
}

} // namespace

Watch::~Watch() {
    if (m_source)
        g_source_destroy(m_source.get());
}

Watch& Watch::operator=(Watch&& other) noexcept {
    const Watch before = std::move(*this);
    m_source = std::move(other.m_source);
    return *this;
}

Watch Watch::every(std::chrono::milliseconds period, std::function<void()> call) {
    Watch watch;
    watch.m_source.reset(g_timeout_source_new(static_cast<guint>(period.count())));
    attach(watch.m_source.get(), callAgain, std::move(call));
    return watch;
}

Watch Watch::readable(GSocket* socket, std::function<void()> call) {
    Watch watch;
    watch.m_source.reset(g_socket_create_source(socket, G_IO_IN, nullptr));
    attach(watch.m_source.get(), G_SOURCE_FUNC(callAgainForSocket), std::move(call));
    return watch;
}

} // namespace kestrin::content
