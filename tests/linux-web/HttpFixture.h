#pragma once

#include "FaultyServer.h"
#include "MainLoop.h"
#include "TrustAnswer.h"
#include "linux/network/SoupHttpClient.h"
#include "linux/toolkit/MainLoopDispatch.h"
#include "support/FakeLog.h"

#include <gtest/gtest.h>

#include <future>

namespace kestrin::test {

class HttpFixture : public testing::Test {
  protected:
    using Answer = std::optional<platform::HttpResponse>;

    static gtk::HttpOptions options(const std::string& hostMap = "", unsigned idleTimeout = 1) {
        return {gtk::HostMap::parse(hostMap), idleTimeout};
    }

    static platform::HttpRequest get(const std::string& url) {
        platform::HttpRequest request;
        request.url = url;
        return request;
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
    /// Fetches on another thread.
    static Answer fetch(platform::HttpClient& client, const platform::HttpRequest& request,
                        platform::AuthenticationDelegate* delegate) {
        return std::async(std::launch::async, [&] { return client.fetch(request, delegate); }).get();
    }

    std::shared_ptr<FakeLog> log = std::make_shared<FakeLog>();
    gtk::MainLoopDispatch dispatch{log};
    FaultyServer server;
    TrustAnswer accepts{true}, refuses{false};
};

} // namespace kestrin::test
