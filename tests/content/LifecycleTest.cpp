#include "Client.h"
#include "Fixture.h"
#include "RawConnection.h"

#include <atomic>
#include <thread>
#include <vector>

namespace kestrin::content {
namespace {

std::size_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

class LifecycleTest : public ServerTest {
  protected:
    std::string errorOf(const Application& wanted, const ServerOptions& with = {}) {
        ContentServer refused(wanted, with);
        const auto error = refused.start();
        EXPECT_FALSE(refused.isRunning());
        EXPECT_EQ(refused.keyString(Form::Direct), "");
        return error.value_or("");
    }
};

TEST_F(LifecycleTest, StartsAndStopsFiftyTimes) {
    server.emplace(application, options);
    std::size_t before = 0;
    for (int round = 0; round < 50; ++round) {
        const auto error = server->start();
        ASSERT_FALSE(error) << *error;
        Client client;
        EXPECT_EQ(client.get(server->templateUrl(Form::Direct)).status, 200u);
        server->stop();
        EXPECT_EQ(server->port(), 0);
        EXPECT_EQ(server->hostMapEntry(), "");
        if (round == 4)
            before = openFiles();
    }
    EXPECT_LE(openFiles(), before);
}

TEST_F(LifecycleTest, SaysWhatStandsInTheWay) {
    start();
    ServerOptions taken;
    taken.port = server->port();
    EXPECT_EQ(errorOf(application, taken).find("listening on 127.0.0.1 port " + std::to_string(taken.port)),
              0u);
    EXPECT_EQ(server->start(), "the content server already runs");
    ServerOptions nowhere;
    nowhere.address = "content.kestrin.test";
    EXPECT_EQ(errorOf(application, nowhere), "\"content.kestrin.test\" is not an IP address");
    nowhere.address = "203.0.113.7"; // of no interface of this machine
    EXPECT_NE(errorOf(application, nowhere).find("203.0.113.7"), std::string::npos);

    struct {
        const char* part;
        void (*spoil)(Application&);
    } const cases[] = {
        {"/nowhere", [](Application& a) { a.page = "/nowhere"; }},
        {"the page", [](Application& a) { a.page = ""; }},
        {"index.html", [](Application& a) { a.page = "/proc/self/fdinfo"; }},
        {"/dev/null", [](Application& a) { a.page = "/dev/null"; }},
        {"not a UUID", [](Application& a) { a.id = "../etc"; }},
        {"title", [](Application& a) { a.title = "\xff"; }},
        {"theme", [](Application& a) { a.theme = "\xc0\xaf"; }},
        {"feature flag", [](Application& a) { a.featureFlags.push_back("snap\xed\xa0\x80"); }},
        {"host name", [](Application& a) { a.hostName = ""; }},
        {"host name", [](Application& a) { a.hostName = "a/b"; }},
    };
    for (const auto& [part, spoil] : cases) {
        Application spoilt = application;
        spoil(spoilt);
        EXPECT_NE(errorOf(spoilt).find(part), std::string::npos) << errorOf(spoilt);
    }
}

TEST_F(LifecycleTest, AnswersManyAtOnce) {
    folder.write("site/picture.png", std::string(300000, 'p'));
    start();
    const std::string record = urlOf(server->port(), std::string("/api/v2/application/") + kId);
    const std::string picture = urlOf(server->port(), "/template/picture.png");
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread)
        threads.emplace_back([&] {
            Client client;
            for (int i = 0; i < 25; ++i) {
                right += client.get(record).status == 200;
                right += client.get(picture).body.size() == 300000;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(right, 8 * 25 * 2);
}

TEST_F(LifecycleTest, CertificateAnswersForItsNames) {
    application.hostName = "app.example";
    options.hostNames = {"other.example", "10.1.2.3"};
    start();
    RawConnection connection(server->port());
    ASSERT_TRUE(connection.isUp());
    GTlsCertificate* const certificate = connection.certificate();
    const auto errorsFor = [&](GSocketConnectable* identity) {
        const GTlsCertificateFlags flags = g_tls_certificate_verify(certificate, identity, certificate);
        g_object_unref(identity);
        return static_cast<unsigned>(flags);
    };
    for (const char* const name :
         {"app.example", "other.example", "localhost", "127.0.0.1", "::1", "10.1.2.3"})
        EXPECT_EQ(errorsFor(g_network_address_new(name, 443)), 0u) << name;
    for (const char* const name : {"content.kestrin.test", "example", "10.1.2.4"})
        EXPECT_EQ(errorsFor(g_network_address_new(name, 443)), unsigned{G_TLS_CERTIFICATE_BAD_IDENTITY})
            << name;
}

} // namespace
} // namespace kestrin::content
