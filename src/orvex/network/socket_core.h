#pragma once

/// @file
/// SocketCore: the system's sockets, with a log line for nearly every action.

#include "orvex/api.h"
#include "orvex/network/socket.h"

namespace orvex {

/// A thin object around the system's IPv4 sockets.
///
/// A host makes one, on the stack or the heap, for UDP or for TCP clients; `TcpServer` has its own
/// and hands it to the host's callbacks. It holds no sockets: whoever got a `Socket` ends it with
/// `kill_socket`.
///
/// Ports are in host byte order. Operations block unless the socket was told otherwise, and each
/// makes one plain system call: a short send or an interrupted call is the caller's matter. A peer
/// that has gone is a failed send, never a signal. No descriptor goes on to a program that the
/// process starts. A record whose `fd` is 0 counts as closed: a system call on it fails, and
/// descriptor 0 of the process is never touched.
///
/// There is no lock. Threads may use different sockets on one `SocketCore`. All operations are
/// virtual, and those that are made of others go through the virtual ones.
///
/// @code
/// orvex::SocketCore core;
/// orvex::Socket* socket =
///     core.create_socket(orvex::SOCKET_TYPE_STREAM, orvex::SOCKET_PROTOCOL_TCP);
/// if (core.connect_socket(socket, "localhost", 9600))
///     core.send_socket(socket, "quit", 4);
/// core.kill_socket(socket);
/// @endcode
class ORVEX_API SocketCore {
public:
    /// Holds nothing: one serves all sockets.
    SocketCore() = default;
    SocketCore(const SocketCore&) = delete;
    SocketCore& operator=(const SocketCore&) = delete;
    /// Calls `stop`. Sockets stay as they are.
    virtual ~SocketCore();

    /// Marks the core as started. Nothing needs it on this system.
    /// @return true
    virtual bool start();

    /// Marks the core as stopped. Sockets stay as they are.
    /// @return whether it was started
    virtual bool stop();

    /// Makes a socket.
    /// @return the record, which the caller ends with `kill_socket`; null, with an error line, if
    ///         the system has none to give
    [[nodiscard]] virtual Socket* create_socket(SOCKET_TYPE type, SOCKET_PROTOCOL protocol);

    /// Closes the descriptor and sets `fd` to 0; the record lives on. A closed record stays as it
    /// is.
    /// @return false for null
    virtual bool close_socket(Socket* socket);

    /// Ends the connection in both directions, which wakes a thread that waits for data on it.
    /// @return false for null and for a closed record; else true, whatever the system said
    virtual bool shutdown_socket(Socket* socket);

    /// `shutdown_socket`, `close_socket`, and the end of the record.
    /// @return false for null
    virtual bool kill_socket(Socket* socket);

    /// Binds the socket to a port on every address of the machine.
    /// @param addr  `port` alone counts; 0 lets the system choose, and `socket->local.port` tells
    ///              what it chose. The log shows the port asked for.
    /// @return false for null, and with an error line if the port can't be had, or isn't told
    virtual bool bind_socket(Socket* socket, SockAddr* addr);

    /// Lets connections come in.
    /// @param backlog  how many may wait to be accepted; the system cuts it to its limit, which a
    ///                 number below 0 asks for
    /// @return false for null, and with an error line on failure
    virtual bool listen_socket(Socket* socket, int backlog);

    /// A TCP socket that listens on a port of every address, with a backlog of 10. A port that a
    /// server has just given up can be had at once.
    /// @param port  0 lets the system choose, see `bind_socket`
    /// @return the record, which the caller ends with `kill_socket`; null, with an error line, on
    ///         failure
    [[nodiscard]] virtual Socket* create_tcp_server_socket(unsigned short port);

    /// A UDP socket that is bound to a port of every address; see `create_tcp_server_socket`.
    [[nodiscard]] virtual Socket* create_udp_server_socket(unsigned short port);

    /// Waits for a connection.
    /// @param socket  a listening socket
    /// @return a record of the listener's type and protocol, whose `local.port` is 0; the caller
    ///         ends it with `kill_socket`. Null for null, and with an error line on failure
    [[nodiscard]] virtual Socket* accept_connection(Socket* socket);

    /// Connects to the first address of a host. Waits as long as the system does.
    /// @param host  a name or a dotted address; "localhost" is 127.0.0.1, and neither that nor a
    ///              dotted address is looked up
    /// @param port  1 to 65,535; 0 is refused by the system
    /// @return false for null, without a line; false with an error line if the host is unknown or
    ///         refuses
    virtual bool connect_socket(Socket* socket, const char* host, unsigned short port);

    /// Connects to `addr->host` at `addr->port`.
    virtual bool connect_socket(Socket* socket, SockAddr* addr);

    /// Closes the descriptor without ending the connection for other holders of it, sets `fd` to 0
    /// and logs it; also when there was nothing to close.
    /// @return false for null
    virtual bool close_connection(Socket* socket);

    /// Sends once.
    /// @param length  bytes; below 1 nothing is sent
    /// @return bytes sent, which may be fewer; 0 for a null or empty argument; -1 on failure
    virtual int send_socket(Socket* socket, const void* buffer, int length);

    /// Waits until there is data, or the peer has closed, and leaves the data where it is.
    /// @return bytes that are there, at most 1023; 0 for null and if the peer has closed; -1 on
    ///         failure
    virtual int receive_socket_get_data_len(Socket* socket);

    /// Receives once. What was received is shown in the log, up to its first zero byte.
    /// @param length  size of the buffer in bytes; below 1 nothing is received
    /// @return bytes received; 0 for a null or empty argument and if the peer has closed; -1 on
    ///         failure
    virtual int receive_socket(Socket* socket, void* buffer, int length);

    /// Sends one message to the first address of a host.
    /// @param port    1 to 65,535; 0 is refused by the system
    /// @param length  bytes; below 1 nothing is sent
    /// @return bytes sent; 0 for a null or empty argument; -1 on failure, without a log line if the
    ///         host is unknown
    virtual int send_udp(Socket* socket, const char* host, unsigned short port, const void* buffer,
                         int length);

    /// Waits for a message; what doesn't fit in the buffer is lost.
    /// @param addr    takes the sender's dotted address in `host` and its port; may be null. On
    ///                failure `host` is empty and `port` 0
    /// @param length  size of the buffer in bytes; below 1 nothing is received
    /// @return bytes received; 0 for a null or empty argument; -1 on failure
    virtual int receive_udp(Socket* socket, SockAddr* addr, void* buffer, int length);

    /// Switches an option on. Null is ignored; an unknown option is an error line and changes
    /// nothing. `SOCKET_OPTION_NONBLOCKING` replaces the descriptor's other status flags.
    virtual void set_socket_option(Socket* socket, SOCKET_OPTION option);

private:
    bool started = false;
};

} // namespace orvex
