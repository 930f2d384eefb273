/// @file
/// TcpServer: the two loops that serve, and the bodies of their client threads.
///
/// `run` peeks at a connection on the serving thread, takes its message, and either looks for the
/// stop text in it or calls back, here or on a thread that nobody joins. `run_v2` hands a
/// connection over unread, to a thread in a slot, which `cleanup_client_threads` joins. Each
/// connection is listed in the `ServerSocketCore` before its callback can see it, and ended through
/// it after.
///
/// Memory that runs out costs the client that it was needed for, never the server: nothing but a
/// callback throws out of `run` and `run_v2`.

#include "orvex/network/tcp_server.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/base/private/misuse.h"
#include "orvex/network/private/tcp_server_data.h"
#include "orvex/platform/private/threads.h"

namespace orvex {

/// One call of `run` or `run_v2`.
class TcpServer::TcpServerData::Service {
public:
    Service(TcpServer* server, TcpServerData& data, unsigned short port);

    /// @return false if there is no listener
    bool begin_or_tell();
    bool run();
    bool run_v2();

private:
    using Message = std::unique_ptr<unsigned char[]>;

    bool begin();
    OwnSocket next_client();
    int peek(Socket* client);
    bool show_peeked(TcpServerClientThreadData* peeked);
    void leave_open(OwnSocket client);
    Message read(Socket* client, int length);
    bool is_end(OwnSocket client, int length);
    void call_back(OwnSocket client, const Message& message, int size);
    void serve_on_thread(OwnSocket client, Message message, int size);
    void end();
    void serve_on_thread_v2(OwnSocket client);
    std::unique_ptr<TcpServerClientThreadParams> new_params(OwnSocket& client) const;

    TcpServer* const server;
    TcpServerData& data;
    const unsigned short port;
    std::shared_ptr<ServerSocketCore> core;
    Socket* listener = nullptr;
};

bool TcpServer::run(unsigned short port) {
    TcpServerData::Service service(this, *data, port);
    return service.begin_or_tell() && service.run();
}

bool TcpServer::run_v2(unsigned short port) {
    TcpServerData::Service service(this, *data, port);
    return service.begin_or_tell() && service.run_v2();
}

TcpServer::TcpServerData::Service::Service(TcpServer* server, TcpServerData& data,
                                           unsigned short port)
    : server(server)
    , data(data)
    , port(port) {}

/// A thread of the host's runs nothing else: what is thrown there ends the process.
bool TcpServer::TcpServerData::Service::begin_or_tell() {
    return or_undo([this] { return begin(); },
                   [] {
                       LogMgr::get()->trace_error(
                           "orvex::TcpServer::run() - unable to create a TCP socket.");
                   });
}

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
    std::uint32_t address = every_address;
    {
        const std::lock_guard guard(data.mutex);
        data.old_listeners.reserve(data.old_listeners.size() + 1);
        address = data.listen_address;
    }
    listener = create_listener_at(*core, address, port);
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
        OwnSocket client = next_client();
        if (!client)
            continue;
        const int length = peek(client.get());
        if (length <= 0)
            leave_open(std::move(client));
        else if (is_end(std::move(client), length))
            return true;
    }
    return false;
}

/// Waits for a client, but not so long that a stop which couldn't wake it goes unseen. One that the
/// system can't hand over, for want of descriptors or memory, stays in the queue: it is tried again
/// after a pause, and said once.
/// @return null: it is time to look at the flag
OwnSocket TcpServer::TcpServerData::Service::next_client() {
    constexpr int look_at_flag = 250; // milliseconds
    constexpr std::chrono::milliseconds pause(20);
    if (!is_client_waiting(listener, look_at_flag))
        return {nullptr, {core.get()}};
    OwnSocket client(nullptr, {core.get()});
    // Before the line that says so: who reads it may want to stop.
    const bool was_starving = data.starves.exchange(true);
    or_false([&] {
        client.reset(was_starving ? accept_client(listener) : core->accept_connection(listener));
        return true;
    });
    data.starves = !client;
    if (!client)
        std::this_thread::sleep_for(pause);
    return client;
}

