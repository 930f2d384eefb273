#pragma once

/// @file
/// What the TCP server asks of the system beyond the operations of SocketCore.

#include <cstdint>
#include <memory>
#include <optional>

#include "orvex/network/socket_core.h"

namespace orvex {

/// Kills a socket by the operation that a host may have replaced.
struct SocketKill {
    SocketCore* core;
    void operator()(Socket* socket) const { core->kill_socket(socket); }
};

/// A socket that ends with its scope, unless it is released.
using OwnSocket = std::unique_ptr<Socket, SocketKill>;

/// Addresses stand here in the order of the network.
constexpr std::uint32_t every_address = 0;

/// The address that a text such as "127.0.0.1" names; nothing for any other text.
std::optional<std::uint32_t> dotted_address(const char* text);

/// `SocketCore::create_tcp_server_socket` on one address of the machine, which `local` then names.
Socket* create_listener_at(SocketCore& core, std::uint32_t host, unsigned short port);

/// `SocketCore::accept_connection` without a line for a failure.
Socket* accept_client(const Socket* listener);

/// Waits until `accept_client` has something to tell.
/// @return false if the time is over, or a signal came
bool is_client_waiting(const Socket* listener, int milliseconds);

/// Lets `SocketCore::connect_socket` give up after a while.
void limit_connecting(const Socket* socket, int milliseconds);

} // namespace orvex
