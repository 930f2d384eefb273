#pragma once

/// @file
/// The private records of TcpServer.
///
/// Which thread touches what:
/// - the serving thread, in `run` or `run_v2`, accepts and reads; the old listeners are its own;
/// - a client thread works on the parameters that it was given, and on the core;
/// - any thread sets, stops and cleans up; what they share with the two above lies under `mutex`,
///   or is atomic.
///
/// Who closes a descriptor: that of a connection `ServerSocketCore::end`, when its callback has
/// returned, unless the callback did; that of a connection that isn't served the end of the server;
/// that of the listener the stop text. After `send_stop_message` the listener stays open.
///
/// How a stop reaches the serving thread, wherever that is:
/// - it waits for a client: a connection of the server's own wakes it, and it looks at the flag now
///   and then, should that connection fail;
/// - it peeks at a client: that one is shut down;
/// - it waits for a descriptor: it looks at the flag before each try, and needs no connection;
/// - it calls back: it looks at the flag when the callback has returned.

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

#include "orvex/network/private/server_socket_core.h"
#include "orvex/network/private/socket_calls.h"
#include "orvex/network/tcp_server.h"

namespace orvex {

/// What the server keeps with a client thread.
struct TcpServerClientThreadData {
    std::shared_ptr<ServerSocketCore> core; ///< a thread may outlive the server
    HeldClient client;
    pthread_t thread{};       ///< under `run_v2`: who is joined
    bool ends_itself = false; ///< under `run_v2`: the slot was given back by the thread itself
};

struct TcpServer::TcpServerData {
    using Slots = std::array<std::unique_ptr<TcpServerClientThreadParams>, 128>;

    /// Covers what follows, up to the flags. Held during no callback and no join.
    mutable std::mutex mutex;
    Slots client_threads{};
    std::shared_ptr<ServerSocketCore> socket_core;
    std::unique_ptr<Socket> server_socket; ///< the record; its descriptor outlives it
    char stop_message[128] = "STOP_ORVEX_TCP_SERVER";
    std::size_t stop_message_length = 21;
    TcpServerClientProc client_proc = nullptr;
    TcpServerClientProc_v2 client_proc_v2 = nullptr;
    void* user_data = nullptr;
    std::uint32_t listen_address = every_address;
    TcpServerClientThreadData* peeked = nullptr; ///< the client that the serving thread waits for
    std::vector<Socket*> left_open;              ///< connections that are not served

    std::atomic<bool> is_running{false};
    std::atomic<bool> stop_requested{false};
    std::atomic<bool> threaded_client_callback{false};
    std::atomic<bool> close_unserved{false};
    /// The serving thread has no descriptor or memory for a client, or is just finding out.
    std::atomic<bool> starves{false};
    int id = 0;

    std::vector<std::unique_ptr<Socket>> old_listeners; ///< records; the descriptors stay open

    std::shared_ptr<ServerSocketCore> core() const;
    std::shared_ptr<ServerSocketCore> start_core();
    bool is_stop_message(std::string_view message) const;
    void shut_down_clients();
    void shut_down_peeked();
    bool give_one_up(ServerSocketCore& core);
    void wake(ServerSocketCore& core, OwnSocket socket, const SockAddr& address) const;

    class Service;
};

} // namespace orvex
