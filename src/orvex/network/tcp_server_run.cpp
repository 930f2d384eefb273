#include "orvex/network/tcp_server.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <pthread.h>

#include "orvex/base/log_mgr.h"
#include "orvex/network/private/tcp_server_data.h"

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
    void start_thread(Socket* client, Message message, int size);
    void end();
    void start_thread_v2(Socket* client);
    TcpServerClientThreadParams* new_params(Socket* client) const;

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
    data.is_running = false;
    core = data.core();
    if (!core)
        core = data.start_core();
    if (!core)
        return false;
    listener = core->create_tcp_server_socket(port);
    if (!listener) {
        LogMgr::get()->trace_error("orvex::TcpServer::run() - unable to create a TCP socket.");
        return false;
    }
    const std::lock_guard guard(data.mutex);
    if (data.server_socket)
        data.old_listeners.push_back(data.server_socket);
    data.server_socket = listener;
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
    const int size = length + 1;
    Message message(new unsigned char[static_cast<std::size_t>(size)]());
    core->receive_socket(client, message.get(), length);
    if (data.is_stop_message(
            {reinterpret_cast<const char*>(message.get()), static_cast<std::size_t>(length)})) {
        LogMgr::get()->trace_debug(
            "orvex::TcpServer::run() - received stop message. Exit from tcp svr loop.");
        data.stop_requested = true;
        core->kill_socket(client);
        end();
        return true;
    }
    if (data.threaded_client_callback)
        start_thread(client, std::move(message), size);
    else
        call_back(client, message, size);
    return false;
}

void TcpServer::TcpServerData::Service::end() {
    {
        const std::lock_guard guard(data.mutex);
        data.server_socket = nullptr;
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

TcpServerClientThreadParams* TcpServer::TcpServerData::Service::new_params(Socket* client) const {
    auto* const params = new TcpServerClientThreadParams;
    params->data = new TcpServerClientThreadData;
    params->data->core = core;
    params->socket_core = core.get();
    params->server_socket = listener;
    params->port = port;
    params->client_socket = client;
    core->hold(params->data->client, client, &params->client_socket);
    return params;
}

namespace {

void end_client(TcpServerClientThreadParams* params) {
    if (params->data) {
        params->data->core->end(params->data->client);
    } else if (params->client_socket && params->socket_core) {
        params->socket_core->kill_socket(params->client_socket);
        params->client_socket = nullptr;
    }
}

void end_params(TcpServerClientThreadParams* params) {
    delete[] params->buffer;
    end_client(params);
    delete params;
}

} // namespace

void TcpServer::TcpServerData::Service::start_thread(Socket* client, Message message, int size) {
    TcpServerClientThreadParams* const params = new_params(client);
    {
        const std::lock_guard guard(data.mutex);
        params->client_proc = data.client_proc;
        params->user_data = data.user_data;
    }
    params->buffer = message.release();
    params->buffer_size = size;
    pthread_t thread;
    if (pthread_create(&thread, nullptr, tcp_server_client_thread_func, params) != 0)
        end_params(params);
}

void* tcp_server_client_thread_func(void* argument) {
    auto* const params = static_cast<TcpServerClientThreadParams*>(argument);
    if (!params)
        return nullptr;
    params->thread = pthread_self();
    if (params->client_proc)
        params->client_proc(params->socket_core, params->client_socket, params->buffer,
                            params->buffer_size, params->user_data);
    end_params(params);
    // Nobody joins it.
    pthread_detach(pthread_self());
    pthread_exit(nullptr);
}

bool TcpServer::TcpServerData::Service::run_v2() {
    while (!data.stop_requested) {
        Socket* const client = core->accept_connection(listener);
        if (!client)
            continue;
        if (data.stop_requested || !data.threaded_client_callback)
            data.left_open.push_back(client);
        else
            start_thread_v2(client);
    }
    return false;
}

/// The slot is filled under the lock: a callback may clean up before `pthread_create` has returned.
void TcpServer::TcpServerData::Service::start_thread_v2(Socket* client) {
    std::unique_lock guard(data.mutex);
    const auto slot = std::find(data.client_threads.begin(), data.client_threads.end(), nullptr);
    if (slot == data.client_threads.end()) {
        guard.unlock();
        data.left_open.push_back(client);
        LogMgr::get()->tracef_error("orvex::TcpServer::run() - unable to handle new TCP "
                                    "connection: max client threads (%d) reached.",
                                    static_cast<int>(data.client_threads.size()));
        return;
    }
    TcpServerClientThreadParams* const params = new_params(client);
    params->server = server;
    params->client_proc_v2 = data.client_proc_v2;
    params->user_data = data.user_data;
    if (pthread_create(&params->data->thread, nullptr, tcp_server_client_thread_func_v2, params) ==
        0)
        *slot = params;
    else
        end_params(params);
}

void* tcp_server_client_thread_func_v2(void* argument) {
    auto* const params = static_cast<TcpServerClientThreadParams*>(argument);
    if (!params)
        return nullptr;
    params->thread = pthread_self();
    if (params->client_proc_v2)
        params->client_proc_v2(params->socket_core, params->client_socket, params,
                               params->user_data);
    end_client(params);
    if (params->data && params->data->ends_itself)
        delete params;
    pthread_exit(nullptr);
}

} // namespace orvex
