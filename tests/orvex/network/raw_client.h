#pragma once

#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace orvex_test {

using namespace orvex;

/// A TCP client on the loopback that owes nothing to the engine's sockets.
class RawClient {
public:
    /// @param flags  `SOCK_NONBLOCK`: doesn't wait for the connection, which a full queue puts off
    explicit RawClient(int port, int flags = 0)
        : fd(::socket(AF_INET, SOCK_STREAM | flags, 0)) {
        connect(port);
    }

    /// One that has its descriptor, and connects later.
    static RawClient apart() { return RawClient(::socket(AF_INET, SOCK_STREAM, 0), Apart()); }

    void connect(int port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        is_connected =
            fd >= 0 && ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    }
    RawClient(RawClient&& other) noexcept
        : fd(std::exchange(other.fd, -1))
        , is_connected(other.is_connected) {}
    RawClient& operator=(RawClient&&) = delete;
    ~RawClient() { close(); }

    bool connected() const { return is_connected; }

    /// Sends all of it.
    /// @return false if the peer went away before
    bool send(std::string_view text) {
        while (!text.empty()) {
            const ssize_t sent = ::send(fd, text.data(), text.size(), MSG_NOSIGNAL);
            if (sent <= 0)
                return false;
            text.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }

    /// Receives until `size` bytes are there, or the peer has ended the connection.
    std::string receive(std::size_t size = std::string::npos) {
        std::string all;
        char block[4096];
        while (all.size() < size) {
            const ssize_t got = ::recv(fd, block, std::min(sizeof block, size - all.size()), 0);
            if (got <= 0)
                break;
            all.append(block, static_cast<std::size_t>(got));
        }
        return all;
    }

    /// Whether the peer has kept the connection open and sent nothing.
    bool is_open_and_silent() const {
        char byte = 0;
        return ::recv(fd, &byte, 1, MSG_PEEK | MSG_DONTWAIT) == -1 &&
               (errno == EAGAIN || errno == EWOULDBLOCK);
    }

    void end_sending() { ::shutdown(fd, SHUT_WR); }

    void close() {
        if (fd >= 0)
            ::close(std::exchange(fd, -1));
    }

    /// Closes with a reset instead of the orderly end.
    void reset() {
        const linger at_once{1, 0};
        ::setsockopt(fd, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
        close();
    }

private:
    struct Apart {};
    RawClient(int fd, Apart)
        : fd(fd) {}

    int fd;
    bool is_connected = false;
};

} // namespace orvex_test
