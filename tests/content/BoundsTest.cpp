#include "Client.h"
#include "Fixture.h"
#include "RawConnection.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <list>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace kestrin::content {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr const char* kGetFilm = "GET /template/film.mp4 HTTP/1.1\r\nHost: localhost\r\n\r\n";

/// While one is there, the process can open nothing more.
class NoDescriptors {
  public:
    NoDescriptors() {
        getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit few{300, m_before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
        for (int taken; (taken = dup(STDERR_FILENO)) >= 0;)
            m_taken.push_back(taken);
    }
    ~NoDescriptors() {
        std::for_each(m_taken.begin(), m_taken.end(), close);
        setrlimit(RLIMIT_NOFILE, &m_before);
    }
    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;

  private:
    rlimit m_before;
    std::vector<int> m_taken;
};

class BoundsTest : public ServerTest {
  protected:
    BoundsTest() { folder.write("site/film.mp4", std::string(24 << 20, 'f')); }

    /// A client that behaves is served, and without waiting for one that does not.
    void expectServed() {
        const auto began = Clock::now();
        Client client;
        const Answer answer = client.get(server->templateUrl(Form::Direct));
        EXPECT_EQ(answer.body, kPage) << answer.error;
        EXPECT_LT(Clock::now() - began, 2s);
    }