/// Waits for the first bytes of a client, or until a stop shuts it down.
/// @return bytes that are there; 0 or less if none will come
int TcpServer::TcpServerData::Service::peek(Socket* client) {
    TcpServerClientThreadData peeked;
    peeked.core = core;
    core->hold(peeked.client, client, nullptr);
    int length = 0;
    if (show_peeked(&peeked))
        do
            length = core->receive_socket_get_data_len(client);
        while (length < 0 && errno == EINTR);
    show_peeked(nullptr);
    core->let_go(peeked.client);
    return length;
}

/// Lets a stop see the client that is waited for.
/// @return false after a stop, which didn't see it
bool TcpServer::TcpServerData::Service::show_peeked(TcpServerClientThreadData* peeked) {
    const std::lock_guard guard(data.mutex);
    data.peeked = peeked;
    return !data.stop_requested;
}

/// Keeps a connection that isn't served, as long as there is memory to keep it in.
void TcpServer::TcpServerData::Service::leave_open(OwnSocket client) {
    if (data.close_unserved)
        return;
    or_false([&] {
        const std::lock_guard guard(data.mutex);
        data.left_open.push_back(client.get());
        static_cast<void>(client.release()); // it is kept by its number
        return true;
    });
}

/// Takes what the peek saw, whole, with a zero behind it.
/// @return null without memory for it
TcpServer::TcpServerData::Service::Message TcpServer::TcpServerData::Service::read(Socket* client,
                                                                                   int length) {
    Message message(new (std::nothrow) unsigned char[static_cast<std::size_t>(length) + 1]());
    if (message)
        core->receive_socket(client, message.get(), length);
    return message;
}

/// Reads the message and deals with it.
/// @return whether it was the stop text
bool TcpServer::TcpServerData::Service::is_end(OwnSocket client, int length) {
    Message message = read(client.get(), length);
    if (!message)
        return false;
    // The stop text.
    if (data.is_stop_message(
            {reinterpret_cast<const char*>(message.get()), static_cast<std::size_t>(length)})) {
        LogMgr::get()->trace_debug(
            "orvex::TcpServer::run() - received stop message. Exit from tcp svr loop.");
        data.stop_requested = true;
        client.reset();
        end();
        return true;
    }
    // Any other message.
    const int size = length + 1;
    if (data.threaded_client_callback)
        serve_on_thread(std::move(client), std::move(message), size);
    else
        call_back(std::move(client), message, size);
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
    ClientEnd(ServerSocketCore& core, OwnSocket socket)
        : core(core) {
        core.hold(client, socket.release(), nullptr);
    }
    ClientEnd(const ClientEnd&) = delete;
    ClientEnd& operator=(const ClientEnd&) = delete;
    ~ClientEnd() { core.end(client); }

private:
    ServerSocketCore& core;
    HeldClient client;
};

} // namespace

void TcpServer::TcpServerData::Service::call_back(OwnSocket client, const Message& message,
                                                  int size) {
    TcpServerClientProc proc = nullptr;
    void* user_data = nullptr;
    {
        const std::lock_guard guard(data.mutex);
        proc = data.client_proc;
        user_data = data.user_data;
    }
    Socket* const shown = client.get();
    const ClientEnd end(*core, std::move(client));
    if (proc)
        proc(core.get(), shown, message.get(), size, user_data);
}

