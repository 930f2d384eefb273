#pragma once

/// @file
/// TcpServer: remote control of a running host by short messages.

#include <cstdint>
#include <memory>
#include <sys/types.h>

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// Handles one message under `TcpServer::run`.
/// @param core       the server's; valid during the call
/// @param client     the connection, which ends when the call returns. It may be killed through
///                   `core` before.
/// @param message    the message with a zero behind it; valid during the call
/// @param size       bytes of the message plus 1
/// @param user_data  as set beside the callback
using TcpServerClientProc = void (*)(SocketCore* core, Socket* client, unsigned char* message,
                                     int size, void* user_data);

/// Holds one conversation under `TcpServer::run_v2`, on a thread of its own.
/// @param core       the server's; valid during the call
/// @param client     the connection, of which nothing was read. It ends when the call returns,
///                   unless the callback kills it through `core` before, or takes it over by
///                   setting `client_socket` of its parameters to null. From then on it is the
///                   host's: the server neither shuts it down nor closes it. The field has no lock:
///                   no other thread stops the server or cleans up while it is written.
/// @param params     the `TcpServerClientThreadParams` of this connection
/// @param user_data  as set beside the callback
using TcpServerClientProc_v2 = void (*)(SocketCore* core, Socket* client, void* params,
                                        void* user_data);

struct TcpServerClientThreadData;

/// What a client thread of a `TcpServer` works on. The server makes it; under `run` the thread ends
/// it, under `run_v2` it stays in its slot until `TcpServer::cleanup_client_threads`.
struct ORVEX_API TcpServerClientThreadParams {
    TcpServer* server = nullptr;       ///< null under `run`
    SocketCore* socket_core = nullptr; ///< the server's
    Socket* server_socket = nullptr;   ///< the listener
    std::uint16_t port = 0;            ///< as given to `run` or `run_v2`
    bool flag = false;                 ///< for the host's use; nothing here reads or sets it
    pthread_t thread{};                ///< the thread that runs the callback
    Socket* client_socket = nullptr;   ///< null once killed
    TcpServerClientProc client_proc = nullptr;       ///< null under `run_v2`
    TcpServerClientProc_v2 client_proc_v2 = nullptr; ///< null under `run`
    void* user_data = nullptr;                       ///< as set beside the callback
    std::int32_t buffer_size = 0;   ///< bytes of the message plus 1; 0 under `run_v2`
    std::uint8_t* buffer = nullptr; ///< the message; null under `run_v2`

    std::unique_ptr<TcpServerClientThreadData> data; ///< the server's own

    /// All fields as written at each.
    TcpServerClientThreadParams();
    TcpServerClientThreadParams(const TcpServerClientThreadParams&) = delete;
    TcpServerClientThreadParams& operator=(const TcpServerClientThreadParams&) = delete;
    ~TcpServerClientThreadParams();
};

/// A small blocking TCP server: an external tool connects and sends a short text, and the host's
/// callback handles it. Meant for occasional control messages, not for throughput.
///
/// The host makes it and destroys it, once `run` or `run_v2` has returned. Both block: the host
/// gives them a thread of its own. There are two styles of serving:
///
/// - `run` reads one message of at most 1023 bytes on its own thread and then calls the callback,
///   inline or on a new thread without limit of their number. A message that begins with the stop
///   text ends the server. One client is read at a time: one that connects and stays silent stalls
///   the others.
/// - `run_v2` hands each connection, unread, to a thread in one of 128 slots. The slots are given
///   back by `cleanup_client_threads` only: 128 is the number of connections between two
///   clean-ups, and then nobody is served any more until the next. A host cleans up regularly,
///   once or twice a second from any thread; a clean-up ends the conversations that go on. The stop
///   text means nothing here.
///
/// The port is open to everyone: unless `set_listen_address` says otherwise, the server listens on
/// every address of the machine, and it asks nobody who they are. Whoever reaches the port can send
/// messages, the stop text among them, or keep others out by silence. A host that is controlled
/// from its own machine listens on "127.0.0.1".
///
/// A process that has no descriptor or no memory for a client leaves it in the queue and tries
/// again, with one error line until it succeeds. A connection that closes without a byte keeps its
/// descriptor until the end of the server, see `close_unserved_connections`.
///
/// A server is used once per process: after `send_stop_message` its port stays taken until the
/// process ends.
///
/// Any thread may call `send_stop_message`, `stop`, `is_running` and the setters. Stopping doesn't
/// wait for a callback, and ends none: one that never returns keeps `run` on its thread. Callbacks
/// run on the server's thread or on client threads: what belongs to the host's render thread is
/// handed over to it by a queue.
///
/// @code
/// void obey(orvex::SocketCore*, orvex::Socket*, unsigned char* text, int, void* queue);
///
/// orvex::TcpServer server;
/// server.set_client_proc(obey, &queue);
/// std::thread thread([&] { server.run(9600); });
/// // ... frames ...
/// server.send_stop_message();
/// thread.join();
/// server.stop();
/// @endcode
class ORVEX_API TcpServer {
public:
    /// Takes the next id; listens to nothing yet.
    TcpServer();
    TcpServer(const TcpServer&) = delete;
    TcpServer& operator=(const TcpServer&) = delete;
    /// Calls `stop` and closes the connections that were left open without being served. A
    /// listener that is open stays open.
    ~TcpServer();

