#include "WebTest.h"

namespace kestrin::test {

namespace {
const std::string kReady = "<script>webkit.messageHandlers.kestrin.postMessage('ready')</script>";
}

void WebTest::show() {
    platform::WebViewConfiguration configuration;
    configuration.scriptMessageHandlers = {{"kestrin", page}, {"kestrinjs", page}};
    configuration.suppressesIncrementalRendering = true;
    root = makeBox({{0, 0}, {200, 100}}, kBlue);
    view = platform::makeView<platform::WebView>(configuration);
    view->setFrame(root->bounds());
    view->setNavigationDelegate(page);
    root->addSubview(view);
    ToolkitTest::show(*root, 200, 100);
}

std::string WebTest::pageWith(const std::string& body) {
    return "<!doctype html><meta charset=utf-8><body style='margin:0'>" + body + kReady;
}

void WebTest::loadBody(const std::string& body) {
    server.serve("/body", pageWith(body));
    std::erase(page->events, "kestrin:ready");
    load("/body");
    ASSERT_TRUE(waitFor("kestrin:ready")) << testing::PrintToString(system->kept->take());
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

bool WebTest::waitForLog(const std::string& part) {
    bool isThere = false;
    return runUntil([&] {
        for (const std::string& line : system->kept->take())
            isThere = isThere || line.find(part) != line.npos;
        return isThere;
    });
}

} // namespace kestrin::test
