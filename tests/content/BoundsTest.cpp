#include "Fixture.h"
#include "RawConnection.h"

#include <chrono>
#include <list>
#include <thread>

namespace kestrin::content {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Greeting = RawConnection::Greeting;

constexpr const char* kGetFilm = "GET /template/film.mp4 HTTP/1.1\r\nHost: localhost\r\n\r\n";

class BoundsTest : public ServerTest {
  protected:
    BoundsTest() { folder.write("site/film.mp4", std::string(24 << 20, 'f')); }

    /// A client that behaves is served, and without waiting for one that does not.
    void expectServed() {
        const auto began = Clock::now();
        const Answer answer = Client().get(server->templateUrl(Form::Direct));
        EXPECT_EQ(answer.body, kPage) << answer.error;
        EXPECT_LT(Clock::now() - began, 10s);
    }

    std::list<RawConnection> connections, readers;
};

TEST_F(BoundsTest, WhoKeepsTheServerWaitingIsLetGo) {
    options.limits.patience = 2s;
    start();
    for (int i = 0; i < 60; ++i)
        connections.emplace_back(server->port(), Greeting::None);
    for (const char* const begun :
         {"", "GET /template/ HTT", "GET /template/ HTTP/1.1\r\nHost: localhost\r\n",
          "POST /x HTTP/1.1\r\nHost: localhost\r\nContent-Length: 10\r\n\r\n12345",
          "POST /x HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n123"})
        connections.emplace_back(server->port()).send(begun);
    for (int i = 0; i < 8; ++i)
        EXPECT_TRUE(readers.emplace_back(server->port()).send(kGetFilm));
    expectServed();
    for (RawConnection& connection : connections)
        EXPECT_TRUE(connection.isEnded());
    std::this_thread::sleep_for(3s);
    for (RawConnection& reader : readers)
        EXPECT_LT(reader.receiveAll().size(), 24u << 20);
    expectServed();
}

TEST_F(BoundsTest, StopWaitsForNobody) {
    start();
    for (int i = 0; i < 30; ++i)
        connections.emplace_back(server->port(), Greeting::None);
    for (const char* const begun :
         {"", "GET /templ", "POST /x HTTP/1.1\r\nHost: h\r\nContent-Length: 9\r\n\r\n1", kGetFilm,
          "HEAD /template/ HTTP/1.1\r\nHost: h\r\n\r\n"})
        EXPECT_TRUE(connections.emplace_back(server->port()).send(begun));
    const auto began = Clock::now();
    server->stop();
    EXPECT_LT(Clock::now() - began, 10s);
    for (RawConnection& connection : connections)
        EXPECT_TRUE(connection.isEnded());
}

} // namespace
} // namespace kestrin::content
