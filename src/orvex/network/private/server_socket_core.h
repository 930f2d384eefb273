#pragma once

/// @file
/// ServerSocketCore: the SocketCore of a TcpServer, which knows whether a connection lives.

#include <mutex>

#include "orvex/network/socket_core.h"

namespace orvex {

/// A connection that the server ends, unless somebody else does it before.
struct HeldClient {
    Socket* socket = nullptr;   ///< null: killed
    Socket** shown = nullptr;   ///< where a callback sees the record and may take it away; or null
    bool open = false;          ///< nobody closed its descriptor
    HeldClient* next = nullptr; ///< in the list of the core
};

/// The core that a `TcpServer` works with and hands to callbacks.
///
/// A callback may kill or close its own connection while another thread shuts it down, and the
/// server ends each connection after its callback. So the connections that callbacks see are listed
/// here: who kills one takes it off the list first, and who closes one marks it first. Other
/// sockets pass through untouched.
///
/// Shared by the server, its serving loop and its client threads. Any thread.
class ServerSocketCore : public SocketCore {
public:
    /// Lists a connection. `client` stays where it is until `end` or `let_go` was called. Takes no
    /// memory.
    void hold(HeldClient& client, Socket* socket, Socket** shown);
    /// Shuts the connection down, unless it was killed, closed or taken away: who took it may have
    /// killed it through another core, so that its record is not looked at.
    void shut_down(HeldClient& client);
    /// Kills the connection, unless it was killed or taken away.
    void end(HeldClient& client);
    /// Takes the connection off the list.
    /// @return the connection; null if it was killed or taken away
    Socket* let_go(HeldClient& client);

    bool close_socket(Socket* socket) override;
    bool kill_socket(Socket* socket) override;
    bool close_connection(Socket* socket) override;

private:
    void mark_closed(Socket* socket);
    void forget(const Socket* socket);

    std::mutex mutex;
    HeldClient* clients = nullptr;
};

} // namespace orvex
