#pragma once

/// @file
/// The records and enumerations of the network operations.

#include <cstdint>

namespace orvex {

/// What kind of socket is made. A value outside the list means `SOCKET_TYPE_STREAM`.
enum SOCKET_TYPE : int {
    SOCKET_TYPE_STREAM = 1, ///< a connection
    SOCKET_TYPE_RAW = 2,    ///< bare IP packets; the system asks for privileges
    SOCKET_TYPE_DGRAM = 3   ///< single messages
};

/// What a socket speaks. A value outside the list means `SOCKET_PROTOCOL_TCP`.
enum SOCKET_PROTOCOL : int {
    SOCKET_PROTOCOL_TCP = 1, ///< a stream of bytes, complete and in order
    SOCKET_PROTOCOL_RAW = 2, ///< bare IP packets
    SOCKET_PROTOCOL_UDP = 3  ///< single messages, which may get lost
};

/// What `SocketCore::set_socket_option` switches on.
enum SOCKET_OPTION : int {
    SOCKET_OPTION_REUSEADDR = 1,   ///< a port that was just given up can be bound again at once
    SOCKET_OPTION_TCPNODELAY = 2,  ///< small writes go out without waiting for more
    SOCKET_OPTION_NONBLOCKING = 3, ///< operations give up where they would wait
    SOCKET_OPTION_BROADCAST = 4    ///< messages may go to a broadcast address
};

/// An end of a connection. A plain value.
struct SockAddr {
    std::uint16_t port = 0;    ///< host byte order
    std::uint64_t address = 0; ///< for the host's use; no operation reads or sets it
    char host[128] = "";       ///< a name or a dotted address, zero-terminated
};

/// A socket as `SocketCore` sees it. A plain record; `SocketCore` makes those that it returns, and
/// `SocketCore::kill_socket` ends them.
struct Socket {
    std::int32_t fd = 0;                            ///< descriptor; 0 means closed
    SOCKET_TYPE type = SOCKET_TYPE_STREAM;          ///< as asked for when it was made
    SOCKET_PROTOCOL protocol = SOCKET_PROTOCOL_TCP; ///< as asked for when it was made
    SockAddr local{0, 0, "localhost"}; ///< `port` is the bound port after `bind_socket`
    SockAddr remote;                   ///< for the host's use
};

} // namespace orvex
