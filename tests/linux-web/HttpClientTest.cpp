#include "HttpFixture.h"

#include <atomic>
#include <fstream>

namespace kestrin::test {
namespace {

class HttpClientTest : public HttpFixture {};

TEST_F(HttpClientTest, WhatCannotBeRequestedGivesNoneLater) {
    gtk::SoupHttpClient client(dispatch, options());
    const std::string port = std::to_string(server.port());
    for (const std::string& url :
         {std::string(), std::string("/api/v2"), std::string("127.0.0.1"), std::string("https://"),
          std::string("https:%2F%2F127.0.0.1%2Fapi"), std::string("file:///etc/passwd"),
          std::string("ftp://127.0.0.1/"), std::string("https://127.0.0.1:99999/"),
          std::string("https://127.0.0.1:x/"), "https://127.0.0.1:" + port + "/a b",
          "https://127.0.0.1:" + port + "/\r\nX-Injected: 1", "https://127.0.0.1:" + port + "/\xc3\xa9",
          std::string("https://127.0.0.1\0/", 19), std::string("data:"), std::string("data:no comma"),
          std::string("https://127.0.0.1:1/"), std::string("https://no-such-host.invalid/")}) {
        EXPECT_FALSE(send(client, get(url), &accepts)) << url;
        EXPECT_FALSE(fetch(client, get(url), &accepts)) << url;
    }
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(HttpClientTest, DataAddresses) {
    gtk::SoupHttpClient client(dispatch, options());
    for (const auto& [url, body] : {std::pair<std::string, std::string>{"data:,plain%20text", "plain text"},
                                    {"DATA:image/png;base64,AAECAw==", {"\0\1\2\3", 4}},
                                    {"data:;base64,", ""}}) {
        const Answer answer = send(client, get(url), nullptr);
        ASSERT_TRUE(answer) << url;
        EXPECT_EQ(answer->status, 200);
        EXPECT_EQ(answer->body, body);
    }
}

TEST_F(HttpClientTest, SendsWhatItIsTold) {
    FaultyServer::Request seen;
    server.serve("/post?a=%20", [&](const FaultyServer::Request& request) {
        seen = request;
        return FaultyServer::reply("ok", "201 Created");
    });
    gtk::SoupHttpClient client(dispatch, options());
    const std::string body("{\"file\":\"\0\xff\"}", 13);
    const Answer answer = send(client,
                               {.url = server.url("/post?a=%20"),
                                .method = "POST",
                                .headers = {{"Content-Type", "application/json"}},
                                .body = body},
                               &accepts);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 201);
    EXPECT_EQ(seen.method, "POST");
    EXPECT_EQ(seen.body, body);
    EXPECT_EQ(seen.headers["content-type"], "application/json");
    EXPECT_EQ(seen.headers["host"], "127.0.0.1:" + std::to_string(server.port()));
}

TEST_F(HttpClientTest, CompletesOnMain) {
    server.serve("/", "hello");
    gtk::SoupHttpClient client(dispatch, options());
    std::optional<bool> onMain;
    std::thread([&] {
        client.send(get(server.url("/")), &accepts, [&](Answer) { onMain = dispatch.isMain(); });
    }).join();
    ASSERT_TRUE(runUntil([&] { return onMain.has_value(); }));
    EXPECT_TRUE(*onMain);
}

TEST_F(HttpClientTest, ManyThreadsShareFewConnections) {
    server.serve("/", "hello");
    gtk::SoupHttpClient client(dispatch, options("", 20));
    std::atomic<int> good = 0, sent = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int j = 0; j < 50; ++j) {
                const Answer answer = client.fetch(get(server.url("/")), &accepts);
                good += answer && answer->body == "hello";
            }
        });
    for (int i = 0; i < 50; ++i)
        client.send(get(server.url("/")), &accepts, [&](Answer answer) {
            good += answer && answer->body == "hello";
            ++sent;
        });
    for (std::thread& thread : threads)
        thread.join();
    ASSERT_TRUE(runUntil([&] { return sent == 50; }));
    EXPECT_EQ(good, 250);
    EXPECT_LE(server.connections(), 6);
    EXPECT_EQ(accepts.asked().size(), static_cast<std::size_t>(server.connections()));
}

TEST_F(HttpClientTest, DestructionEndsWhatIsUnderWay) {
    server.serve("/mute", FaultyServer::Reply{{}, FaultyServer::Reply::Then::hang});
    auto client = std::make_unique<gtk::SoupHttpClient>(dispatch, options("", 600));
    auto fetched =
        std::async(std::launch::async, [&] { return client->fetch(get(server.url("/mute")), &accepts); });
    int completions = 0;
    client->send(get(server.url("/mute")), &accepts, [&](Answer answer) {
        EXPECT_FALSE(answer);
        ++completions;
    });
    ASSERT_TRUE(runUntil([&] { return server.requests("/mute") == 2; }));
    client.reset();
    EXPECT_FALSE(fetched.get());
    EXPECT_TRUE(runUntil([&] { return completions > 0; }));
    runFor(0.05);
    EXPECT_EQ(completions, 1);
}

