/// @file
/// SocketCore: one system call for each operation, and a log line for nearly each. A descriptor
/// belongs to the record that it was put in, and is closed once: whoever closes it writes 0 there.
/// A record with 0 is handed to the system as -1, which refuses it, so that descriptor 0 of the
/// process is never met. Every descriptor is closed in a child of the process that runs a program
/// of its own: one that it kept would keep the port.

#include "orvex/network/socket_core.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/network/private/socket_calls.h"

namespace orvex {

SocketCore::~SocketCore() {
    SocketCore::stop();
}

bool SocketCore::start() {
    started = true;
    return true;
}

bool SocketCore::stop() {
    return std::exchange(started, false);
}

namespace {

LogMgr& log() {
    return *LogMgr::get();
}

/// The descriptor of a record for a system call, which fails if the record is closed.
int descriptor_of(const Socket* socket) {
    return socket->fd > 0 ? socket->fd : -1;
}

/// A process without a standard input is given descriptor 0, which would count as closed.
int moved_above_zero(int fd) {
    if (fd != 0)
        return fd;
    const int moved = fcntl(fd, F_DUPFD_CLOEXEC, 1);
    ::close(fd);
    return moved;
}

/// A descriptor that is closed unless a record takes it over.
class Descriptor {
public:
    explicit Descriptor(int fd)
        : fd(moved_above_zero(fd)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (fd >= 0)
            ::close(fd);
    }

    int get() const { return fd; }
    int release() { return std::exchange(fd, -1); }

private:
    int fd;
};

Socket* new_socket(Descriptor& descriptor, SOCKET_TYPE type, SOCKET_PROTOCOL protocol) {
    auto socket = std::make_unique<Socket>();
    socket->fd = descriptor.release();
    socket->type = type;
    socket->protocol = protocol;
    return socket.release();
}

int system_type(SOCKET_TYPE type) {
    switch (type) {
    case SOCKET_TYPE_STREAM:
        return SOCK_STREAM;
    case SOCKET_TYPE_RAW:
        return SOCK_RAW;
    case SOCKET_TYPE_DGRAM:
        return SOCK_DGRAM;
    }
    return SOCK_STREAM;
}

int system_protocol(SOCKET_PROTOCOL protocol) {
    switch (protocol) {
    case SOCKET_PROTOCOL_TCP:
        return IPPROTO_TCP;
    case SOCKET_PROTOCOL_RAW:
        return IPPROTO_RAW;
    case SOCKET_PROTOCOL_UDP:
        return IPPROTO_UDP;
    }
    return IPPROTO_TCP;
}

} // namespace

Socket* SocketCore::create_socket(SOCKET_TYPE type, SOCKET_PROTOCOL protocol) {
    Descriptor descriptor(
        ::socket(AF_INET, system_type(type) | SOCK_CLOEXEC, system_protocol(protocol)));
    if (descriptor.get() < 0) {
        log().trace_error("orvex::SocketCore::create_socket() - socket creation failed.");
        return nullptr;
    }
    log().tracef_debug("orvex::SocketCore::create_socket() - socket %d: creation ok.",
                       descriptor.get());
    return new_socket(descriptor, type, protocol);
}

bool SocketCore::close_socket(Socket* socket) {
    if (!socket)
        return misuse("SocketCore::close_socket", "a null socket");
    if (socket->fd > 0)
        ::close(socket->fd);
    socket->fd = 0;
    return true;
}

bool SocketCore::shutdown_socket(Socket* socket) {
    if (!socket)
        return misuse("SocketCore::shutdown_socket", "a null socket");
    if (socket->fd < 1)
        return false;
    ::shutdown(socket->fd, SHUT_RDWR);
    return true;
}

bool SocketCore::kill_socket(Socket* socket) {
    if (!socket)
        return misuse("SocketCore::kill_socket", "a null socket");
    const std::unique_ptr<Socket> ended(socket);
    shutdown_socket(socket);
    close_socket(socket);
    return true;
}

namespace {

sockaddr_in address_at(std::uint32_t host, unsigned short port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = host;
    return address;
}

/// The sockets interface takes every kind of address through this one type.
sockaddr* generic(sockaddr_in* address) {
    return reinterpret_cast<sockaddr*>(address);
}

/// The port that a descriptor was bound to; 0 if the system doesn't tell.
unsigned short bound_port(int fd) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getsockname(fd, generic(&address), &size) != 0)
        return 0;
    return ntohs(address.sin_port);
}

