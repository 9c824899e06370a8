#include "WebTest.h"

#include "linux/toolkit/Widget.h"

#include <iterator>

namespace kestrin::test {

namespace {
const std::string kReady = "<script>webkit.messageHandlers.kestrin.postMessage('ready')</script>";
}

WebTest::WebTest() {
    gtk_init();
    system = std::make_shared<WebPlatform>();
    platform::installPlatform(system);
}

WebTest::~WebTest() {
    view.reset();
    root.reset();
    if (window)
        gtk_window_destroy(window);
    runFor(0.05);
    platform::installPlatform(nullptr);
}

void WebTest::show() {
    platform::WebViewConfiguration configuration;
    configuration.scriptMessageHandlers = {{"kestrin", page}, {"kestrinjs", page}};
    configuration.suppressesIncrementalRendering = true;
    root = platform::makeView<platform::View>();
    root->setFrame({{0, 0}, {200, 100}});
    root->setBackground({0, 0, 1, 1});
    view = platform::makeView<platform::WebView>(configuration);
    view->setFrame(root->bounds());
    view->setNavigationDelegate(page);
    root->addSubview(view);
    window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_decorated(window, false);
    gtk_window_set_default_size(window, 200, 100);
    gtk_window_set_child(window, gtk::widget(*root));
    gtk_window_present(window);
    runUntil([&] { return gtk_widget_get_width(gtk::widget(*root)) == 200; });
}

std::string WebTest::pageWith(const std::string& body) {
    return "<!doctype html><meta charset=utf-8><body style='margin:0'>" + body + kReady;
}

void WebTest::loadBody(const std::string& body) {
    server.serve("/body", pageWith(body));
    std::erase(page->events, "kestrin:ready");
    load("/body");
    ASSERT_TRUE(waitFor("kestrin:ready")) << testing::PrintToString(logged());
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
    runUntil([&] { return found() != "no answer"; }, kPatience);
    return found();
}

const std::vector<std::string>& WebTest::logged() {
    std::ranges::move(system->kept->take(), std::back_inserter(m_logged));
    return m_logged;
}

bool WebTest::waitForLog(const std::string& part) {
    return runUntil([&] {
        return std::ranges::any_of(logged(),
                                   [&](const std::string& line) { return line.find(part) != line.npos; });
    });
}

} // namespace kestrin::test
