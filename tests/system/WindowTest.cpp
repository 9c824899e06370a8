// What a person and other applications do to the host's window.

#include "Desktop.h"
#include "MarkedShow.h"
#include "Processes.h"
#include "Stage.h"

#include "platform/Platform.h"

#include <gtest/gtest.h>

namespace kestrin::test {

namespace {

constexpr const char* kDrawingThread = "kestrin drawing";

/// A stage with a window manager, its page being told of poses.
struct Hosted {
    explicit Hosted(const StageOptions& options = {}) : stage(options) {
        EXPECT_TRUE(stage.runUntil([&] { return stage.told("pose").size() > 5; }, kPatience));
    }
    std::size_t count(const std::string& event) { return stage.told(event).size(); }

    WindowManager manager;
    Stage stage;
};

TEST(Clicks, ReachThePageWheneverItsButtonCanBeSeen) {
    Hosted hosted;
    Stage& stage = hosted.stage;
    KestrinView& view = stage.view();
    const auto clicked = [&](double patience = 15) {
        stage.runFor(0.2);
        const auto before = hosted.count("click");
        EXPECT_TRUE(clickAt(stage.window(), 60, 35));
        return stage.runUntil([&] { return hosted.count("click") > before; }, patience);
    };
    const auto loading = view.subviews().end()[-2], error = view.subviews().back();
    ASSERT_TRUE(stage.runUntil([&] { return loading->isHidden(); }));
    EXPECT_TRUE(clicked()) << "once it is loaded";
    for (const auto& overlay : {loading, error}) {
        overlay->setHidden(false);
        overlay->setOpacity(1);
        EXPECT_FALSE(clicked(0.7)) << "what lies over it is meant";
        overlay->setOpacity(0.5);
        EXPECT_TRUE(clicked()) << "shines through";
        overlay->setOpacity(0);
        EXPECT_TRUE(clicked()) << "invisible, but not hidden";
    }
    view.hide();
    stage.runFor(0.2);
    view.show();
    EXPECT_TRUE(clicked()) << "hidden and shown";
    view.onTrackingReasonChange(5);
    ASSERT_TRUE(stage.runUntil([&] { return view.getContentView()->isHidden(); }));
    EXPECT_FALSE(clicked(0.7)) << "there is no page to be seen";
    view.onTrackingReasonChange(1);
    ASSERT_TRUE(stage.runUntil([&] { return !view.getContentView()->isHidden(); }));
    EXPECT_TRUE(clicked()) << "the page is back";
}

TEST(Resize, ContentStaysOnThePictureWhateverTheSize) {
    constexpr int kPoses = 4;
    const WindowManager manager;
    MarkedShow show({});
    ASSERT_TRUE(show.next());
    for (const auto& [width, height] :
         {std::pair{801, 533}, {417, 601}, {640, 479}, {331, 245}, {640, 640}}) {
        SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
        const platform::Size size{double(width), double(height)};
        xdotool("windowsize", show.stage().window(), {std::to_string(width), std::to_string(height)});
        EXPECT_TRUE(show.stage().runUntil([&] { return show.stage().view().frame().size == size; }));
        const Spread spread = show.measure(kPoses);
        EXPECT_EQ(show.composed().pixelWidth(), width);
        EXPECT_EQ(show.composed().pixelHeight(), height);
        ASSERT_GE(spread.count, std::size_t(2 * kPoses));
        EXPECT_LE(spread.median, 0.5);
        EXPECT_LE(spread.p95, 1.0);
    }
}

TEST(Unseen, TheDrawingThreadSleeps) {
    Hosted hosted;
    Stage& stage = hosted.stage;
    const auto isDrawing = [&] {
        const long before = sleepsOf(kDrawingThread);
        return stage.runUntil([&] { return sleepsOf(kDrawingThread) > before + 6; });
    };
    const auto expectSleep = [&](const char* state) {
        EXPECT_TRUE(stage.runUntil([&] {
            const long before = sleepsOf(kDrawingThread);
            stage.runFor(0.3);
            return sleepsOf(kDrawingThread) == before;
        })) << state;
        const auto frames = stage.tracking().frames();
        const long sleeps = sleepsOf(kDrawingThread);
        ASSERT_TRUE(stage.runUntil([&] { return stage.tracking().frames() > frames + 10; })) << state;
        EXPECT_EQ(sleepsOf(kDrawingThread), sleeps) << state << ": it wakes for nothing";
    };
    ASSERT_TRUE(isDrawing());
    stage.view().hide();
    expectSleep("hidden");
    stage.view().show();
    EXPECT_TRUE(isDrawing());
    xdotool("windowminimize", stage.window());
    expectSleep("minimised");
    xdotool("windowactivate", stage.window());
    EXPECT_TRUE(isDrawing());
}

TEST(Sharing, IsReachedByKeysOnceThePersonAllowsAScreenshot) {
    Hosted hosted;
    Stage& stage = hosted.stage;
    const auto isInFront = [&](const char* title) {
        return stage.runUntil([&] {
            GtkWindow* const dialog = dialogOver(stage.window());
            return dialog && gtk_window_is_active(dialog) &&
                   g_strcmp0(gtk_window_get_title(dialog), title) == 0;
        });
    };
    stage.evaluate(R"(client.commands.captureScreenshot({
        image: document.createElement('canvas').toDataURL(), share: {text: 'Look'}}))");
    EXPECT_TRUE(isInFront("Photo Access"));
    const auto poses = hosted.count("pose");
    EXPECT_TRUE(stage.runUntil([&] { return hosted.count("pose") > poses; })) << "the question stops nothing";
    EXPECT_TRUE(press("alt+a"));
    EXPECT_TRUE(isInFront(nullptr)) << "the preview, titled as the host's window is";
    EXPECT_TRUE(press("Return"));
    EXPECT_TRUE(isInFront("Share"));
    EXPECT_TRUE(press("Escape"));
    EXPECT_TRUE(stage.runUntil([&] { return gtk_window_is_active(stage.window()); }));
}

