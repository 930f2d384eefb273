/// @file
/// TcpServer: what any thread may call while another one serves. The records, and which thread
/// touches which, stand in private/tcp_server_data.h. No lock is held while a callback runs or a
/// thread is waited for: both may call back into the server.

#include "orvex/network/tcp_server.h"

#include <cstring>
#include <utility>

#include "orvex/base/global_id.h"
#include "orvex/base/log_mgr.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/base/private/misuse.h"
#include "orvex/network/private/tcp_server_data.h"
#include "orvex/platform/private/threads.h"

namespace orvex {

TcpServerClientThreadParams::TcpServerClientThreadParams() = default;
TcpServerClientThreadParams::~TcpServerClientThreadParams() = default;

TcpServer::TcpServer()
    : data(std::make_unique<TcpServerData>()) {
    data->id = GenId();
}

TcpServer::~TcpServer() {
    SocketCore core;
    for (Socket* client : data->left_open)
        core.kill_socket(client);
    stop();
}

int TcpServer::getid() const {
    return data->id;
}

bool TcpServer::is_running() const {
    return data->is_running;
}

bool TcpServer::init() {
    return static_cast<bool>(data->start_core());
}

std::shared_ptr<ServerSocketCore> TcpServer::TcpServerData::core() const {
    const std::lock_guard guard(mutex);
    return socket_core;
}

/// Makes the core if there is none, and starts it.
/// @return null if it doesn't start
std::shared_ptr<ServerSocketCore> TcpServer::TcpServerData::start_core() {
    {
        const std::lock_guard guard(mutex);
        auto core = socket_core ? socket_core : std::make_shared<ServerSocketCore>();
        if (core->start())
            return socket_core = std::move(core);
    }
    LogMgr::get()->trace_error("orvex::TcpServer::run() - unable to start the socket core.");
    return nullptr;
}

bool TcpServer::stop() {
    cleanup_client_threads();
    std::shared_ptr<ServerSocketCore> core;
    {
        const std::lock_guard guard(data->mutex);
        core = std::move(data->socket_core);
    }
    if (core)
        core->stop();
    return true;
}

namespace {

/// Ends a client thread of `run_v2` whose slot was given back. A thread can't wait for itself: one
/// that cleans up ends its record when its callback has returned.
void finish(std::unique_ptr<TcpServerClientThreadParams> params) {
    TcpServerClientThreadData& own = *params->data;
    own.core->shut_down(own.client);
    if (is_same_thread(own.thread, current_thread())) {
        detach_thread(own.thread);
        own.ends_itself = true;
        static_cast<void>(params.release());
        return;
    }
    join_thread(own.thread);
    own.core->end(own.client);
}

} // namespace

bool TcpServer::cleanup_client_threads() {
    TcpServerData::Slots slots{};
    bool has_core = false;
    {
        const std::lock_guard guard(data->mutex);
        has_core = static_cast<bool>(data->socket_core);
        slots.swap(data->client_threads);
    }
    // Without a core there are clients only if the server still took some in after a `stop`.
    for (auto& params : slots)
        if (params)
            finish(std::move(params));
    return has_core;
}

void TcpServer::set_client_proc(TcpServerClientProc proc, void* user_data) {
    const std::lock_guard guard(data->mutex);
    data->client_proc = proc;
    data->user_data = user_data;
}

void TcpServer::set_client_proc_v2(TcpServerClientProc_v2 proc, void* user_data) {
    const std::lock_guard guard(data->mutex);
    data->client_proc_v2 = proc;
    data->user_data = user_data;
}

void TcpServer::threaded_client_callback(bool state) {
    data->threaded_client_callback = state;
}

void TcpServer::close_unserved_connections(bool state) {
    data->close_unserved = state;
}

bool TcpServer::set_listen_address(const char* address) {
    const auto host = address ? dotted_address(address) : every_address;
    if (!host)
        return misuse("TcpServer::set_listen_address", "a text that is no dotted address");
    const std::lock_guard guard(data->mutex);
    data->listen_address = *host;
    return true;
}

void TcpServer::set_stop_message(const char* text) {
    if (!text) {
        misuse("TcpServer::set_stop_message", "a null text");
        return;
    }
    // Cut first, so that the lock is held for the copy alone.
    char message[sizeof data->stop_message] = {};
    std::strncpy(message, text, sizeof message - 1);
    const std::size_t length = std::strlen(message);
    {
        const std::lock_guard guard(data->mutex);
        std::memcpy(data->stop_message, message, sizeof message);
        data->stop_message_length = length;
    }
    LogMgr::get()->tracef_debug(
        "orvex::TcpServer::set_stop_message() - new stop message: %s - length=%d.", message,
        static_cast<int>(length));
}

const char* TcpServer::get_stop_message() const {
    return data->stop_message;
}

bool TcpServer::TcpServerData::is_stop_message(std::string_view message) const {
    const std::lock_guard guard(mutex);
    return message.starts_with(std::string_view(stop_message, stop_message_length));
}

void TcpServer::TcpServerData::shut_down_clients() {
    const std::lock_guard guard(mutex);
    for (const auto& params : client_threads)
        if (params)
            params->data->core->shut_down(params->data->client);
}

void TcpServer::TcpServerData::shut_down_peeked() {
    const std::lock_guard guard(mutex);
    if (peeked)
        peeked->core->shut_down(peeked->client);
}

/// Closes a connection that is not served, for its descriptor.
/// @return false if there is none
bool TcpServer::TcpServerData::give_one_up(ServerSocketCore& core) {
    Socket* given_up = nullptr;
    {
        const std::lock_guard guard(mutex);
        if (left_open.empty())
            return false;
        given_up = left_open.back();
        left_open.pop_back();
    }
    return core.kill_socket(given_up);
}

/// A connection of the server's own: the flag alone would only be seen a moment later. It doesn't
/// wait for a place in a full queue, which keeps the server awake as it is.
void TcpServer::TcpServerData::wake(ServerSocketCore& core, OwnSocket socket,
                                    const SockAddr& address) const {
    constexpr int patience = 100; // milliseconds
    limit_connecting(socket.get(), patience);
    core.connect_socket(socket.get(), address.host, address.port);
}

bool TcpServer::send_stop_message() {
    const auto core = data->core();
    if (!core)
        return misuse("TcpServer::send_stop_message", "a server that doesn't run");
    // Callbacks that wait for data go on.
    data->shut_down_clients();
    SockAddr address;
    {
        const std::lock_guard guard(data->mutex);
        if (!data->server_socket)
            return misuse("TcpServer::send_stop_message", "a server that doesn't listen");
        address = data->server_socket->local;
    }
    // Without a descriptor for it there is none to wait for, or too many connections were left
    // open. A callback may ask, so that want of memory may not throw either.
    OwnSocket socket(nullptr, {core.get()});
    const auto make_socket = [&core, &socket] {
        return or_false([&] {
            socket.reset(core->create_socket(SOCKET_TYPE_STREAM, SOCKET_PROTOCOL_TCP));
            return socket != nullptr;
        });
    };
    if (!make_socket() && data->give_one_up(*core))
        make_socket();
    if (!socket && !data->starves)
        return false;
    data->stop_requested = true;
    data->shut_down_peeked();
    if (socket)
        data->wake(*core, std::move(socket), address);
    return true;
}

} // namespace orvex
