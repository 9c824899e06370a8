#include "linux/toolkit/InterfaceLoader.h"

#include "linux/toolkit/ButtonPeer.h"
#include "linux/toolkit/LabelPeer.h"
#include "linux/toolkit/PicturePeer.h"
#include "linux/toolkit/PlainPeer.h"
#include "linux/toolkit/Resources.h"
#include "linux/toolkit/SpinnerPeer.h"

#include <utility>

namespace kestrin::gtk {

namespace {

using platform::makeView;

constexpr const char* kRootId = "mainView";

class InterfaceView final : public platform::View {
  public:
    explicit InterfaceView(std::unique_ptr<platform::ViewPeer> peer) : View(std::move(peer)) {}

    /// Of the root: the named parts, which the users of an interface refer to weakly.
    std::vector<std::shared_ptr<View>> parts;
};

std::shared_ptr<platform::View> makePart(ViewWidget* widget) {
    GtkWidget* content = widget->state->content;
    auto owned = GRef<ViewWidget>::ref(widget);
    if (content && GTK_IS_LABEL(content))
        return makeView<platform::Label>(std::make_unique<LabelPeer>(std::move(owned)));
    if (content && GTK_IS_PICTURE(content))
        return makeView<platform::ImageView>(std::make_unique<PicturePeer>(std::move(owned)));
    if (content && GTK_IS_BUTTON(content))
        return makeView<platform::Button>(std::make_unique<ButtonPeer>(std::move(owned)));
    if (content && GTK_IS_SPINNER(content))
        return makeView<platform::Spinner>(std::make_unique<SpinnerPeer>(std::move(owned)));
    return makeView<InterfaceView>(std::make_unique<PlainPeer>(std::move(owned)));
}

void addPart(platform::Interface& interface, GObject* object) {
    ViewWidget* widget = GTK_IS_WIDGET(object) ? asViewWidget(GTK_WIDGET(object)) : nullptr;
    const char* name = widget ? gtk_buildable_get_buildable_id(GTK_BUILDABLE(object)) : nullptr;
    if (!name)
        return;
    const bool visible = gtk_widget_get_visible(GTK_WIDGET(object));
    const auto part = makePart(widget);
    part->setHidden(!visible);
    interface.parts[name] = part;
}

/// The framework's styles: the host's own style sheets come after them and win.
void addStyles() {
    static const bool done = [] {
        const auto provider = GRef<GtkCssProvider>::adopt(gtk_css_provider_new());
        gtk_css_provider_load_from_resource(provider.get(), resourcePath("interfaces/kestrin.css").c_str());
        gtk_style_context_add_provider_for_display(gdk_display_get_default(),
                                                   GTK_STYLE_PROVIDER(provider.get()),
                                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION - 1);
        return true;
    }();
    (void)done;
}

GRef<GtkBuilder> build(const std::string& name, platform::LogSink& log) {
    addStyles();
    viewWidgetType(); // known to the builder by its name only once it is registered
    auto builder = GRef<GtkBuilder>::adopt(gtk_builder_new());
    GFailure failure;
    const std::string path = resourcePath("interfaces/" + name + ".ui");
    if (gtk_builder_add_from_resource(builder.get(), path.c_str(), failure.out()))
        return builder;
    log.write("Kestrin - Interface resource " + name + " cannot be loaded: " + failure.text());
    return {};
}

std::shared_ptr<InterfaceView> makeRoot(GtkWidget* content) {
    auto widget = GRef<ViewWidget>::refSink(newViewWidget());
    setContent(*widget.get(), content);
    return makeView<InterfaceView>(std::make_unique<PlainPeer>(std::move(widget)));
}

} // namespace

platform::Interface loadInterface(const std::string& name, platform::LogSink& log) {
    platform::Interface interface;
    const auto builder = build(name, log);
    GObject* root = builder ? gtk_builder_get_object(builder.get(), kRootId) : nullptr;
    if (!root || !GTK_IS_WIDGET(root))
        return interface;

    const GOwned<GSList, g_slist_free> objects(gtk_builder_get_objects(builder.get()));
    for (const GSList* item = objects.get(); item; item = item->next)
        addPart(interface, G_OBJECT(item->data));

    const auto view = makeRoot(GTK_WIDGET(root));
    for (const auto& [partName, part] : interface.parts)
        view->parts.push_back(part);
    interface.root = view;
    return interface;
}

} // namespace kestrin::gtk
