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

TEST_F(BoundsTest, LongHeadsAndBodiesEnd) {
    start();
    const std::string filler(64 * 1024, 'x');
    for (const char* const begun :
         {"GET /template/ HTTP/1.1\r\nHost: localhost\r\nX: ", "GET /",
          "POST /x HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1000000000000\r\n\r\n",
          "POST /x HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: chunked\r\n\r\nFFFFFFFF\r\n"}) {
        SCOPED_TRACE(begun);
        RawConnection connection(server->port());
        ASSERT_TRUE(connection.send(begun));
        std::size_t sent = 0;
        while (sent < (64u << 20) && connection.send(filler))
            sent += filler.size();
        EXPECT_LT(sent, 16u << 20); // what fits into the buffers in between
    }
    expectServed();
}

TEST_F(BoundsTest, NonsenseDoesNoHarm) {
    start();
    for (const std::string& nonsense :
         {std::string("GET /template/ HTTP/1.1\r\nHost: localhost\r\n\r\n"), std::string(5000, '\0'),
          std::string("\x16\x03\x01\xff\xff\x01\x00\xff\xfb", 9), std::string(20000, '\xff')}) {
        SCOPED_TRACE(nonsense.substr(0, 8));
        RawConnection plain(server->port(), Greeting::None);
        plain.send(nonsense);
        EXPECT_TRUE(plain.isEnded());
        RawConnection encrypted(server->port());
        encrypted.send(nonsense);
        encrypted.finishSending();
        EXPECT_TRUE(encrypted.isEnded());
    }
    for (int i = 0; i < 40; ++i) {
        RawConnection connection(server->port(), i % 2 == 0 ? Greeting::None : Greeting::Tls);
        EXPECT_TRUE(i % 2 == 0 || connection.send(kGetFilm));
        connection.reset();
    }
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