TEST(Activity, IsToldToThePageAndNotByTheApplicationsOwnDialogs) {
    const auto run = +[](GApplication* application, int* terminations) {
        Hosted hosted;
        Stage& stage = hosted.stage;
        platform::Application& desktop = platform::platform().application();
        desktop.notifications().addObserver(terminations, platform::kWillTerminate,
                                            [=](const auto&) { ++*terminations; });
        using Counts = std::array<std::size_t, 3>;
        const auto counts = [&] {
            return Counts{hosted.count("resign"), hosted.count("background"), hosted.count("activate")};
        };
        const auto becomes = [&](const Counts& wanted) {
            const bool came = stage.runUntil([&] { return counts() == wanted; });
            stage.runFor(0.5); // and nothing more comes
            EXPECT_EQ(counts(), wanted);
            stage.forgetTold();
            return came;
        };
        stage.runUntil([&] { return gtk_window_is_active(stage.window()); });
        stage.runFor(0.5);
        stage.forgetTold();
        {
            const OtherWindow other;
            EXPECT_TRUE(becomes({1, 0, 0})) << "another application has the focus";
        }
        xdotool("windowactivate", stage.window());
        EXPECT_TRUE(becomes({0, 0, 1})) << "it comes back";
        desktop.showAlert("Title", "Message", "Exit");
        EXPECT_TRUE(stage.runUntil([&] { return !gtk_window_is_active(stage.window()); }));
        EXPECT_TRUE(becomes({0, 0, 0})) << "its own alert has the focus";
        EXPECT_TRUE(press("Return"));
        EXPECT_TRUE(stage.runUntil([&] { return gtk_window_is_active(stage.window()); }));
        EXPECT_TRUE(becomes({0, 0, 0})) << "and gives it back";
        xdotool("windowminimize", stage.window());
        EXPECT_TRUE(becomes({1, 1, 0})) << "minimised";
        xdotool("windowactivate", stage.window());
        EXPECT_TRUE(becomes({0, 0, 1})) << "restored";
        EXPECT_EQ(*terminations, 0);
        g_application_quit(application);
    };
    const auto application = gtk::GRef<GtkApplication>::adopt(
        gtk_application_new("org.kestrin.WindowTest", G_APPLICATION_NON_UNIQUE));
    int terminations = 0;
    g_signal_connect(application.get(), "activate", G_CALLBACK(run), &terminations);
    g_application_run(G_APPLICATION(application.get()), 0, nullptr);
    EXPECT_EQ(terminations, 1) << "the application has ended";
}

} // namespace

} // namespace kestrin::test