    std::list<RawConnection> connections;
};

class ImpatientTest : public BoundsTest {
  protected:
    ImpatientTest() { options.limits.patience = 1s; }
};

TEST_F(ImpatientTest, HalfOpenConnectionsEnd) {
    start();
    for (int i = 0; i < 60; ++i)
        connections.emplace_back(server->port(), RawConnection::Greeting::None);
    expectServed();
    for (RawConnection& connection : connections)
        EXPECT_TRUE(connection.isEnded());
    expectServed();
}

TEST_F(ImpatientTest, UnfinishedRequestsEnd) {
    start();
    for (const char* const begun :
         {"", "GET /template/ HTT", "GET /template/ HTTP/1.1\r\nHost: localhost\r\n",
          "POST /x HTTP/1.1\r\nHost: localhost\r\nContent-Length: 10\r\n\r\n12345",
          "POST /x HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n123"})
        ASSERT_TRUE(connections.emplace_back(server->port()).send(begun));
    for (RawConnection& connection : connections)
        EXPECT_TRUE(connection.isEnded());
    expectServed();
}

TEST_F(ImpatientTest, ATrickleDoesNotKeepARequestAlive) {
    start();
    RawConnection connection(server->port());
    connection.send("GET /template/ HTTP/1.1\r\nHost: localhost\r\nX: ");
    const auto began = Clock::now();
    while (connection.send("x") && Clock::now() - began < 8s)
        std::this_thread::sleep_for(20ms);
    EXPECT_LT(Clock::now() - began, 5s);
}

TEST_F(ImpatientTest, AConnectionKeptOpenIsUsedAgainAndThenEnds) {
    start();
    RawConnection connection(server->port());
    for (int i = 0; i < 3; ++i) {
        connection.send("HEAD /template/ HTTP/1.1\r\nHost: localhost\r\n\r\n");
        ASSERT_EQ(connection.receive(15), "HTTP/1.1 200 OK");
        std::string rest;
        while (!rest.ends_with("\r\n\r\n"))
            rest += connection.receive(1);
    }
    EXPECT_TRUE(connection.isEnded());
}

TEST_F(ImpatientTest, AReaderThatStallsIsLetGo) {
    start();
    for (int i = 0; i < 8; ++i)
        connections.emplace_back(server->port()).send(kGetFilm);
    std::this_thread::sleep_for(100ms);
    expectServed();
    std::this_thread::sleep_for(2s);
    for (RawConnection& connection : connections)
        EXPECT_LT(connection.receiveAll().size(), 24u << 20);
    expectServed();
}

TEST_F(ImpatientTest, AReaderThatIsSlowGetsEverything) {
    start();
    RawConnection connection(server->port());
    connection.send("GET /template/film.mp4 HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    std::string all;
    for (std::string some; !(some = connection.receive(1 << 20)).empty(); all += some)
        std::this_thread::sleep_for(100ms);
    EXPECT_TRUE(all.ends_with("\r\n\r\n" + std::string(24 << 20, 'f'))) << all.size();
}

// The connection is to be closed while its buffers are full, which must not hold up the server's only thread.
TEST_F(BoundsTest, AClientThatLeavesWithoutReadingHoldsUpNobody) {
    folder.write("site/part.bin", std::string(3 << 20, 'p'));
    start();
    for (const char* const path : {"/template/part.bin", "/template/film.mp4"})
        for (const char* const after : {"", "Connection: close\r\n"})
            connections.emplace_back(server->port())
                .send(std::string("GET ") + path + " HTTP/1.1\r\nHost: localhost\r\n" + after + "\r\n");
    std::this_thread::sleep_for(100ms);
    for (RawConnection& connection : connections)
        connection.finishSending();
    std::this_thread::sleep_for(100ms);
    expectServed();
}

TEST_F(BoundsTest, LongHeadsAndBodiesEnd) {
    start();
    const std::string filler(64 * 1024, 'x');
    for (const char* const begun :
         {"GET /template/ HTTP/1.1\r\nHost: localhost\r\nX: ", "GET /",
          "POST /x HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1000000000000\r\n\r\n",
          "GET /template/ HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1000000000000\r\n\r\n",
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

TEST_F(BoundsTest, WhatIsNotTlsIsTurnedAwayAtOnce) {
    start();
    RawConnection connection(server->port(), RawConnection::Greeting::None);
    connection.send("GET /template/ HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_TRUE(connection.isEnded());
}

TEST_F(BoundsTest, NonsenseDoesNoHarm) {
    start();
    for (const std::string& nonsense :
         {std::string("GET /template/ HTTP/1.1\r\nHost: localhost\r\n\r\n"), std::string(5000, '\0'),
          std::string("\x16\x03\x01\xff\xff\x01\x00\xff\xfb", 9), std::string(20000, '\xff')}) {
        SCOPED_TRACE(nonsense.substr(0, 8));
        RawConnection plain(server->port(), RawConnection::Greeting::None);
        plain.send(nonsense);
        plain.finishSending();
        EXPECT_TRUE(plain.isEnded());
        RawConnection encrypted(server->port());
        encrypted.send(nonsense);
        encrypted.finishSending();
        EXPECT_TRUE(encrypted.isEnded());
    }
    for (int i = 0; i < 100; ++i) {
        RawConnection connection(server->port(), RawConnection::Greeting::None);
        ASSERT_TRUE(connection.isUp());
        connection.reset();
    }
    for (int i = 0; i < 20; ++i) {
        RawConnection connection(server->port());
        connection.send(kGetFilm);
        connection.reset();
    }
    expectServed();
}

TEST_F(BoundsTest, ConnectionsAreCountedAndForgotten) {
    options.limits.connections = 4;
    start();
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 4; ++i)
            EXPECT_TRUE(connections.emplace_back(server->port()).isUp());
        EXPECT_TRUE(RawConnection(server->port(), RawConnection::Greeting::None).isEnded());
        EXPECT_FALSE(RawConnection(server->port()).isUp());
        connections.front().send(kGetFilm); // those that were there first are still served
        EXPECT_EQ(connections.front().receive(15), "HTTP/1.1 200 OK");
        connections.clear();
        const auto until = Clock::now() + 5s; // the server learns of the ends in its own time
        while (!RawConnection(server->port()).isUp() && Clock::now() < until)
            std::this_thread::sleep_for(5ms);
        std::this_thread::sleep_for(50ms);
    }
    expectServed();
}

TEST_F(BoundsTest, WithoutDescriptorsClientsWait) {
    start();
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(server->port());
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int client = socket(AF_INET, SOCK_STREAM, 0);
    {
        const NoDescriptors none;
        const std::clock_t began = std::clock();
        EXPECT_EQ(connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        std::this_thread::sleep_for(500ms);
        EXPECT_LT(std::clock() - began, CLOCKS_PER_SEC / 4); // it does not try again and again meanwhile
    }
    EXPECT_EQ(send(client, "nonsense", 8, 0), 8);
    char end;
    const timeval patience{10, 0};
    setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    const ssize_t got = recv(client, &end, 1, 0);
    EXPECT_TRUE(got == 0 || (got < 0 && errno == ECONNRESET)); // accepted after all, and turned away
    close(client);
    expectServed();
}

TEST_F(BoundsTest, AFileThatShrinksCutsItsAnswerShort) {
    start();
    RawConnection connection(server->port());
    connection.send(kGetFilm);
    std::string all = connection.receive(1 << 20);
    std::filesystem::resize_file(folder.path() / "site/film.mp4", 1 << 20);
    all += connection.receiveAll();
    EXPECT_LT(all.size(), 24u << 20);
    EXPECT_EQ(all.find('\0'), std::string::npos);
    expectServed();
}

TEST_F(BoundsTest, StopWaitsForNobody) {
    start();
    for (int i = 0; i < 30; ++i)
        connections.emplace_back(server->port(), RawConnection::Greeting::None);
    for (const char* const begun :
         {"", "GET /templ", "POST /x HTTP/1.1\r\nHost: h\r\nContent-Length: 9\r\n\r\n1", kGetFilm,
          "HEAD /template/ HTTP/1.1\r\nHost: h\r\n\r\n"})
        for (int i = 0; i < 4; ++i)
            EXPECT_TRUE(connections.emplace_back(server->port()).send(begun));
    const auto began = Clock::now();
    server->stop();
    EXPECT_LT(Clock::now() - began, 2s);
    for (RawConnection& connection : connections)
        EXPECT_TRUE(connection.isEnded());
}

} // namespace
} // namespace kestrin::content