/// Makes a certificate a trusted one for as long as it lives.
class Trusted {
  public:
    explicit Trusted(GTlsCertificate* certificate) : m_path(testing::TempDir() + "kestrin-anchor.pem") {
        char* pem = nullptr;
        g_object_get(certificate, "certificate-pem", &pem, nullptr);
        std::ofstream(m_path) << gtk::GText(pem).get();
        const auto database =
            gtk::GRef<GTlsDatabase>::adopt(g_tls_file_database_new(m_path.c_str(), nullptr));
        g_tls_backend_set_default_database(g_tls_backend_get_default(), database.get());
    }
    ~Trusted() {
        g_tls_backend_set_default_database(g_tls_backend_get_default(), nullptr);
        std::remove(m_path.c_str());
    }

  private:
    const std::string m_path;
};

TEST_F(HttpClientTest, BadCertificates) {
    server.serve("/", "hello");
    gtk::SoupHttpClient client(dispatch, options());
    const platform::HttpRequest request = get(server.url("/"));
    EXPECT_FALSE(send(client, request, nullptr));
    EXPECT_FALSE(send(client, request, &refuses));
    EXPECT_EQ(server.requests("/"), 0);
    EXPECT_EQ(refuses.asked(), std::vector<std::string>{"127.0.0.1"});

    // Asked once for the connection, not once for the request.
    EXPECT_TRUE(send(client, request, &accepts));
    EXPECT_TRUE(fetch(client, request, &accepts));
    EXPECT_TRUE(send(client, request, &accepts));
    EXPECT_EQ(accepts.asked(), std::vector<std::string>{"127.0.0.1"});
    // A request that wants checks does not go over the connection that went without.
    EXPECT_FALSE(send(client, request, nullptr));
    EXPECT_EQ(server.requests("/"), 3);
}

TEST_F(HttpClientTest, GoodCertificatesAreToldAsWell) {
    server.serve("/", "hello");
    const Trusted trusted(server.certificate());
    gtk::SoupHttpClient client(dispatch, options());
    const platform::HttpRequest request = get(server.url("/"));
    EXPECT_TRUE(send(client, request, nullptr));
    EXPECT_TRUE(send(client, request, &refuses)) << "a good certificate needs no exception";
    EXPECT_TRUE(fetch(client, request, &refuses));
    EXPECT_EQ(refuses.asked(), std::vector<std::string>{"127.0.0.1"});
    // Good, but another host's.
    EXPECT_FALSE(send(client, get(server.url("/", "127.0.0.2")), nullptr));
}

TEST_F(HttpClientTest, MappedHostsKeepTheirName) {
    FaultyServer other;
    const auto echoHost = [](const std::string& name) {
        return [name](const FaultyServer::Request& request) {
            return FaultyServer::reply(name + " " + request.headers.at("host"));
        };
    };
    server.serve("/", echoHost("first"));
    other.serve("/", echoHost("second"));
    server.serve("/away", FaultyServer::reply("", "302 Found", "Location: https://second.test/\r\n"));
    gtk::SoupHttpClient client(dispatch, options("mapped.test=127.0.0.1:" + std::to_string(server.port()) +
                                                 ",second.test=localhost:" + std::to_string(other.port())));
    const auto bodyOf = [&](const std::string& url) {
        const Answer answer = send(client, get(url), &accepts);
        return answer ? answer->body : "none";
    };
    EXPECT_EQ(bodyOf("https://mapped.test/"), "first mapped.test");
    EXPECT_EQ(bodyOf("https://MAPPED.test:1234/"), "first MAPPED.test:1234");
    EXPECT_EQ(bodyOf("https://mapped.test/away"), "second second.test");
    EXPECT_EQ(bodyOf(other.url("/")), "second 127.0.0.1:" + std::to_string(other.port()));
    EXPECT_EQ(accepts.asked(),
              (std::vector<std::string>{"mapped.test", "MAPPED.test", "second.test", "127.0.0.1"}));
}

TEST_F(HttpClientTest, MappedHostsAreCheckedByTheirName) {
    server.serve("/", "hello");
    const Trusted trusted(server.certificate());
    const std::string target = "=127.0.0.1:" + std::to_string(server.port());
    gtk::SoupHttpClient client(dispatch, options("mapped.test" + target + ",else.test" + target));
    EXPECT_TRUE(send(client, get("https://mapped.test/"), nullptr));
    EXPECT_FALSE(send(client, get("https://else.test/"), nullptr));
}

} // namespace
} // namespace kestrin::test
