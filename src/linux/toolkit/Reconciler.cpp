#include "linux/toolkit/Reconciler.h"

#include <glib.h>

#include <utility>

namespace kestrin::gtk {

Reconciled::~Reconciled() { Reconciler::getInstance().remove(this); }

void Reconciled::reconcileSoon() { Reconciler::getInstance().add(this); }

// Never destroyed: views may outlive everything else at exit.
Reconciler& Reconciler::getInstance() {
    static auto& instance = *new Reconciler;
    return instance;
}

void Reconciler::add(Reconciled* part) {
    m_due.insert(part);
    if (m_source)
        return;
    const auto runOnce = [](gpointer self) -> gboolean {
        static_cast<Reconciler*>(self)->run();
        return G_SOURCE_REMOVE;
    };
    m_source = g_idle_add_full(G_PRIORITY_HIGH_IDLE, runOnce, this, nullptr);
}

void Reconciler::remove(Reconciled* part) {
    m_due.erase(part);
    m_running.erase(part);
}

void Reconciler::run() {
    m_source = 0;
    m_running = std::exchange(m_due, {});
    // A step may destroy views, which then leave the set that is running.
    const std::set<Reconciled*> all = m_running;
    const auto each = [&](void (Reconciled::*step)()) {
        for (Reconciled* part : all)
            if (m_running.contains(part))
                (part->*step)();
    };
    each(&Reconciled::giveUp);
    each(&Reconciled::takeUp);
    each(&Reconciled::report);
    m_running.clear();
}

} // namespace kestrin::gtk
