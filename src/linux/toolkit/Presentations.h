#pragma once

#include "platform/Application.h"
#include "platform/Dispatch.h"

#include <gtk/gtk.h>

#include <list>

namespace kestrin::gtk {

/// The views presented in front of the application's, each in a modal window. Thread: main.
class Presentations {
  public:
    explicit Presentations(platform::Dispatch& dispatch) : m_dispatch(dispatch) {}
    ~Presentations();

    void present(GtkWindow* parent, const std::shared_ptr<platform::ViewController>& controller);
    void dismiss(const platform::ViewController& controller);

  private:
    struct Presented {
        Presentations* owner;
        std::shared_ptr<platform::ViewController> controller;
        GtkWindow* window;
    };
    static void closed(GtkWidget*, Presented* presented);

    platform::Dispatch& m_dispatch;
    std::list<Presented> m_presented;
};

} // namespace kestrin::gtk
