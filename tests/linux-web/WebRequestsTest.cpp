#include "WebTest.h"

namespace kestrin::test {
namespace {

class WebRequests : public WebTest {};

TEST_F(WebRequests, DialogsDoNotStopAnything) {
    show();
    loadBody("<script>onbeforeunload = e => { e.preventDefault(); return 'stay'; }</script>");
    EXPECT_EQ(result("alert('hello')"), "undefined");
    EXPECT_EQ(result("confirm('really?')"), "false");
    EXPECT_EQ(result("prompt('name?', 'nobody')"), "null");
    EXPECT_EQ(result("print()"), "undefined");
    EXPECT_EQ(g_list_model_get_n_items(gtk_window_get_toplevels()), 1U);
    server.serve("/next", pageWith("next"));
    view->evaluate("location.href = '/next'");
    EXPECT_TRUE(runUntil([&] { return result("location.pathname") == "/next"; }));
}

TEST_F(WebRequests, AFileStaysPending) {
    show();
    loadBody("<input type=file id=file onchange='picked = true' oncancel='picked = false'>");
    view->evaluate("var picked = 'pending'; document.getElementById('file').click()");
    ASSERT_TRUE(waitFor("file"));
    runFor(0.2);
    EXPECT_EQ(result("picked"), "pending");
    EXPECT_EQ(g_list_model_get_n_items(gtk_window_get_toplevels()), 1U);
}

TEST_F(WebRequests, PermissionsAreDenied) {
    show();
    loadBody();
    view->evaluate(
        "var said = 'nothing';"
        "navigator.geolocation.getCurrentPosition(() => said = 'place', e => said = 'no ' + e.code)");
    EXPECT_TRUE(runUntil([&] { return result("said") == "no 1"; })) << result("said");
}

/// Destroys the view inside whatever the page asks first, second, and so on: with a bad certificate, and
/// again when the certificate is known and is asked about later.
TEST_F(WebRequests, AViewMayGoAtAnyMoment) {
    server.serve("/body", pageWith("<script>for (let i = 0; i < 50; i++) "
                                   "webkit.messageHandlers.kestrin.postMessage('m' + i)</script>"));
    for (const std::size_t moment : {2U, 1U, 2U, 3U, 4U, 6U}) {
        page->events.clear();
        page->onEvent = [&] {
            if (page->events.size() == moment)
                destroyView();
        };
        show();
        load(server.url("/body"));
        EXPECT_TRUE(runUntil([&] { return !view; })) << moment;
        runFor(0.05);
        EXPECT_EQ(page->events.size(), moment) << "a destroyed view went on";
    }
    page->onEvent = nullptr;
    for (const double after : {0.0, 0.05, 0.3}) {
        show();
        load(server.url("/body"));
        runFor(after);
        destroyView();
        runFor(0.05);
    }
}

} // namespace
} // namespace kestrin::test
