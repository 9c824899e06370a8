#include "linux/toolkit/WidgetBox.h"

#include <utility>

namespace kestrin::gtk {

namespace {

std::vector<GtkWidget*> borrowed(const std::vector<GRef<GtkWidget>>& widgets) {
    std::vector<GtkWidget*> result;
    for (const auto& widget : widgets)
        result.push_back(widget.get());
    return result;
}

} // namespace

WidgetBox::WidgetBox(platform::View* view, GRef<ViewWidget> widget)
    : m_view(view), m_isAdopted(bool(widget)),
      m_widget(widget ? std::move(widget) : GRef<ViewWidget>::refSink(newViewWidget())) {
    if (m_view)
        m_widget.get()->state->allocated = [this](const platform::Size& size) { allocated(size); };
}

// The widget may live on in the host's container; its subviews must be free for another parent.
WidgetBox::~WidgetBox() {
    m_widget.get()->state->allocated = nullptr;
    letGo(*m_widget.get());
    if (m_isAdopted)
        return;
    gtk::setContent(*m_widget.get(), nullptr);
    setBackground(platform::kClear);
    setBorder({});
}

void WidgetBox::setContent(GtkWidget* content) { gtk::setContent(*m_widget.get(), content); }

void WidgetBox::setHiding(Hiding hiding) {
    m_hiding = hiding;
    m_widget.get()->state->staysRealized = hiding == Hiding::transparent;
    applyOpacity();
    reconcileSoon();
}

void WidgetBox::onRootAllocated(std::function<void(GtkWidget*, const platform::Size&)> callback) {
    m_rootAllocated = std::move(callback);
}

void WidgetBox::setFrame(const platform::Rect& frame) {
    m_widget.get()->state->frame = frame;
    GtkWidget* const parent = gtk_widget_get_parent(widget());
    if (!parent) {
        m_allocation = {}; // the next one is new, also when it is as large as the last one was
    } else if (!isRoot()) {
        gtk_widget_queue_allocate(parent);
    } else if (!m_isReporting) {
        m_sizeIsOpen = true;
        reconcileSoon();
    }
}

void WidgetBox::setHidden(bool hidden) {
    m_hidden = hidden;
    applyOpacity();
    reconcileSoon();
}

void WidgetBox::setOpacity(double opacity) {
    m_opacity = opacity;
    applyOpacity();
}

void WidgetBox::applyOpacity() {
    const bool transparent = m_hidden && m_hiding == Hiding::transparent;
    gtk_widget_set_opacity(widget(), transparent ? 0 : m_opacity);
    // A click means what shines through a view that fades, unless that view is a page.
    const bool takesClicks = m_hiding == Hiding::transparent ? m_opacity > 0 : m_opacity >= 1;
    gtk_widget_set_can_target(widget(), !m_hidden && takesClicks);
}

void WidgetBox::setBackground(const platform::Color& color) {
    m_widget.get()->state->background = color;
    gtk_widget_queue_draw(widget());
}

void WidgetBox::setBorder(const platform::Border& border) {
    m_widget.get()->state->border = border;
    gtk_widget_queue_draw(widget());
}

void WidgetBox::setSubviews(const std::vector<GtkWidget*>& subviews) {
    m_subviews.clear();
    for (GtkWidget* subview : subviews)
        m_subviews.push_back(GRef<GtkWidget>::ref(subview));
    m_subviewsChanged = true;
    reconcileSoon();
}

void WidgetBox::giveUp() {
    if (m_subviewsChanged)
        dropChildrenExcept(*m_widget.get(), borrowed(m_subviews));
}

void WidgetBox::takeUp() {
    gtk_widget_set_visible(widget(), !m_hidden || m_hiding == Hiding::transparent);
    if (std::exchange(m_subviewsChanged, false))
        setChildren(*m_widget.get(), borrowed(m_subviews));
}

bool WidgetBox::isRoot() const {
    GtkWidget* parent = gtk_widget_get_parent(widget());
    return m_view && parent && !asViewWidget(parent);
}

void WidgetBox::allocated(const platform::Size& size) {
    const bool changed = std::exchange(m_allocation, size) != size;
    if (!isRoot() || size.width == 0 || size.height == 0)
        return;
    if (m_rootAllocated)
        m_rootAllocated(widget(), size);
    if (!changed)
        return;
    m_sizeIsOpen = true;
    reconcileSoon();
}

// The toolkit's size wins. It is said once for every change on either side: a view that does not follow is
// not told again and again.
void WidgetBox::report() {
    if (!std::exchange(m_sizeIsOpen, false) || !isRoot())
        return;
    const auto view = m_view->weak_from_this().lock();
    if (!view || m_allocation.width == 0 || m_allocation.height == 0 || view->frame().size == m_allocation)
        return;
    m_isReporting = true;
    view->toolkitResized(m_allocation);
    m_isReporting = false;
}

} // namespace kestrin::gtk
