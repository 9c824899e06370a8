#include "FaultyServer.h"
#include "MainLoop.h"
#include "linux/network/SoupHttpClient.h"
#include "linux/toolkit/MainLoopDispatch.h"
#include "support/FakeLog.h"

#include <gtest/gtest.h>

#include <future>

namespace kestrin::test {
namespace {

using Reply = FaultyServer::Reply;
const std::string kOk = "HTTP/1.1 200 OK\r\n";

/// Answers the trust question one way and keeps what it was asked. Thread: any.
class TrustAnswer : public platform::AuthenticationDelegate {
  public:
    explicit TrustAnswer(bool accepts) : m_accepts(accepts) {}
    bool acceptServerTrust(const std::string& host) override {
        const std::lock_guard lock(m_mutex);
        asked.push_back(host);
        return m_accepts;
    }
    std::vector<std::string> asked; ///< to be read when no request is under way

  private:
    const bool m_accepts;
    std::mutex m_mutex;
};

class HttpClientTest : public testing::Test {
  protected:
    using Answer = std::optional<platform::HttpResponse>;

    static platform::HttpRequest get(const std::string& url) {
        platform::HttpRequest request;
        request.url = url;
        return request;
    }
    std::unique_ptr<gtk::SoupHttpClient> makeClient(const std::string& hostMap = "", unsigned timeout = 1) {
        return std::make_unique<gtk::SoupHttpClient>(dispatch,
                                                     gtk::HttpOptions{gtk::HostMap::parse(hostMap), timeout});
    }
    /// Sends, and turns the main loop until the answer is there.
    static Answer send(platform::HttpClient& client, const platform::HttpRequest& request,
                       platform::AuthenticationDelegate* delegate) {
        std::optional<Answer> answer;
        client.send(request, delegate, [&](Answer got) { answer = std::move(got); });
        EXPECT_FALSE(answer) << "answered inside the call: " << request.url;
        EXPECT_TRUE(runUntil([&] { return answer.has_value(); }, 20)) << request.url;
        return answer.value_or(std::nullopt);
    }