    /// The id of this server, of those that `GenId` gives out.
    int getid() const;

    /// True from the moment the server listens. A stop text ends it; `send_stop_message` doesn't.
    bool is_running() const;

    /// Makes the `SocketCore` unless there is one, and starts it. `run` and `run_v2` do it as well.
    /// @return false, with an error line, if it doesn't start
    bool init();

    /// Serves messages until it is stopped; see the class.
    ///
    /// A connection that closes without having sent anything is left open, until the end of the
    /// server, unless `close_unserved_connections` is on. Throws nothing of its own; what a
    /// callback throws passes through.
    /// @param port  0 to 65,535; 0 lets the system choose, and the log shows its choice with the
    ///              line of `SocketCore::listen_socket`
    /// @return true after a stop text, when the listener is closed; false after
    ///         `send_stop_message`, when it stays open, and with an error line if the port can't be
    ///         had, or the memory for it
    bool run(unsigned short port);

    /// Hands out connections until it is stopped; see the class. It serves only with
    /// `threaded_client_callback(true)`: else connections are accepted, and left open until the end
    /// of the server. So are those that find no free slot, with an error line.
    /// @param port  as for `run`
    /// @return false, after `send_stop_message`, and with an error line if the port can't be had
    bool run_v2(unsigned short port);

    /// `cleanup_client_threads`, and the end of the `SocketCore`. The listener stays open. Client
    /// threads of `run` are not waited for and keep the core alive. It may be called twice, and
    /// from any thread. It comes after `send_stop_message`, which is false without a core: a server
    /// that is at work when it is called serves on, until a stop text, or until `init` has made
    /// another core for `send_stop_message`.
    /// @return true
    bool stop();

    /// Wakes the client threads of `run_v2` by ending their connections, waits for them and gives
    /// their slots back. Called when `run_v2` has returned. A callback may call it: its own thread
    /// isn't waited for and ends by itself.
    /// @return false without a `SocketCore`
    bool cleanup_client_threads();

    /// Sets the callback of `run` for the messages to come. Null: messages are read and dropped.
    /// @param user_data  handed to the callback; one for both kinds of callback
    void set_client_proc(TcpServerClientProc proc, void* user_data);

    /// Sets the callback of `run_v2` for the connections to come. Null: connections are closed at
    /// once.
    /// @param user_data  handed to the callback; one for both kinds of callback
    void set_client_proc_v2(TcpServerClientProc_v2 proc, void* user_data);

    /// Whether `run` calls back on a new thread for each message, and `run_v2` serves at all. False
    /// at first.
    void threaded_client_callback(bool state);

    /// Whether connections that are not served are closed at once: one that closes without a byte,
    /// one that finds no slot, and each under `run_v2` without threads. False at first: they are
    /// left open until the end of the server, and each keeps a descriptor.
    void close_unserved_connections(bool state);

    /// Sets the address that the next `run` or `run_v2` listens on.
    /// @param address  a dotted IPv4 address of this machine, such as "127.0.0.1", which other
    ///                 machines can't reach; null: every address, as at first
    /// @return false for any other text, which changes nothing
    bool set_listen_address(const char* address);

    /// Sets the text that ends `run`: any message that begins with it. An empty text lets any
    /// message end it.
    /// @param text  cut at 127 bytes; null is ignored
    void set_stop_message(const char* text);

    /// The stop text, "STOP_ORVEX_TCP_SERVER" at first. Valid until the next `set_stop_message`.
    const char* get_stop_message() const;

    /// Ends the connections of `run_v2`'s client threads and lets `run` or `run_v2` return false: a
    /// connection of its own wakes them, and a client that is waited for is shut down. No bytes are
    /// sent. Takes less than a second, from any thread, a callback's included.
    /// @return false without a `SocketCore`, without a listener, and if there is no socket, or no
    ///         memory for one, to connect with, which changes nothing else: it can be tried again.
    ///         A server that has no descriptor for its next client needs none for this either
    bool send_stop_message();

private:
    struct TcpServerData;
    std::unique_ptr<TcpServerData> data;
};

/// The thread of one message under `TcpServer::run`: calls back, ends the connection and the
/// record, and with them the calling thread. Null returns at once.
/// @param params  a `TcpServerClientThreadParams*`, taken over
ORVEX_API void* tcp_server_client_thread_func(void* params);

/// The thread of one connection under `TcpServer::run_v2`: calls back, ends the connection, and
/// with it the calling thread. Null returns at once.
/// @param params  a `TcpServerClientThreadParams*`
ORVEX_API void* tcp_server_client_thread_func_v2(void* params);

} // namespace orvex