bool bind_to(Socket* socket, std::uint32_t host, unsigned short port) {
    sockaddr_in address = address_at(host, port);
    const bool is_bound = ::bind(descriptor_of(socket), generic(&address), sizeof address) == 0;
    const unsigned short bound = is_bound && port == 0 ? bound_port(socket->fd) : port;
    // A port that nobody knows can't be told to anybody.
    if (!is_bound || bound == 0) {
        log().tracef_error("orvex::SocketCore::bind_socket() - bind socket %d to port %d failed.",
                           socket->fd, port);
        return false;
    }
    socket->local.port = bound;
    log().tracef_debug("orvex::SocketCore::bind_socket() - bind socket %d to port %d ok.",
                       socket->fd, port);
    return true;
}

} // namespace

bool SocketCore::bind_socket(Socket* socket, SockAddr* addr) {
    if (!socket || !addr)
        return misuse("SocketCore::bind_socket", "a null socket or address");
    return bind_to(socket, every_address, addr->port);
}

bool SocketCore::listen_socket(Socket* socket, int backlog) {
    if (!socket)
        return misuse("SocketCore::listen_socket", "a null socket");
    const int port = socket->local.port;
    if (::listen(descriptor_of(socket), backlog) != 0) {
        log().tracef_error("orvex::SocketCore::listen_socket() - listen on port %d failed.", port);
        return false;
    }
    log().tracef_debug("orvex::SocketCore::listen_socket() - listen on port %d ok.", port);
    return true;
}

namespace {

/// The steps of a TCP listener.
/// @param bind  binds the socket that it is given
template<class Bind>
Socket* create_listener(SocketCore& core, unsigned short port, Bind bind) {
    constexpr int backlog = 10;
    OwnSocket socket(core.create_socket(SOCKET_TYPE_STREAM, SOCKET_PROTOCOL_TCP), {&core});
    if (socket) {
        // Before the port is bound, so that one that was just given up can be had.
        core.set_socket_option(socket.get(), SOCKET_OPTION_REUSEADDR);
        if (bind(socket.get()) && core.listen_socket(socket.get(), backlog)) {
            log().tracef_debug(
                "orvex::SocketCore::create_tcp_server_socket() - listening on port %d ok.", port);
            return socket.release();
        }
        socket.reset();
    }
    log().tracef_error("orvex::SocketCore::create_tcp_server_socket() - create server socket on "
                       "port [%d] failed.",
                       port);
    return nullptr;
}

} // namespace

Socket* SocketCore::create_tcp_server_socket(unsigned short port) {
    return create_listener(*this, port, [this, port](Socket* socket) {
        SockAddr addr;
        addr.port = port;
        return bind_socket(socket, &addr);
    });
}

Socket* create_listener_at(SocketCore& core, std::uint32_t host, unsigned short port) {
    return create_listener(core, port, [host, port](Socket* socket) {
        if (host != every_address)
            ::inet_ntop(AF_INET, &host, socket->local.host, sizeof socket->local.host);
        return bind_to(socket, host, port);
    });
}

Socket* SocketCore::create_udp_server_socket(unsigned short port) {
    OwnSocket socket(create_socket(SOCKET_TYPE_DGRAM, SOCKET_PROTOCOL_UDP), {this});
    if (socket) {
        SockAddr addr;
        addr.port = port;
        if (bind_socket(socket.get(), &addr)) {
            log().tracef_debug("orvex::SocketCore::create_udp_server_socket() - bind server socket "
                               "[%d] to port [%d] ok.",
                               socket->fd, port);
            return socket.release();
        }
        socket.reset();
    }
    log().tracef_error("orvex::SocketCore::create_udp_server_socket() - create server socket on "
                       "port [%d] failed.",
                       port);
    return nullptr;
}

Socket* SocketCore::accept_connection(Socket* socket) {
    if (!socket) {
        misuse("SocketCore::accept_connection", "a null socket");
        return nullptr;
    }
    Socket* const client = accept_client(socket);
    if (!client)
        log().tracef_error(
            "orvex::SocketCore::accept_connection() - accept client on port [%d] failed.",
            socket->local.port);
    return client;
}

