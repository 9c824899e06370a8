#include "ToolkitTest.h"

#include "platform/Widgets.h"

#include <gdk/gdk.h>

namespace kestrin::test {

namespace {

using platform::Image;

const Image kRedPicture{40, 30, [] {
                            std::vector<std::uint8_t> pixels(40 * 30 * 4, 0);
                            for (std::size_t i = 0; i < pixels.size(); i += 4)
                                pixels[i] = pixels[i + 3] = 255;
                            return pixels;
                        }()};

/// The preview's interface with a picture in it.
struct Preview : platform::ViewController {
    std::shared_ptr<platform::View> view() override { return content.root; }
    void viewDidAppear() override {
        ++appeared;
        content.part<platform::ImageView>("imageView")->setImage(kRedPicture);
    }
    platform::Interface content = platform::platform().views().loadInterface("ImagePreview");
    int appeared = 0;
};

struct ShareTest : ToolkitTest {
    std::shared_ptr<platform::View> view = makeBox({{0, 0}, {400, 300}}, kGreen);
    GtkWindow* host = show(*view, 400, 300);

    /// The modal window over the host's; null when there is none.
    GtkWindow* modal() const {
        GListModel* all = gtk_window_get_toplevels();
        for (guint i = 0; i < g_list_model_get_n_items(all); ++i) {
            const auto each =
                gtk::GRef<GtkWindow>::adopt(static_cast<GtkWindow*>(g_list_model_get_item(all, i)));
            if (gtk_window_get_transient_for(each.get()) == host)
                return each.get();
        }
        return nullptr;
    }
    bool modalIsGone() {
        return runUntil([&] { return !modal(); });
    }
    static GtkWidget* button(GtkWidget* in, std::string_view label) {
        const char* own = GTK_IS_BUTTON(in) ? gtk_button_get_label(GTK_BUTTON(in)) : nullptr;
        if (own && label == own)
            return in;
        for (GtkWidget* child = gtk_widget_get_first_child(in); child;
             child = gtk_widget_get_next_sibling(child))
            if (GtkWidget* const found = button(child, label))
                return found;
        return nullptr;
    }
    void click(std::string_view label) {
        GtkWidget* const found = button(GTK_WIDGET(modal()), label);
        ASSERT_NE(found, nullptr) << label;
        g_signal_emit_by_name(found, "clicked");
    }
};

} // namespace

TEST_F(ShareTest, APreviewShowsItsPictureUntilItIsDismissedOrClosed) {
    const auto preview = std::make_shared<Preview>();
    system->desktop.present(preview);
    ASSERT_TRUE(runUntil([&] { return preview->appeared == 1; }));
    EXPECT_TRUE(gtk_window_get_modal(modal()));
    window = modal();
    settle();
    const int width = gtk_widget_get_width(GTK_WIDGET(window)),
              height = gtk_widget_get_height(GTK_WIDGET(window));
    EXPECT_PIXEL(pixel(width / 2, height / 2), {255, 0, 0});

    preview->content.part<platform::Button>("cancelButton")->onClick([&] {
        system->desktop.dismiss(*preview);
    });
    click("Cancel");
    EXPECT_TRUE(modalIsGone());

    system->desktop.present(preview);
    ASSERT_TRUE(runUntil([&] { return preview->appeared == 2; }));
    gtk_window_close(modal());
    EXPECT_TRUE(modalIsGone());
    EXPECT_TRUE(runUntil([&] { return preview.use_count() == 1; })) << "still kept";
}

} // namespace kestrin::test
