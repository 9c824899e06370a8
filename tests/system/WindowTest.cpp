// What a person and other applications do to the host's window.

#include "Desktop.h"
#include "Processes.h"
#include "Stage.h"

#include "platform/Platform.h"

#include <epoxy/gl.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>

namespace kestrin::test {

namespace {

constexpr double kPatience = 45; // seconds
constexpr const char* kDrawingThread = "kestrin drawing";

StageOptions witness() {
    StageOptions options;
    options.page = builtPage("witness");
    return options;
}

/// A stage with a window manager, its page being told of poses.
struct Hosted {
    Hosted() {
        EXPECT_TRUE(stage.runUntil([&] { return stage.told("pose").size() > 5; }, kPatience));
    }
    std::size_t count(const std::string& event) { return stage.told(event).size(); }

    WindowManager manager;
    Stage stage{witness()};
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

/// Counts what the drawing thread hands to GL. It takes the place of the library's function pointers, which
/// are only right once each function was called.
struct GlCounts {
    static bool isDrawing() {
        char name[16] = "";
        pthread_getname_np(pthread_self(), name, sizeof name);
        return name == std::string_view(kDrawingThread);
    }
    static void countUpload(GLenum target, GLint level, GLint x, GLint y, GLsizei width, GLsizei height,
                            GLenum format, GLenum type, const void* pixels) {
        uploads += isDrawing();
        upload(target, level, x, y, width, height, format, type, pixels);
    }
    static void countDraw(GLenum mode, GLint first, GLsizei count) {
        draws += isDrawing();
        draw(mode, first, count);
    }
    GlCounts() {
        upload = std::exchange(epoxy_glTexSubImage2D, countUpload);
        draw = std::exchange(epoxy_glDrawArrays, countDraw);
    }
    ~GlCounts() {
        epoxy_glTexSubImage2D = upload;
        epoxy_glDrawArrays = draw;
    }
    static inline PFNGLTEXSUBIMAGE2DPROC upload = nullptr;
    static inline PFNGLDRAWARRAYSPROC draw = nullptr;
    static inline std::atomic<int> uploads = 0, draws = 0;
};

TEST(Unseen, NothingIsDrawnOrUploadedAndTheDrawingThreadSleeps) {
    Hosted hosted;
    Stage& stage = hosted.stage;
    const GlCounts counts;
    const auto isDrawing = [&] {
        const int draws = counts.draws, uploads = counts.uploads;
        return stage.runUntil([&] { return counts.draws > draws + 2 && counts.uploads > uploads + 2; });
    };
    const auto expectSleep = [&](const char* state) {
        EXPECT_TRUE(stage.runUntil([&] {
            const long before = sleepsOf(kDrawingThread);
            stage.runFor(0.3);
            return sleepsOf(kDrawingThread) == before;
        })) << state;
        const auto frames = stage.tracking().frames();
        const long sleeps = sleepsOf(kDrawingThread);
        const int draws = counts.draws, uploads = counts.uploads;
        ASSERT_TRUE(stage.runUntil([&] { return stage.tracking().frames() > frames + 10; })) << state;
        EXPECT_EQ(counts.draws, draws) << state;
        EXPECT_EQ(counts.uploads, uploads) << state;
        EXPECT_EQ(sleepsOf(kDrawingThread), sleeps) << state << ": it wakes for nothing";
    };
    ASSERT_TRUE(isDrawing());
    EXPECT_GT(sleepsOf(kDrawingThread), 0);
    stage.view().hide();
    expectSleep("hidden");
    stage.view().show();
    EXPECT_TRUE(isDrawing());
    xdotool("windowminimize", stage.window());
    expectSleep("minimised");
    xdotool("windowactivate", stage.window());
    EXPECT_TRUE(isDrawing());
}

TEST(Activity, IsToldToThePageAndNotByTheApplicationsOwnDialogs) {
    const auto run = +[](GApplication* application, int* terminations) {
        Hosted hosted;
        Stage& stage = hosted.stage;
        platform::Application& desktop = platform::platform().application();
        desktop.notifications().addObserver(terminations, platform::kWillTerminate,
                                            [=](const std::string&) { ++*terminations; });
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
        GListModel* windows = gtk_window_get_toplevels();
        for (guint i = g_list_model_get_n_items(windows); i-- > 0;) {
            const auto window =
                gtk::GRef<GtkWindow>::adopt(static_cast<GtkWindow*>(g_list_model_get_item(windows, i)));
            if (GTK_IS_DIALOG(window.get()))
                gtk_dialog_response(GTK_DIALOG(window.get()), GTK_RESPONSE_CLOSE);
        }
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
