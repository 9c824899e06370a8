#include "content/ClientHello.h"

#include <algorithm>
#include <array>
#include <poll.h>
#include <sys/socket.h>

namespace kestrin::content {
namespace {

constexpr std::size_t kHead = 5; // of a TLS record: its type, two bytes of version, two of length
constexpr unsigned char kHandshake = 22;
constexpr std::size_t kLongest = 16384; // a record's content, unencrypted

bool isAtEnd(int socket) {
    pollfd state{socket, POLLRDHUP, 0};
    return poll(&state, 1, 0) != 0;
}

} // namespace

ClientHello::ClientHello(int socket) : m_socket(socket) { await(kHead); }

void ClientHello::await(std::size_t bytes) {
    m_awaited = bytes;
    const int mark = static_cast<int>(bytes);
    setsockopt(m_socket, SOL_SOCKET, SO_RCVLOWAT, &mark, sizeof mark);
}

ClientHello::State ClientHello::look() {
    std::array<unsigned char, kHead + kLongest> bytes;
    const ssize_t got = recv(m_socket, bytes.data(), m_awaited, MSG_PEEK | MSG_DONTWAIT);
    if (got < static_cast<ssize_t>(m_awaited))
        return isAtEnd(m_socket) ? State::Refused : State::Awaited;
    const std::size_t content = bytes[3] * 256u + bytes[4];
    if (bytes[0] != kHandshake || content > kLongest)
        return State::Refused;
    if (m_awaited < kHead + content) {
        await(kHead + content);
        return look();
    }
    await(1);
    return State::Complete;
}

} // namespace kestrin::content
