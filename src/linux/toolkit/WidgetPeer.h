#pragma once

#include "linux/toolkit/WidgetBox.h"

namespace kestrin::gtk {

/// Every peer of this toolkit has a widget.
class HasWidget {
  public:
    virtual ~HasWidget() = default;
    virtual GtkWidget* widget() const = 0;
};

/// The peer of a view, with a widget of its own that is never unrealized by what happens within one turn.
/// `Base` is ViewPeer or one of the interfaces derived from it. A peer with a native widget derives from this
/// and puts that widget into the box:
///
///     class SomePeer final : public WidgetPeer<platform::SomePeer> {
///         explicit SomePeer(platform::View& view) : WidgetPeer(&view) { box().setContent(native); }
///
/// Frame, order, opacity, background, border and hiding are then those of the box, and need no further code.
/// Thread: main.
template <class Base>
class WidgetPeer : public Base, public HasWidget {
  public:
    explicit WidgetPeer(platform::View* view) : m_box(view) {}
    /// Adopts a widget of an interface resource.
    explicit WidgetPeer(GRef<ViewWidget> widget) : m_box(nullptr, std::move(widget)) {}

    GtkWidget* widget() const override { return m_box.widget(); }

    void setFrame(const platform::Rect& frame) override { m_box.setFrame(frame); }
    void setHidden(bool hidden) override { m_box.setHidden(hidden); }
    void setOpacity(double opacity) override { m_box.setOpacity(opacity); }
    void setBackground(const platform::Color& color) override { m_box.setBackground(color); }
    void setBorder(const platform::Border& border) override { m_box.setBorder(border); }
    void setSubviews(const std::vector<platform::ViewPeer*>& subviews) override {
        std::vector<GtkWidget*> widgets;
        for (platform::ViewPeer* subview : subviews)
            widgets.push_back(dynamic_cast<HasWidget&>(*subview).widget());
        m_box.setSubviews(widgets);
    }

  protected:
    WidgetBox& box() { return m_box; }

  private:
    WidgetBox m_box;
};

} // namespace kestrin::gtk