    gtk::MainLoopDispatch dispatch{std::make_shared<FakeLog>()};
    FaultyServer server;
    TrustAnswer accepts{true}, refuses{false};
};

TEST_F(HttpClientTest, FaultsOfServers) {
    struct Case {
        const char* name;
        Reply reply;
        int status; ///< 0: no answer
        std::string body = {};
    };
    const auto kClose = Reply::Then::close, kHang = Reply::Then::hang;
    const std::vector<Case> cases{
        {"error page", FaultyServer::reply("<h1>no</h1>", "404 Not Found"), 404, "<h1>no</h1>"},
        {"bytes of all kinds", FaultyServer::reply({"a\0b\xff\r\n", 6}), 200, {"a\0b\xff\r\n", 6}},
        {"cut off", {{{kOk + "Content-Length: 1000\r\n\r\nhalf"}}, kClose}, 0},
        {"not HTTP", {{{"SSH-2.0-OpenSSH_9.2\r\n\r\n"}}, kClose}, 0},
        {"redirect to a file", FaultyServer::reply("", "302 Found", "Location: file:///etc/passwd\r\n"), 0},
        {"stalls", {{{kOk + "Content-Length: 10\r\n\r\n12345"}}, kHang}, 0},
        // Longer than the timeout altogether, never silent for as long.
        {"trickles", {{{kOk + "Content-Length: 3\r\n\r\n"}, {"x", 0.5, 3}}}, 200, "xxx"},
        {"endless", {{{kOk + "\r\n"}, {std::string(1 << 20, 'x'), 0, 1000}}}, 0},
    };
    const auto client = makeClient();
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        server.serve("/case", each.reply);
        const Answer answer = send(*client, get(server.url("/case")), &accepts);
        EXPECT_EQ(answer ? answer->status : 0, each.status);
        EXPECT_EQ(answer ? answer->body : "", each.body);
    }
}

TEST_F(HttpClientTest, ABodyIsPostedWholeAndARedirectOfItIsFetched) {
    FaultyServer::Request posted, fetched;
    server.serve("/post", [&](const FaultyServer::Request& request) {
        posted = request;
        return FaultyServer::reply("", "303 See Other", "Location: /a b\r\n");
    });
    server.serve("/a%20b", [&](const FaultyServer::Request& request) {
        fetched = request;
        return FaultyServer::reply("done");
    });
    platform::HttpRequest request = get(server.url("/post"));
    request.method = "POST";
    request.headers["Content-Type"] = "application/json";
    request.body = "{\"file\":\"" + std::string(3'000'000, 'x') + "\"}";
    const Answer answer = send(*makeClient(), request, &accepts);
    EXPECT_EQ(answer ? answer->body : "", "done");
    EXPECT_EQ(posted.method + ' ' + posted.type, "POST application/json");
    EXPECT_EQ(posted.body, request.body);
    EXPECT_EQ(fetched.method + fetched.body, "GET");
}

TEST_F(HttpClientTest, WhatCannotBeRequestedGivesNoneLater) {
    const auto client = makeClient();
    for (const std::string& url :
         {std::string(), std::string("/api/v2"), std::string("file:///etc/passwd"), server.url("/{}"),
          server.url("/\r\nX-Injected: 1"), server.url({"/\0", 2}), std::string("data:no comma"),
          std::string("https://127.0.0.1:1/")})
        EXPECT_FALSE(send(*client, get(url), &accepts)) << url;
    EXPECT_TRUE(accepts.asked.empty());
}

TEST_F(HttpClientTest, DestructionEndsWhatIsUnderWay) {
    server.serve("/mute", Reply{{}, Reply::Then::hang});
    auto client = makeClient("", 600);
    const auto request = get(server.url("/mute"));
    auto fetched = std::async(std::launch::async, [&] { return client->fetch(request, &accepts); });
    int completions = 0;
    client->send(request, &accepts, [&](Answer answer) { completions += answer ? 100 : 1; });
    ASSERT_TRUE(runUntil([&] { return server.requests("/mute") == 2; }));
    client.reset();
    EXPECT_FALSE(fetched.get());
    runFor(0.1);
    EXPECT_EQ(completions, 1);
}

TEST_F(HttpClientTest, TrustIsAskedOnceAConnectionOrStrict) {
    server.serve("/", "hello");
    const auto client = makeClient();
    const auto request = get(server.url("/"));
    const std::vector<std::string> once{"127.0.0.1"};
    EXPECT_FALSE(send(*client, request, nullptr));
    EXPECT_FALSE(send(*client, request, &refuses));
    EXPECT_EQ(refuses.asked, once);
    EXPECT_TRUE(send(*client, request, &accepts));
    EXPECT_TRUE(std::async(std::launch::async, [&] { return client->fetch(request, &accepts); }).get());
    EXPECT_EQ(accepts.asked, once);
    // A request that wants checks does not go over the connection that went without.
    EXPECT_FALSE(send(*client, request, nullptr));
    EXPECT_EQ(server.requests("/"), 2);
}

TEST_F(HttpClientTest, MappedHostsKeepTheirName) {
    server.serve("/", [](const FaultyServer::Request& request) { return FaultyServer::reply(request.host); });
    server.serve("/away", FaultyServer::reply("", "302 Found", "Location: https://else.test/\r\n"));
    const std::string target = "=127.0.0.1:" + std::to_string(server.port());
    const auto client = makeClient("mapped.test" + target + ",else.test" + target);
    const Answer away = send(*client, get("https://mapped.test/away"), &accepts);
    EXPECT_EQ(away ? away->body : "", "else.test");
    EXPECT_EQ(accepts.asked, (std::vector<std::string>{"mapped.test", "else.test"}));
}

} // namespace
} // namespace kestrin::test
