#include "linux/LinuxPlatform.h"
#include "linux/PrivateHome.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <cstdlib>

namespace kestrin::gtk {
namespace {

class CountingTracking final : public platform::WorldTracking {
  public:
    explicit CountingTracking(const platform::InterfaceOrientation& orientation)
        : m_orientation(orientation) {}
    bool isSupported() const override { return true; }
    std::shared_ptr<platform::ArSession> makeSession() override { return nullptr; }
    int orientation() const { return m_orientation.current(); }

  private:
    const platform::InterfaceOrientation& m_orientation;
};

Options quiet() {
    Options options;
    options.applicationId = "org.kestrin.PlatformTest";
    options.bundle = (test::privateHome() / "bundle").string();
    options.logLevel = LogLevel::off;
    return options;
}

// One after the other in one process, as tests and restarted hosts do.
TEST(PlatformTest, EveryPartAnswers) {
    for (int round = 0; round < 3; ++round) {
        const auto made = LinuxPlatform::make(quiet());
        ASSERT_TRUE(made);
        platform::installPlatform(made);
        EXPECT_TRUE(made->dispatch().isMain());
        EXPECT_GT(made->application().mainScreen().size.width, 0);
        EXPECT_TRUE(made->gpu().defaultDevice());
        EXPECT_FALSE(made->images().decode({}).isValid());
        EXPECT_FALSE(made->tracking().isSupported());
        bool answered = false;
        made->http().send({}, nullptr, [&](const auto& response) { answered = !response; });
        while (!answered)
            g_main_context_iteration(nullptr, true);
        EXPECT_EQ(made->storage().information("CFBundleVersion"), std::nullopt);
        EXPECT_EQ(made->permissions().camera(), platform::Authorization::authorized);
        EXPECT_EQ(made->device().systemName, "Linux");
        EXPECT_EQ(made->featureLevel(), 12.0);
        auto view = platform::makeView<platform::View>();
        view->addSubview(made->views().loadInterface("SdkLoading").root);
        auto page = platform::makeView<platform::WebView>(platform::WebViewConfiguration());
        EXPECT_EQ(page->safeAreaInsets(), platform::Insets());
        view.reset();
        page.reset();
        platform::installPlatform(nullptr);
    }
}

TEST(PlatformTest, OptionsReachTheParts) {
    Options options = quiet();
    options.orientation = 2;
    options.trackingUsesCamera = true;
    std::shared_ptr<CountingTracking> tracking;
    options.worldTracking = [&](const platform::InterfaceOrientation& orientation) {
        return tracking = std::make_shared<CountingTracking>(orientation);
    };
    const auto refused = LinuxPlatform::make(options);
    EXPECT_EQ(&refused->tracking(), tracking.get());
    EXPECT_EQ(tracking->orientation(), 2);
    EXPECT_EQ(refused->application().orientation(), 2);
    EXPECT_EQ(refused->permissions().camera(), platform::Authorization::denied);
    options.granted = {"camera"};
    EXPECT_EQ(LinuxPlatform::make(options)->permissions().camera(), platform::Authorization::authorized);
}

TEST(PlatformDeathTest, WithoutADisplayThereIsNoPlatform) {
    testing::FLAGS_gtest_death_test_style = "threadsafe"; // in a process in which GTK was not used yet
    EXPECT_EXIT(
        {
            unsetenv("DISPLAY");
            unsetenv("WAYLAND_DISPLAY");
            std::exit(LinuxPlatform::make(Options()) ? 1 : 0);
        },
        testing::ExitedWithCode(0), "There is no display");
}

} // namespace
} // namespace kestrin::gtk
