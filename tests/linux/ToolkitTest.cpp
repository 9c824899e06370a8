#include "linux/ToolkitTest.h"

#include "linux/toolkit/Capture.h"
#include "linux/toolkit/Widget.h"

#include <cstdlib>
#include <stdexcept>

#ifdef __SANITIZE_THREAD__
// The toolkit and GL are not built with the sanitizer, so it cannot see how they guard what is theirs.
extern "C" const char* __tsan_default_options() { return "ignore_noninstrumented_modules=1"; }
#endif

namespace kestrin::test {

namespace {

/// Null when there is none.
GtkWindow* firstWindow() {
    const auto item = gtk::GRef<GObject>::adopt(
        static_cast<GObject*>(g_list_model_get_item(gtk_window_get_toplevels(), 0)));
    return item ? GTK_WINDOW(item.get()) : nullptr;
}

} // namespace

bool ToolkitPlatform::begin() {
    if (!gtk_init_check())
        throw std::runtime_error("this test needs a display");
    return true;
}

bool Pixel::operator==(const Pixel& other) const {
    return std::abs(red - other.red) <= 2 && std::abs(green - other.green) <= 2 &&
           std::abs(blue - other.blue) <= 2;
}

std::ostream& operator<<(std::ostream& stream, const Pixel& pixel) {
    return stream << '(' << pixel.red << ", " << pixel.green << ", " << pixel.blue << ')';
}

ToolkitTest::ToolkitTest(std::shared_ptr<ToolkitPlatform> own) : system(std::move(own)) {
    platform::installPlatform(system);
}

ToolkitTest::~ToolkitTest() {
    while (GtkWindow* left = firstWindow())
        gtk_window_destroy(left);
    settle();
    platform::installPlatform(nullptr);
}

void ToolkitTest::settle() {
    bool isIdle = false;
    const auto note = [](gpointer flag) -> gboolean {
        *static_cast<bool*>(flag) = true;
        return G_SOURCE_REMOVE;
    };
    // After the reconciliation and the redraw, which come before an idle of low priority.
    g_timeout_add(40, note, &isIdle);
    runUntil([&] { return isIdle; });
    isIdle = false;
    g_idle_add_full(G_PRIORITY_LOW, note, &isIdle, nullptr);
    runUntil([&] { return isIdle; });
}

std::shared_ptr<platform::View> ToolkitTest::makeBox(const platform::Rect& frame,
                                                     const platform::Color& color) {
    auto view = platform::makeView<platform::View>();
    view->setFrame(frame);
    view->setBackground(color);
    return view;
}

GtkWindow* ToolkitTest::show(platform::View& root, int width, int height) {
    window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_decorated(window, false);
    gtk_window_set_default_size(window, width, height);
    gtk_window_set_child(window, gtk::widget(root));
    gtk_window_present(window);
    EXPECT_TRUE(runUntil([&] { return gtk_widget_get_width(gtk::widget(root)) == width; }));
    settle();
    return window;
}

Pixel ToolkitTest::pixel(int x, int y) {
    settle();
    platform::Image image;
    gtk::captureWhenPainted(GTK_WIDGET(window), system->mainLoop,
                            [&](const platform::Image& made) { image = made; });
    if (!runUntil([&] { return image.isValid(); }))
        return {-1, -1, -1};
    const int offset = (y * image.pixelWidth() + x) * scale() * 4;
    const auto pixels = image.pixels().subspan(std::size_t(offset));
    return {pixels[0], pixels[1], pixels[2]};
}

} // namespace kestrin::test