Socket* accept_client(const Socket* listener) {
    Descriptor descriptor(::accept4(descriptor_of(listener), nullptr, nullptr, SOCK_CLOEXEC));
    if (descriptor.get() < 0)
        return nullptr;
    log().tracef_debug(
        "orvex::SocketCore::accept_connection() - accept client socket %d on port %d ok.",
        descriptor.get(), listener->local.port);
    return new_socket(descriptor, listener->type, listener->protocol);
}

bool is_client_waiting(const Socket* listener, int milliseconds) {
    pollfd entry{descriptor_of(listener), POLLIN, 0};
    return ::poll(&entry, 1, milliseconds) > 0;
}

void limit_connecting(const Socket* socket, int milliseconds) {
    const timeval limit{milliseconds / 1000, milliseconds % 1000 * 1000};
    ::setsockopt(descriptor_of(socket), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
}

std::optional<std::uint32_t> dotted_address(const char* text) {
    in_addr address{};
    if (::inet_pton(AF_INET, text, &address) != 1)
        return std::nullopt;
    return address.s_addr;
}

namespace {

/// The first address of a host by the system's look-up. Unlike the plain one, this one keeps its
/// result in memory of the caller's, so that threads may look up at once.
bool look_up(const char* host, in_addr* address) {
    std::vector<char> memory(1024);
    hostent entry{};
    hostent* found = nullptr;
    int reason = 0;
    while (::gethostbyname_r(host, &entry, memory.data(), memory.size(), &found, &reason) == ERANGE)
        memory.resize(memory.size() * 2);
    if (!found || found->h_addrtype != AF_INET || !found->h_addr_list[0])
        return false;
    std::memcpy(address, found->h_addr_list[0], sizeof *address);
    return true;
}

/// The first address of a host. This machine and dotted addresses need no look-up, which takes
/// memory, descriptors and the network.
bool address_of(const char* host, unsigned short port, sockaddr_in* address) {
    *address = address_at(every_address, port);
    const bool is_here = std::string_view(host) == "localhost";
    if (const auto dotted = dotted_address(is_here ? "127.0.0.1" : host)) {
        address->sin_addr.s_addr = *dotted;
        return true;
    }
    return look_up(host, &address->sin_addr);
}

} // namespace

bool SocketCore::connect_socket(Socket* socket, const char* host, unsigned short port) {
    if (!socket || !host)
        return misuse("SocketCore::connect_socket", "a null socket or host");
    sockaddr_in address;
    if (!address_of(host, port, &address) ||
        ::connect(descriptor_of(socket), generic(&address), sizeof address) != 0) {
        log().tracef_error("orvex::SocketCore::connect_socket() - socket connection to server %s "
                           "on port %d failed.",
                           host, port);
        return false;
    }
    log().tracef_debug(
        "orvex::SocketCore::connect_socket() - socket connection to server %s on port %d ok.", host,
        port);
    return true;
}

bool SocketCore::connect_socket(Socket* socket, SockAddr* addr) {
    if (!addr)
        return misuse("SocketCore::connect_socket", "a null address");
    return connect_socket(socket, addr->host, addr->port);
}

bool SocketCore::close_connection(Socket* socket) {
    if (!socket)
        return misuse("SocketCore::close_connection", "a null socket");
    log().tracef_debug("orvex::SocketCore::close_connection() - socket %d closed ok.", socket->fd);
    if (socket->fd > 0)
        ::close(socket->fd);
    socket->fd = 0;
    return true;
}

namespace {

/// Whether a transfer has all that it needs.
bool can_transfer(const char* operation, const Socket* socket, const void* buffer, int length) {
    if (!socket || !buffer)
        return misuse(operation, "a null socket or buffer");
    return length > 0 || misuse(operation, "a length below 1");
}

} // namespace

int SocketCore::send_socket(Socket* socket, const void* buffer, int length) {
    if (!can_transfer("SocketCore::send_socket", socket, buffer, length))
        return 0;
    return static_cast<int>(
        ::send(descriptor_of(socket), buffer, static_cast<std::size_t>(length), MSG_NOSIGNAL));
}

int SocketCore::receive_socket_get_data_len(Socket* socket) {
    if (!socket) {
        misuse("SocketCore::receive_socket_get_data_len", "a null socket");
        return 0;
    }
    char buffer[1024] = {};
    return static_cast<int>(::recv(descriptor_of(socket), buffer, sizeof buffer - 1, MSG_PEEK));
}

int SocketCore::receive_socket(Socket* socket, void* buffer, int length) {
    if (!can_transfer("SocketCore::receive_socket", socket, buffer, length))
        return 0;
    const int received = static_cast<int>(
        ::recv(descriptor_of(socket), buffer, static_cast<std::size_t>(length), 0));
    if (received > 0)
        log().tracef_debug("orvex::SocketCore::receive_socket() - received %d bytes on socket %d - "
                           "buffer: %.*s",
                           received, socket->fd, received, static_cast<const char*>(buffer));
    return received;
}

int SocketCore::send_udp(Socket* socket, const char* host, unsigned short port, const void* buffer,
                         int length) {
    if (!host)
        misuse("SocketCore::send_udp", "a null host");
    if (!host || !can_transfer("SocketCore::send_udp", socket, buffer, length))
        return 0;
    sockaddr_in address;
    if (!address_of(host, port, &address))
        return -1;
    const int sent =
        static_cast<int>(::sendto(descriptor_of(socket), buffer, static_cast<std::size_t>(length),
                                  MSG_NOSIGNAL, generic(&address), sizeof address));
    log().tracef_debug("orvex::SocketCore::send_udp() - sent %d bytes on socket %d.", sent,
                       socket->fd);
    return sent;
}

namespace {

/// @param sender  null: nobody
void store_sender(SockAddr* addr, const sockaddr_in* sender) {
    std::memset(addr->host, 0, sizeof addr->host);
    addr->port = 0;
    if (!sender)
        return;
    ::inet_ntop(AF_INET, &sender->sin_addr, addr->host, sizeof addr->host);
    addr->port = ntohs(sender->sin_port);
}

} // namespace

int SocketCore::receive_udp(Socket* socket, SockAddr* addr, void* buffer, int length) {
    if (!can_transfer("SocketCore::receive_udp", socket, buffer, length))
        return 0;
    sockaddr_in sender{};
    socklen_t size = sizeof sender;
    const int received =
        static_cast<int>(::recvfrom(descriptor_of(socket), buffer, static_cast<std::size_t>(length),
                                    0, generic(&sender), &size));
    if (!addr) {
        log().tracef_debug("orvex::SocketCore::receive_udp() - socket %d - received %d bytes.",
                           socket->fd, received);
        return received;
    }
    store_sender(addr, received >= 0 ? &sender : nullptr);
    log().tracef_debug("orvex::SocketCore::receive_udp() - socket %d - received %d bytes from %s.",
                       socket->fd, received, addr->host);
    return received;
}

namespace {

/// @return whether the system took it
bool switch_on(const Socket* socket, int level, int option) {
    const int on = 1;
    return ::setsockopt(descriptor_of(socket), level, option, &on, sizeof on) == 0;
}

constexpr char refused_option[] =
    "orvex::SocketCore::set_socket_option() - socket %d - unable to set socket option %s.";

} // namespace

void SocketCore::set_socket_option(Socket* socket, SOCKET_OPTION option) {
    if (!socket) {
        misuse("SocketCore::set_socket_option", "a null socket");
        return;
    }
    // Only who broadcasts needs the option to have been taken; the others are wishes.
    switch (option) {
    case SOCKET_OPTION_REUSEADDR:
        if (!switch_on(socket, SOL_SOCKET, SO_REUSEADDR))
            log().tracef_debug(refused_option, socket->fd, "SOCKET_OPTION_REUSEADDR");
        return;
    case SOCKET_OPTION_TCPNODELAY:
        if (!switch_on(socket, IPPROTO_TCP, TCP_NODELAY))
            log().tracef_debug(refused_option, socket->fd, "SOCKET_OPTION_TCPNODELAY");
        return;
    case SOCKET_OPTION_NONBLOCKING:
        ::fcntl(descriptor_of(socket), F_SETFL, O_NONBLOCK);
        return;
    case SOCKET_OPTION_BROADCAST:
        if (!switch_on(socket, SOL_SOCKET, SO_BROADCAST))
            log().tracef_error(refused_option, socket->fd, "SOCKET_OPTION_BROADCAST");
        return;
    }
    log().tracef_error("orvex::SocketCore::set_socket_option() - socket %d - unknown option (%d).",
                       socket->fd, static_cast<int>(option));
}

} // namespace orvex
