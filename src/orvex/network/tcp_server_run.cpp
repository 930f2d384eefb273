/// @file
/// TcpServer: the two loops that serve, and the bodies of their client threads.
///
/// `run` peeks at a connection on the serving thread, takes its message, and either looks for the
/// stop text in it or calls back, here or on a thread that nobody joins. `run_v2` hands a
/// connection over unread, to a thread in a slot, which `cleanup_client_threads` joins. Each
/// connection is listed in the `ServerSocketCore` before its callback can see it, and ended through
/// it after.

#include "orvex/network/tcp_server.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/misuse.h"
#include "orvex/network/private/tcp_server_data.h"
#include "orvex/platform/private/threads.h"

namespace orvex {

/// One call of `run` or `run_v2`.
class TcpServer::TcpServerData::Service {
public:
    Service(TcpServer* server, TcpServerData& data, unsigned short port);

    /// @return false if there is no listener
    bool begin();
    bool run();
    bool run_v2();

private:
    using Message = std::unique_ptr<unsigned char[]>;

    bool is_end(Socket* client, int length);
    void call_back(Socket* client, const Message& message, int size);
    void serve_on_thread(Socket* client, Message message, int size);
    void end();
    void serve_on_thread_v2(Socket* client);
    std::unique_ptr<TcpServerClientThreadParams> new_params(Socket* client) const;

