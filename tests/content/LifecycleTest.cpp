#include "Fixture.h"
#include "RawConnection.h"

namespace kestrin::content {
namespace {

std::ptrdiff_t openFiles() { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); }

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

TEST_F(LifecycleTest, StartsAndStopsAgainAndAgain) {
    server.emplace(application, options);
    std::ptrdiff_t before = 0;
    for (int round = 0; round < 20; ++round) {
        const auto error = server->start();
        ASSERT_FALSE(error) << *error;
        EXPECT_EQ(Client().get(server->templateUrl(Form::Direct)).status, 200u);
        server->stop();
        EXPECT_EQ(server->port(), 0);
        EXPECT_EQ(server->hostMapEntry(), "");
        if (round == 4)
            before = openFiles();
    }
    EXPECT_LT(openFiles(), before + 10); // GLib's threads may open some of their own, but not one a round
}

TEST_F(LifecycleTest, SaysWhatStandsInTheWay) {
    start();
    EXPECT_EQ(server->start(), "the content server already runs");
    const auto errorAt = [&](const char* address, std::uint16_t port) {
        ServerOptions with;
        with.address = address;
        with.port = port;
        return errorOf(application, with);
    };
    const std::string taken = "listening on 127.0.0.1 port " + std::to_string(server->port());
    EXPECT_TRUE(errorAt("127.0.0.1", server->port()).starts_with(taken));
    EXPECT_EQ(errorAt("content.kestrin.test", 0), "\"content.kestrin.test\" is not an IP address");
    EXPECT_NE(errorAt("203.0.113.7", 0).find("203.0.113.7"), std::string::npos); // of no interface here

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

TEST_F(LifecycleTest, CertificateAnswersForItsNames) {
    application.hostName = "app.example";
    options.hostNames = {"other.example", "10.1.2.3"};
    start();
    const RawConnection connection(server->port());
    GTlsCertificate* const certificate = connection.certificate();
    const auto errorsFor = [&](const char* name) {
        const auto identity = GPointer<GSocketConnectable>::adopt(g_network_address_new(name, 443));
        return unsigned(g_tls_certificate_verify(certificate, identity.get(), certificate));
    };
    for (const char* const name :
         {"app.example", "other.example", "localhost", "127.0.0.1", "::1", "10.1.2.3"})
        EXPECT_EQ(errorsFor(name), 0u) << name;
    for (const char* const name : {"content.kestrin.test", "example", "10.1.2.4"})
        EXPECT_EQ(errorsFor(name), unsigned{G_TLS_CERTIFICATE_BAD_IDENTITY}) << name;
}

} // namespace
} // namespace kestrin::content
