#include "linux/ToolkitTest.h"
#include "linux/toolkit/Widget.h"

namespace kestrin::test {
namespace {

using platform::ImageView;
using platform::Interface;
using platform::Label;
using platform::makeView;
using platform::Spinner;
using platform::View;

/// A picture whose colour depends on the column only.
platform::Image columns(int width, int height, const std::function<Pixel(int x)>& color) {
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const Pixel c = color(x);
            pixels.insert(pixels.end(),
                          {std::uint8_t(c.red), std::uint8_t(c.green), std::uint8_t(c.blue), 255});
        }
    return {width, height, std::move(pixels)};
}

class InterfaceTest : public ToolkitTest {
  protected:
    Interface load(const char* name, int width = 200, int height = 120) {
        Interface loaded = system->toolkit.loadInterface(name);
        if (!loaded.root)
            return loaded;
        root->addSubview(loaded.root);
        loaded.root->setFrame({{0, 0}, {double(width), double(height)}});
        show(*root, width, height);
        return loaded;
    }

    /// Whether some pixel of the area has more of red than of green by far.
    bool hasRed(int x, int y, int width, int height) {
        const platform::Image image = shot();
        for (int row = y * scale(); row < (y + height) * scale(); ++row)
            for (int column = x * scale(); column < (x + width) * scale(); ++column) {
                const Pixel found = pixelOf(image, column, row);
                if (found.red > found.green + 60)
                    return true;
            }
        return false;
    }