    TcpServer* const server;
    TcpServerData& data;
    const unsigned short port;
    std::shared_ptr<ServerSocketCore> core;
    Socket* listener = nullptr;
};

bool TcpServer::run(unsigned short port) {
    TcpServerData::Service service(this, *data, port);
    return service.begin() && service.run();
}

bool TcpServer::run_v2(unsigned short port) {
    TcpServerData::Service service(this, *data, port);
    return service.begin() && service.run_v2();
}

TcpServer::TcpServerData::Service::Service(TcpServer* server, TcpServerData& data,
                                           unsigned short port)
    : server(server)
    , data(data)
    , port(port) {}

/// The listener and the flags change together: a stop that is asked for from now on must not be
/// lost.
bool TcpServer::TcpServerData::Service::begin() {
    if (data.is_running)
        misuse("TcpServer::run", "a server that listens already");
    data.is_running = false;
    core = data.core();
    if (!core)
        core = data.start_core();
    if (!core)
        return false;
    // What needs memory comes before there is a listener to lose.
    {
        const std::lock_guard guard(data.mutex);
        data.old_listeners.reserve(data.old_listeners.size() + 1);
    }
    listener = core->create_tcp_server_socket(port);
    if (!listener) {
        LogMgr::get()->trace_error("orvex::TcpServer::run() - unable to create a TCP socket.");
        return false;
    }
    const std::lock_guard guard(data.mutex);
    if (data.server_socket)
        data.old_listeners.push_back(std::move(data.server_socket));
    data.server_socket.reset(listener);
    data.is_running = true;
    data.stop_requested = false;
    return true;
}

bool TcpServer::TcpServerData::Service::run() {
    while (!data.stop_requested) {
        Socket* const client = core->accept_connection(listener);
        if (!client)
            continue;
        const int length = core->receive_socket_get_data_len(client);
        if (length <= 0)
            data.left_open.push_back(client);
        else if (is_end(client, length))
            return true;
    }
    return false;
}

/// Reads the message and deals with it.
/// @return whether it was the stop text
bool TcpServer::TcpServerData::Service::is_end(Socket* client, int length) {
    // What the peek saw is there: it is taken whole, with a zero behind it.
    const int size = length + 1;
    auto message = std::make_unique<unsigned char[]>(static_cast<std::size_t>(size));
    core->receive_socket(client, message.get(), length);
    // The stop text.
    if (data.is_stop_message(
            {reinterpret_cast<const char*>(message.get()), static_cast<std::size_t>(length)})) {
        LogMgr::get()->trace_debug(
            "orvex::TcpServer::run() - received stop message. Exit from tcp svr loop.");
        data.stop_requested = true;
        core->kill_socket(client);
        end();
        return true;
    }
    // Any other message.
    if (data.threaded_client_callback)
        serve_on_thread(client, std::move(message), size);
    else
        call_back(client, message, size);
    return false;
}

void TcpServer::TcpServerData::Service::end() {
    {
        const std::lock_guard guard(data.mutex);
        static_cast<void>(data.server_socket.release());
    }
    core->kill_socket(listener);
    data.is_running = false;
}

namespace {

/// Ends the connection however its callback is left.
class ClientEnd {
public:
    ClientEnd(ServerSocketCore& core, Socket* socket)
        : core(core) {
        core.hold(client, socket, nullptr);
    }
    ClientEnd(const ClientEnd&) = delete;
    ClientEnd& operator=(const ClientEnd&) = delete;
    ~ClientEnd() { core.end(client); }

private:
    ServerSocketCore& core;
    HeldClient client;
};

} // namespace

void TcpServer::TcpServerData::Service::call_back(Socket* client, const Message& message,
                                                  int size) {
    TcpServerClientProc proc = nullptr;
    void* user_data = nullptr;
    {
        const std::lock_guard guard(data.mutex);
        proc = data.client_proc;
        user_data = data.user_data;
    }
    const ClientEnd end(*core, client);
    if (proc)
        proc(core.get(), client, message.get(), size, user_data);
}

std::unique_ptr<TcpServerClientThreadParams>
TcpServer::TcpServerData::Service::new_params(Socket* client) const {
    auto params = std::make_unique<TcpServerClientThreadParams>();
    params->data = std::make_unique<TcpServerClientThreadData>();
    params->data->core = core;
    params->socket_core = core.get();
    params->server_socket = listener;
    params->port = port;
    params->client_socket = client;
    core->hold(params->data->client, client, &params->client_socket);
    return params;
}

namespace {

using OwnParams = std::unique_ptr<TcpServerClientThreadParams>;

/// Ends the connection. Parameters that a host made are on no list.
void end_client(TcpServerClientThreadParams& params) {
    if (params.data) {
        params.data->core->end(params.data->client);
    } else if (params.client_socket && params.socket_core) {
        params.socket_core->kill_socket(params.client_socket);
        params.client_socket = nullptr;
    }
}

/// Ends message, connection and record. The message is a plain field, since a host may set it too.
void end_params(OwnParams params) {
    delete[] params->buffer;
    end_client(*params);
}

} // namespace

void TcpServer::TcpServerData::Service::serve_on_thread(Socket* client, Message message, int size) {
    OwnParams params = new_params(client);
    {
        const std::lock_guard guard(data.mutex);
        params->client_proc = data.client_proc;
        params->user_data = data.user_data;
    }
    params->buffer = message.release();
    params->buffer_size = size;
    // From its start on the thread owns the record, and may have ended it when this one goes on.
    pthread_t thread;
    if (start_thread(thread, tcp_server_client_thread_func, params.get()))
        static_cast<void>(params.release());
    else
        end_params(std::move(params));
}

void* tcp_server_client_thread_func(void* argument) {
    auto* const params = static_cast<TcpServerClientThreadParams*>(argument);
    if (!params) {
        misuse("tcp_server_client_thread_func", "null parameters");
        return nullptr;
    }
    params->thread = current_thread();
    if (params->client_proc)
        params->client_proc(params->socket_core, params->client_socket, params->buffer,
                            params->buffer_size, params->user_data);
    // Not owned before: a callback that ends its thread itself must leave the listed record alone.
    end_params(OwnParams(params));
    // Nobody joins it.
    detach_thread(current_thread());
    end_this_thread();
}

bool TcpServer::TcpServerData::Service::run_v2() {
    while (!data.stop_requested) {
        Socket* const client = core->accept_connection(listener);
        if (!client)
            continue;
        if (data.stop_requested || !data.threaded_client_callback)
            data.left_open.push_back(client);
        else
            serve_on_thread_v2(client);
    }
    return false;
}

/// The slot is filled under the lock: a callback may clean up before `start_thread` has returned.
void TcpServer::TcpServerData::Service::serve_on_thread_v2(Socket* client) {
    std::unique_lock guard(data.mutex);
    // Without a slot the connection stays open, unserved.
    const auto slot = std::find(data.client_threads.begin(), data.client_threads.end(), nullptr);
    if (slot == data.client_threads.end()) {
        guard.unlock();
        data.left_open.push_back(client);
        LogMgr::get()->tracef_error("orvex::TcpServer::run() - unable to handle new TCP "
                                    "connection: max client threads (%d) reached.",
                                    static_cast<int>(data.client_threads.size()));
        return;
    }
    OwnParams params = new_params(client);
    params->server = server;
    params->client_proc_v2 = data.client_proc_v2;
    params->user_data = data.user_data;
    if (start_thread(params->data->thread, tcp_server_client_thread_func_v2, params.get()))
        *slot = std::move(params);
    else
        end_params(std::move(params));
}

void* tcp_server_client_thread_func_v2(void* argument) {
    auto* const params = static_cast<TcpServerClientThreadParams*>(argument);
    if (!params) {
        misuse("tcp_server_client_thread_func_v2", "null parameters");
        return nullptr;
    }
    params->thread = current_thread();
    if (params->client_proc_v2)
        params->client_proc_v2(params->socket_core, params->client_socket, params,
                               params->user_data);
    end_client(*params);
    // The callback has given the slot back, and nobody joins this thread.
    if (params->data && params->data->ends_itself)
        const OwnParams ended(params);
    end_this_thread();
}

} // namespace orvex
