#include "WebTest.h"

#include <filesystem>

namespace kestrin::test {
namespace {

using Then = FaultyServer::Reply::Then;
const std::string kHead = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n";

class WebLoad : public WebTest {
  protected:
    bool logged(const std::string& part) const {
        return std::ranges::any_of(system->kept->lines(),
                                   [&](const std::string& line) { return line.find(part) != line.npos; });
    }
};

TEST_F(WebLoad, SilenceEndsIt) {
    server.serve("/mute", FaultyServer::Reply{{}, Then::hang});
    server.serve("/stalls",
                 FaultyServer::Reply{{{kHead + "Content-Length: 9999\r\n\r\n<p>half"}}, Then::hang});
    show();
    for (const char* path : {"/mute", "/stalls"}) {
        load(server.url(path), 1);
        EXPECT_TRUE(runUntil([&] { return logged("silent, loading is given up: " + server.url(path)); }, 5));
    }
    loadBody();
    EXPECT_EQ(result("location.pathname"), "/body");
}

TEST_F(WebLoad, SlownessDoesNot) {
    const std::string padding(20000, ' '); // after two of these WebKit reports no more progress
    const std::string end = pageWith("slow");
    server.serve(
        "/trickles",
        FaultyServer::Reply{{{kHead + "Connection: close\r\n\r\n"}, {padding, 0.4, 7}, {end}}, Then::close});
    // What the document itself pulls in may be silent for longer.
    server.serve("/late.js",
                 FaultyServer::Reply{{{FaultyServer::reply("var late = 1").pieces[0].bytes, 1.6}}});
    server.serve("/pulls", pageWith("<script src=/late.js></script>"));
    show();
    loadBody(); // the start of the processes takes its time as well
    for (const char* path : {"/trickles", "/pulls"}) {
        page->events.clear();
        load(server.url(path), 1);
        EXPECT_TRUE(waitFor("kestrin:ready", 8)) << path;
        EXPECT_FALSE(logged("given up")) << path;
    }
    EXPECT_EQ(result("late"), "1");
}

TEST_F(WebLoad, TheLastOneWins) {
    server.serve("/mute", FaultyServer::Reply{{}, Then::hang});
    show();
    load(server.url("/mute"), 1);
    ASSERT_TRUE(runUntil([&] { return server.requests("/mute") > 0; }));
    loadBody();
    load(server.url("/mute"), 1);
    loadBody();
    runFor(1.3);
    EXPECT_FALSE(logged("given up"));
    EXPECT_EQ(result("location.pathname"), "/body");
    load("about:blank");
    EXPECT_TRUE(runUntil([&] { return result("location.href") == "about:blank"; }));
}

TEST_F(WebLoad, FailuresAreLogged) {
    show();
    loadBody();
    const std::string nobody = std::make_unique<FaultyServer>()->url("/");
    for (const std::string& url : {nobody, std::string("file:///no/such/file"), std::string("nonsense")}) {
        load(url);
        EXPECT_TRUE(runUntil([&] { return logged("The page does not load: " + url); }, 5))
            << testing::PrintToString(system->kept->lines());
    }
    EXPECT_EQ(result("document.body.innerText"), "") << "no error page covers the camera picture";
}

TEST_F(WebLoad, FilesMayReadFiles) {
    const std::filesystem::path folder = testing::TempDir() + "kestrin-page";
    std::filesystem::create_directory(folder);
    g_file_set_contents((folder / "data.txt").c_str(), "from a file", -1, nullptr);
    g_file_set_contents((folder / "page.html").c_str(), pageWith("").c_str(), -1, nullptr);
    show();
    load("file://" + (folder / "page.html").string());
    ASSERT_TRUE(waitFor("kestrin:ready"));
    view->evaluate("var r = new XMLHttpRequest; r.open('GET', 'data.txt', false); r.send();");
    EXPECT_EQ(result("r.responseText"), "from a file");
    std::filesystem::remove_all(folder);
}

TEST_F(WebLoad, TheEndOfTheWebProcessIsLogged) {
    show();
    loadBody();
    GtkWidget* widget = gtk_widget_get_first_child(gtk_widget_get_first_child(gtk_window_get_child(window)));
    webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(widget));
    EXPECT_TRUE(runUntil([&] { return logged("The web process has ended: the application ended it"); }));
}

/// Keeps a cache on disk.
class WebCache : public WebTest {
  protected:
    static gtk::WebOptions options() {
        gtk::WebOptions result;
        result.dataFolder = folder() / "data";
        result.cacheFolder = folder() / "cache";
        return result;
    }
    static std::filesystem::path folder() { return testing::TempDir() + "kestrin-cache"; }
    WebCache() : WebTest((std::filesystem::remove_all(folder()), options())) {
        server.serve("/cached.js", FaultyServer::reply("var cached = 1", "200 OK",
                                                       "Content-Type: text/javascript\r\n"
                                                       "Cache-Control: max-age=999\r\n"));
    }
    ~WebCache() override { std::filesystem::remove_all(folder()); }

    /// How often the server was asked for the script after another page has loaded it.
    int requestsAfterLoad(bool ignoresLocalCache) {
        const std::string path = "/page" + std::to_string(++m_pages);
        server.serve(path, pageWith("<script src=/cached.js></script>"));
        page->events.clear();
        load(server.url(path), 10, ignoresLocalCache);
        EXPECT_TRUE(waitFor("kestrin:ready"));
        runFor(0.2); // the cache is written behind the page's back
        return server.requests("/cached.js");
    }

  private:
    int m_pages = 0;
};

TEST_F(WebCache, IsIgnoredAndCleared) {
    show();
    EXPECT_EQ(requestsAfterLoad(false), 1);
    EXPECT_EQ(requestsAfterLoad(false), 1);
    EXPECT_EQ(requestsAfterLoad(true), 2);
    EXPECT_EQ(requestsAfterLoad(false), 2);
    platform::platform().web().clearCache();
    EXPECT_EQ(requestsAfterLoad(false), 3);
}

} // namespace
} // namespace kestrin::test