    std::shared_ptr<View> root = makeView<View>();
};

TEST_F(InterfaceTest, TheResourcesHaveTheirNamedParts) {
    const Interface loading = system->toolkit.loadInterface("SdkLoading");
    EXPECT_TRUE(loading.part<ImageView>("backgroundImage"));
    EXPECT_TRUE(loading.part<Spinner>("loadingSpinner"));
    EXPECT_TRUE(loading.part<ImageView>("backgroundImage")->isHidden());
    const Interface error = system->toolkit.loadInterface("ErrorPreview");
    EXPECT_TRUE(error.part<Label>("title"));
    EXPECT_TRUE(error.part<Label>("body"));
    EXPECT_TRUE(error.part<View>("backgroundView"));
    const Interface marker = system->toolkit.loadInterface("MarkerLoading");
    EXPECT_TRUE(marker.part<ImageView>("backgroundImage"));
    EXPECT_FALSE(marker.part<Label>("backgroundImage"));
    EXPECT_TRUE(log().empty());
}

TEST_F(InterfaceTest, AMissingResourceIsEmptyAndLogged) {
    const Interface missing = system->toolkit.loadInterface("NoSuchThing");
    EXPECT_FALSE(missing.root);
    EXPECT_TRUE(missing.parts.empty());
    ASSERT_EQ(log().size(), 1U);
    EXPECT_NE(log()[0].find("NoSuchThing"), std::string::npos);
}

TEST_F(InterfaceTest, ThePartsLiveAsLongAsTheRoot) {
    Interface loaded = system->toolkit.loadInterface("ErrorPreview");
    const std::weak_ptr<Label> title = loaded.part<Label>("title");
    std::shared_ptr<View> kept = loaded.root;
    loaded = {};
    EXPECT_FALSE(title.expired());
    kept.reset();
    EXPECT_TRUE(title.expired());
}

TEST_F(InterfaceTest, TheBackgroundPictureCovers) {
    const Interface loaded = load("SdkLoading");
    const auto background = loaded.part<ImageView>("backgroundImage");
    // Twice as wide as high, in a window that is not: 20 of 240 columns are cut off on each side.
    background->setImage(columns(100, 50, [](int x) {
        return x < 10 ? Pixel{0, 0, 255} : x < 90 ? Pixel{255, 0, 0} : Pixel{0, 255, 0};
    }));
    EXPECT_FALSE(pixel(20, 20).isNear({255, 0, 0})); // still hidden
    background->setHidden(false);
    EXPECT_PIXEL(pixel(2, 60), {0, 0, 255});
    EXPECT_PIXEL(pixel(6, 60), {255, 0, 0});
    EXPECT_PIXEL(pixel(20, 1), {255, 0, 0});
    EXPECT_PIXEL(pixel(20, 118), {255, 0, 0});
    EXPECT_PIXEL(pixel(193, 60), {255, 0, 0});
    EXPECT_PIXEL(pixel(197, 60), {0, 255, 0});
    background->setImage({});
    EXPECT_FALSE(pixel(20, 20).isNear({255, 0, 0}));
}

TEST_F(InterfaceTest, TheSpinnerStandsInTheMiddleInItsColour) {
    const Interface loaded = load("SdkLoading");
    EXPECT_FALSE(hasRed(0, 0, 200, 120));
    loaded.part<Spinner>("loadingSpinner")->setColor({1, 0, 0, 1});
    EXPECT_TRUE(hasRed(78, 38, 44, 44));
    EXPECT_FALSE(hasRed(0, 0, 70, 120));
    EXPECT_FALSE(hasRed(0, 0, 200, 30));
    loaded.part<Spinner>("loadingSpinner")->setHidden(true);
    EXPECT_FALSE(hasRed(0, 0, 200, 120));
}

TEST_F(InterfaceTest, TheErrorPanelIsRoundedAndGrowsWithItsText) {
    const Interface loaded = load("ErrorPreview", 500, 400);
    const auto panel = loaded.part<View>("backgroundView");
    GtkWidget* widget = gtk::widget(*panel);
    panel->setBorder({8, 0.3, platform::kDarkGray});
    loaded.part<Label>("title")->setText("No connection");
    loaded.part<Label>("body")->setText("One line.");
    settle();
    const int width = gtk_widget_get_width(widget), height = gtk_widget_get_height(widget);
    EXPECT_GE(width, 240);
    const int left = (500 - width) / 2, top = (400 - height) / 2;
    EXPECT_PIXEL(pixel(left + 10, 200), {255, 255, 255});
    EXPECT_FALSE(pixel(left - 3, 200).isNear({255, 255, 255}, 40));
    EXPECT_FALSE(pixel(left + 1, top + 1).isNear({255, 255, 255}, 40)); // the corner is cut

    std::string longText;
    for (int i = 0; i < 60; ++i)
        longText += "many words ";
    loaded.part<Label>("body")->setText(longText);
    settle();
    EXPECT_GT(gtk_widget_get_height(widget), height + 40);
    EXPECT_LE(gtk_widget_get_width(widget), 500);
}

TEST_F(InterfaceTest, TextsAreShownAsTheyAreWhateverTheyHold) {
    const Interface loaded = load("ErrorPreview", 500, 400);
    const auto title = loaded.part<Label>("title");
    GtkWidget* widget = gtk_widget_get_first_child(gtk::widget(*title));
    for (const auto& [text, shown] : {std::pair<std::string, std::string>{"<b>&amp;", "<b>&amp;"},
                                      {"a\xFF"
                                       "b",
                                       "a\xEF\xBF\xBD"
                                       "b"},
                                      {std::string("x\0y", 3), "x\xEF\xBF\xBDy"},
                                      {"", ""}}) {
        title->setText(text);
        EXPECT_EQ(gtk_label_get_text(GTK_LABEL(widget)), shown);
    }
    EXPECT_EQ(title->text(), "");
}

TEST_F(InterfaceTest, AnInterfaceFollowsItsFrame) {
    const Interface loaded = load("SdkLoading");
    loaded.part<Spinner>("loadingSpinner")->setColor({1, 0, 0, 1});
    loaded.root->setFrame({{0, 0}, {100, 60}});
    EXPECT_TRUE(hasRed(28, 8, 44, 44));
    EXPECT_FALSE(hasRed(80, 0, 120, 120));
    loaded.root->removeFromSuperview();
    EXPECT_FALSE(hasRed(0, 0, 200, 120));
}

} // namespace
} // namespace kestrin::test
