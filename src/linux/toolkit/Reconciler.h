#pragma once

#include <set>

namespace kestrin::gtk {

/// Something whose toolkit side is brought up to date once a turn. Thread: main.
class Reconciled {
  public:
    Reconciled() = default;
    Reconciled(const Reconciled&) = delete;
    Reconciled& operator=(const Reconciled&) = delete;

    /// Gives up what it no longer holds, before anything takes up what others gave up.
    virtual void giveUp() {}
    virtual void takeUp() {}
    /// Tells the portable side what the toolkit decided; may run anything.
    virtual void report() {}

  protected:
    virtual ~Reconciled();
    /// Reconciles this once the main loop has nothing of default priority left to do, before the next layout.
    void reconcileSoon();
};

/// Brings the views whose widgets are out of date up to date, all together: what is taken out and put back
/// within one turn of the main loop never leaves its parent widget. Thread: main.
class Reconciler {
  public:
    static Reconciler& getInstance();

    void add(Reconciled* part);
    void remove(Reconciled* part);

  private:
    void run();

    std::set<Reconciled*> m_due, m_running;
    unsigned m_source = 0;
};

} // namespace kestrin::gtk