/// Takes the client over, unless there is no memory.
/// @return null: the client is still the caller's
std::unique_ptr<TcpServerClientThreadParams>
TcpServer::TcpServerData::Service::new_params(OwnSocket& client) const {
    std::unique_ptr<TcpServerClientThreadParams> params;
    const bool is_made = or_false([&] {
        params = std::make_unique<TcpServerClientThreadParams>();
        params->data = std::make_unique<TcpServerClientThreadData>();
        return true;
    });
    if (!is_made)
        return nullptr;
    params->data->core = core;
    params->socket_core = core.get();
    params->server_socket = listener;
    params->port = port;
    params->client_socket = client.release();
    core->hold(params->data->client, params->client_socket, &params->client_socket);
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

/// The thread of one message.
void* serve_message(void* argument) {
    auto* const params = static_cast<TcpServerClientThreadParams*>(argument);
    params->thread = current_thread();
    if (params->client_proc)
        params->client_proc(params->socket_core, params->client_socket, params->buffer,
                            params->buffer_size, params->user_data);
    // Not owned before: a callback that ends its thread itself must leave the listed record alone.
    end_params(OwnParams(params));
    // Nobody joins it.
    detach_thread(current_thread());
    return nullptr;
}

/// The thread of one conversation.
void* converse(void* argument) {
    auto* const params = static_cast<TcpServerClientThreadParams*>(argument);
    params->thread = current_thread();
    if (params->client_proc_v2)
        params->client_proc_v2(params->socket_core, params->client_socket, params,
                               params->user_data);
    end_client(*params);
    // The callback has given the slot back, and nobody joins this thread.
    if (params->data && params->data->ends_itself)
        const OwnParams ended(params);
    return nullptr;
}

} // namespace

/// A thread of the server's ends by returning. The two functions that hosts can call end the thread
/// at once, for which the system loads a library, if it still can.
void TcpServer::TcpServerData::Service::serve_on_thread(OwnSocket client, Message message,
                                                        int size) {
    OwnParams params = new_params(client);
    if (!params)
        return;
    {
        const std::lock_guard guard(data.mutex);
        params->client_proc = data.client_proc;
        params->user_data = data.user_data;
    }
    params->buffer = message.release();
    params->buffer_size = size;
    // From its start on the thread owns the record, and may have ended it when this one goes on.
    pthread_t thread;
    if (start_thread(thread, serve_message, params.get()))
        static_cast<void>(params.release());
    else
        end_params(std::move(params));
}

void* tcp_server_client_thread_func(void* params) {
    if (!params) {
        misuse("tcp_server_client_thread_func", "null parameters");
        return nullptr;
    }
    serve_message(params);
    end_this_thread();
}

bool TcpServer::TcpServerData::Service::run_v2() {
    while (!data.stop_requested) {
        OwnSocket client = next_client();
        if (!client)
            continue;
        if (data.stop_requested || !data.threaded_client_callback)
            leave_open(std::move(client));
        else
            serve_on_thread_v2(std::move(client));
    }
    return false;
}

/// The slot is filled under the lock: a callback may clean up before `start_thread` has returned.
void TcpServer::TcpServerData::Service::serve_on_thread_v2(OwnSocket client) {
    std::unique_lock guard(data.mutex);
    // Without a slot the connection stays open, unserved.
    const auto slot = std::find(data.client_threads.begin(), data.client_threads.end(), nullptr);
    if (slot == data.client_threads.end()) {
        guard.unlock();
        leave_open(std::move(client));
        LogMgr::get()->tracef_error("orvex::TcpServer::run() - unable to handle new TCP "
                                    "connection: max client threads (%d) reached.",
                                    static_cast<int>(data.client_threads.size()));
        return;
    }
    OwnParams params = new_params(client);
    if (!params)
        return;
    params->server = server;
    params->client_proc_v2 = data.client_proc_v2;
    params->user_data = data.user_data;
    if (start_thread(params->data->thread, converse, params.get()))
        *slot = std::move(params);
    else
        end_params(std::move(params));
}

void* tcp_server_client_thread_func_v2(void* params) {
    if (!params) {
        misuse("tcp_server_client_thread_func_v2", "null parameters");
        return nullptr;
    }
    converse(params);
    end_this_thread();
}

} // namespace orvex
