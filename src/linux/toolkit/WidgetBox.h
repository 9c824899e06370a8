#pragma once

#include "linux/toolkit/GRef.h"
#include "linux/toolkit/Reconciler.h"
#include "linux/toolkit/ViewWidget.h"

namespace kestrin::gtk {

/// How a hidden view leaves the screen. A transparent one stays mapped, so that what it shows goes on. One
/// that is taken out of its parent stays realized then: WebKit loses the memory of a picture each time it is
/// not.
enum class Hiding { unmapped, transparent };

/// A view's widget with what the view wants of it. Appearance is handed on at once; what could unmap or
/// unrealize a widget waits for the reconciliation. Thread: main.
class WidgetBox final : public Reconciled {
  public:
    /// `view` outlives this; null when the view can never be the root of a tree. Without a `widget` it makes
    /// one.
    explicit WidgetBox(platform::View* view, GRef<ViewWidget> widget = {});
    ~WidgetBox() override;

    GtkWidget* widget() const { return asWidget(m_widget.get()); }
    /// The native widget below the subviews; it fills the view.
    void setContent(GtkWidget* content);
    GtkWidget* content() const { return m_widget.get()->state->content; }
    void setHiding(Hiding hiding);
    /// Called inside size-allocate when the view has no parent view: must not touch the widget tree.
    void onRootAllocated(std::function<void(GtkWidget*, const platform::Size&)> callback);

    void setFrame(const platform::Rect& frame);
    void setHidden(bool hidden);
    void setOpacity(double opacity);
    void setBackground(const platform::Color& color);
    void setBorder(const platform::Border& border);
    void setSubviews(const std::vector<GtkWidget*>& subviews);

    void giveUp() override;
    void takeUp() override;
    void report() override;

  private:
    bool isRoot() const;
    void allocated(const platform::Size& size);
    void applyOpacity();

    platform::View* const m_view;
    const bool m_isAdopted;
    const GRef<ViewWidget> m_widget;
    Hiding m_hiding = Hiding::unmapped;
    bool m_hidden = false;
    double m_opacity = 1;
    std::vector<GRef<GtkWidget>> m_subviews;
    bool m_subviewsChanged = false;
    std::function<void(GtkWidget*, const platform::Size&)> m_rootAllocated;
    platform::Size m_allocation;
    bool m_sizeIsOpen = false;  ///< frame and allocation may differ
    bool m_isReporting = false; ///< a frame set now is the answer to the allocation
};

} // namespace kestrin::gtk
