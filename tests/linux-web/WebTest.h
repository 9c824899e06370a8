#pragma once

#include "FaultyServer.h"
#include "linux/ToolkitTest.h"
#include "linux/web/WebKitToolkit.h"
#include "platform/WebView.h"

#include <string>
#include <vector>

namespace kestrin::test {

/// Web views besides.
class WebPlatform : public ToolkitPlatform {
  public:
    platform::WebToolkit& web() override { return webKit; }

    gtk::WebKitToolkit webKit{kept, {"", "", 12, true}};
};

/// Everything that a page asks or says, in order, one line each; a test can answer otherwise.
class Page : public platform::ScriptMessageHandler, public platform::NavigationDelegate {
  public:
    void didReceiveScriptMessage(const std::string& handler, std::string_view body) override {
        events.push_back(handler + ":" + std::string(body));
    }
    platform::NavigationPolicy decideNavigationAction(const platform::NavigationAction& action) override {
        return note(std::string(action.inOwnWebView ? "own " : "new ") + action.url);
    }
    platform::NavigationPolicy decideNavigationAction(const platform::NavigationAction& action,
                                                      platform::ContentMode&) override {
        return note("preferences " + action.url);
    }
    platform::NavigationPolicy decideNavigationResponse(const std::string& url) override {
        return note("response " + url);
    }
    void webContentProcessDidTerminate() override { note("lost"); }
    bool acceptServerTrust(const std::string& host) override {
        note("trust " + host);
        return acceptsServers;
    }

    bool has(const std::string& event) const { return std::ranges::count(events, event) > 0; }

    std::vector<std::string> events;
    bool acceptsServers = true;
    std::string cancelled; ///< the event that is answered by cancelling

  private:
    platform::NavigationPolicy note(const std::string& event) {
        events.push_back(event);
        return event == cancelled ? platform::NavigationPolicy::cancel : platform::NavigationPolicy::allow;
    }
};

/// Web views in a window, and a server for their pages.
class WebTest : public ToolkitTest {
  protected:
    /// Seconds; on a busy machine the processes of a web view take their time to start.
    static constexpr double kPatience = 45;

    WebTest() : ToolkitTest(std::make_shared<WebPlatform>()) {}

    /// A web view of 200 x 100 points that fills the window, above a blue background.
    void show();

    /// A body that posts "ready" at its end.
    static std::string pageWith(const std::string& body);
    void load(const std::string& path, double timeout = 10) { view->load({server.url(path), true, timeout}); }
    /// Loads a page with this body and waits for its "ready".
    void loadBody(const std::string& body = "");
    /// Evaluates and waits for what the script posts.
    std::string result(const std::string& expression);
    bool waitFor(const std::string& event) {
        return runUntil([&] { return page->has(event); });
    }
    bool waitForLog(const std::string& part);

    FaultyServer server;
    std::shared_ptr<Page> page = std::make_shared<Page>();
    std::shared_ptr<platform::View> root;
    std::shared_ptr<platform::WebView> view;
};

} // namespace kestrin::test
