#include "linux/drawing/MainWake.h"

#include <utility>

namespace kestrin::gtk {

namespace {

gboolean dispatch(GSource* source, GSourceFunc callback, gpointer data) {
    g_source_set_ready_time(source, -1);
    return callback(data);
}

GSourceFuncs functions{nullptr, nullptr, dispatch, nullptr, nullptr, nullptr};

} // namespace

MainWake::MainWake(std::function<void()> callback)
    : m_callback(std::move(callback)), m_source(g_source_new(&functions, sizeof(GSource))) {
    const auto call = [](gpointer self) -> gboolean {
        static_cast<MainWake*>(self)->m_callback();
        return G_SOURCE_CONTINUE;
    };
    g_source_set_callback(m_source, call, this, nullptr);
    g_source_set_priority(m_source, G_PRIORITY_HIGH_IDLE);
    g_source_set_static_name(m_source, "Kestrin drawing");
    g_source_attach(m_source, nullptr);
}

MainWake::~MainWake() {
    g_source_destroy(m_source);
    g_source_unref(m_source);
}

} // namespace kestrin::gtk
