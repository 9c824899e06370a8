#include "WebTest.h"

#include "linux/toolkit/Widget.h"

#include <stdexcept>

namespace kestrin::test {

namespace {
const std::string kReady = "<script>webkit.messageHandlers.kestrin.postMessage('ready')</script>";
}

WebTest::WebTest(gtk::WebOptions options) {
    if (!gtk_init_check())
        throw std::runtime_error("this test needs a display");
    system = std::make_shared<WebPlatform>(std::move(options));
    platform::installPlatform(system);
}

WebTest::~WebTest() {
    destroyView();
    runFor(0.05);
    platform::installPlatform(nullptr);
}

platform::WebViewConfiguration WebTest::configuration() const {
    platform::WebViewConfiguration result;
    result.scriptMessageHandlers = {{"kestrin", page}, {"kestrinjs", page}};
    result.allowsInlineMediaPlayback = true;
    result.mediaRequiresUserAction = false;
    result.suppressesIncrementalRendering = true;
    result.allowsPictureInPicture = true;
    result.accessibilityModal = true;
    result.preferences = {{"allowFileAccessFromFileURLs", 1}};
    return result;
}

void WebTest::show(const platform::WebViewConfiguration& configuration) {
    root = platform::makeView<platform::View>();
    root->setFrame({{0, 0}, {200, 100}});
    root->setBackground({0, 0, 1, 1});
    view = platform::makeView<platform::WebView>(configuration);
    view->setFrame(root->bounds());
    view->setNavigationDelegate(page);
    view->setUiDelegate(page);
    root->addSubview(view);
    window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_decorated(window, false);
    gtk_window_set_default_size(window, 200, 100);
    gtk_window_set_child(window, gtk::widget(*root));
    gtk_window_present(window);
    runUntil([&] { return gtk_widget_get_width(gtk::widget(*root)) == 200; });
}

void WebTest::destroyView() {
    view.reset();
    root.reset();
    if (window)
        gtk_window_destroy(std::exchange(window, nullptr));
}

std::string WebTest::pageWith(const std::string& body) {
    return "<!doctype html><meta charset=utf-8><body style='margin:0'>" + body + kReady;
}

void WebTest::load(const std::string& url, double timeout, bool ignoresLocalCache) {
    view->load({url, ignoresLocalCache, timeout});
}

void WebTest::loadBody(const std::string& body) {
    server.serve("/body", pageWith(body));
    std::erase(page->events, "kestrin:ready");
    load(server.url("/body"));
    ASSERT_TRUE(waitFor("kestrin:ready")) << testing::PrintToString(page->events) << '\n'
                                          << testing::PrintToString(system->kept->lines());
}

std::string WebTest::result(const std::string& expression) {
    const std::size_t before = page->events.size();
    view->evaluate("webkit.messageHandlers.kestrinjs.postMessage(String(" + expression + "))");
    const auto found = [&] {
        for (std::size_t i = before; i < page->events.size(); ++i)
            if (page->events[i].starts_with("kestrinjs:"))
                return page->events[i].substr(10);
        return std::string("no answer");
    };
    runUntil([&] { return found() != "no answer"; });
    return found();
}

bool WebTest::waitFor(const std::string& event, double seconds) {
    return runUntil([&] { return page->has(event); }, seconds);
}

} // namespace kestrin::test
