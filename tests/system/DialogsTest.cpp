// The dialogs as a person uses them, by keys and clicks.

#include "Desktop.h"
#include "Program.h"

#include "linux/ToolkitTest.h"
#include "linux/permission/PermissionQuestions.h"
#include "linux/storage/PixbufCodec.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <iterator>
#include <optional>

namespace kestrin::test {

namespace {

using platform::Image;

/// The person's folders. Their only program opens pictures and e-mails: it notes down what it was given.
const TemporaryFolder& home() {
    static const TemporaryFolder folder;
    return folder;
}

/// Before anything asks where they are.
const bool kHasHome = [] {
    const TemporaryFolder& folder = home();
    folder.write("notes", "#!/bin/sh\nprintf %s \"$1\" > " + (folder / "note").string() + "\n");
    std::filesystem::permissions(folder / "notes", std::filesystem::perms::owner_all);
    folder.write("applications/notes.desktop", "[Desktop Entry]\nType=Application\nName=Notes\nExec=" +
                                                   (folder / "notes").string() + " %u\n");
    const std::string types = "image/jpeg=notes.desktop\nx-scheme-handler/mailto=notes.desktop\n";
    folder.write("applications/mimeapps.list",
                 "[Default Applications]\n" + types + "[Added Associations]\n" + types);
    for (const char* variable : {"XDG_DATA_HOME", "XDG_CONFIG_HOME"})
        g_setenv(variable, folder.path().c_str(), TRUE);
    g_setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/no/such/bus", TRUE);
    return true;
}();

std::string contents(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

struct DialogsTest : ToolkitTest {
    DialogsTest() { EXPECT_TRUE(isInFront(host)); }

    bool isInFront(GtkWindow* shown) {
        return runUntil([&] { return gtk_window_is_active(shown); });
    }
    /// The dialog over a window, once it has the focus.
    GtkWindow* dialog(GtkWindow* over) {
        EXPECT_TRUE(runUntil([&] { return dialogOver(over) && gtk_window_is_active(dialogOver(over)); }));
        settle();
        return dialogOver(over);
    }
    void share(const std::vector<platform::ShareItem>& items, const char* key) {
        system->desktop.presentShareSheet(items);
        ASSERT_NE(dialog(host), nullptr);
        EXPECT_TRUE(press(key));
    }
    bool isBack() {
        return runUntil([&] { return !dialogOver(host); }) && isInFront(host);
    }
    /// What the person's program was given next.
    std::string note() {
        std::string given;
        EXPECT_TRUE(runUntil([&] { return !(given = contents(home() / "note")).empty(); }));
        std::filesystem::remove(home() / "note");
        return given;
    }
    static platform::Size sizeOf(const std::string& jpeg) {
        return gtk::PixbufCodec()
            .decode({reinterpret_cast<const std::uint8_t*>(jpeg.data()), jpeg.size()})
            .size();
    }

    const WindowManager manager;
    std::shared_ptr<platform::View> view = makeBox({{0, 0}, {640, 480}}, kGreen);
    GtkWindow* host = show(*view, 640, 480);
    const Image picture{40, 30, std::vector<std::uint8_t>(40 * 30 * 4, 255)};
};

TEST_F(DialogsTest, AQuestionIsAnsweredByKeysAndClicksAndTheSafeAnswerIsTheNearest) {
    using gtk::Reply;
    const std::pair<const char*, Reply> cases[] = {{"Return", Reply::no}, {"space", Reply::no},
                                                   {"alt+d", Reply::no},  {"Escape", Reply::dismissed},
                                                   {"alt+a", Reply::yes}, {nullptr, Reply::yes}};
    for (const auto& [key, wanted] : cases) {
        SCOPED_TRACE(key ? key : "a click");
        std::optional<Reply> reply;
        bool wasInFront = false;
        system->desktop.ask(gtk::cameraQuestion(), [&](Reply given) {
            reply = given;
            wasInFront = gtk_window_is_active(host);
        });
        GtkWindow* const question = dialog(host);
        ASSERT_NE(question, nullptr);
        EXPECT_TRUE(gtk_window_get_modal(question));
        GtkWidget* const yes = gtk_dialog_get_widget_for_response(GTK_DIALOG(question), GTK_RESPONSE_ACCEPT);
        EXPECT_TRUE(key ? press(key) : clickOn(yes));
        EXPECT_TRUE(runUntil([&] { return reply.has_value(); }));
        EXPECT_EQ(reply, wanted);
        EXPECT_TRUE(wasInFront) << "the focus was back";
    }
}

TEST_F(DialogsTest, APictureIsSavedCopiedOpenedAndSent) {
    share({picture}, "alt+s");
    ASSERT_NE(dialog(dialogOver(host)), nullptr);
    const TemporaryFolder folder;
    const auto file = folder / "saved.jpg";
    EXPECT_TRUE(press("ctrl+a"));
    EXPECT_EQ(runProgram("xdotool", {"type", file.string()}).status, 0);
    EXPECT_TRUE(press("Return"));
    EXPECT_TRUE(runUntil([&] { return sizeOf(contents(file)) == platform::Size{40, 30}; }));
    EXPECT_TRUE(isBack());

    share({std::string("one"), picture, std::string("two")}, "alt+c");
    EXPECT_TRUE(isBack());
    GdkContentProvider* const copied = gdk_clipboard_get_content(gtk_widget_get_clipboard(GTK_WIDGET(host)));
    GValue text = G_VALUE_INIT, texture = G_VALUE_INIT;
    g_value_init(&text, G_TYPE_STRING);
    g_value_init(&texture, GDK_TYPE_TEXTURE);
    EXPECT_TRUE(gdk_content_provider_get_value(copied, &text, nullptr));
    EXPECT_STREQ(g_value_get_string(&text), "one\ntwo");
    EXPECT_TRUE(gdk_content_provider_get_value(copied, &texture, nullptr));
    EXPECT_EQ(gdk_texture_get_width(GDK_TEXTURE(g_value_get_object(&texture))), 40);
    g_value_unset(&text);
    g_value_unset(&texture);

    share({picture}, "alt+o");
    ASSERT_NE(dialog(dialogOver(host)), nullptr);
    EXPECT_TRUE(press("Return"));
    EXPECT_EQ(sizeOf(contents(note())), (platform::Size{40, 30}));
    EXPECT_TRUE(isBack());

    share({std::string("look here"), picture}, "alt+e");
    EXPECT_THAT(note(), testing::MatchesRegex("mailto:.*body=look%20here.*attach=.*jpg.*"));
    EXPECT_TRUE(isBack());

    share({Image()}, "alt+e");
    settle();
    EXPECT_TRUE(dialogOver(host)) << "there is nothing to send";
    EXPECT_TRUE(press("Escape"));
    EXPECT_TRUE(isBack());
}

} // namespace

} // namespace kestrin::test
