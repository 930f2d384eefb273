// Plays bytes as what clients do on a server's port, and what its host does meanwhile. Whatever
// they do, the server can be stopped, and leaves neither descriptors nor threads behind.

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <orvex/base/log.h>
#include <orvex/kernel/core.h>
#include <orvex/network/socket_core.h>
#include <orvex/network/tcp_server.h>

#include "fuzz/support/bytes.h"
#include "fuzz/support/target.h"
#include "tests/faults/clients.h"

namespace {

using namespace orvex;
using orvex_fuzz::Bytes;

void check(bool state, const char* what) {
    if (state)
        return;
    std::fprintf(stderr, "server: %s\n", what);
    std::abort();
}

/// Waits for what has to come, at most as long as nobody waits for a host.
template<class Condition>
void wait_for(const char* what, Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(100);
    while (!condition()) {
        check(std::chrono::steady_clock::now() < end, what);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

long entries_of(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder),
                         std::filesystem::directory_iterator());
}

/// What callbacks do, and what they share with the host.
struct Host {
    TcpServer* server = nullptr;
    std::atomic<unsigned int> habit = 0;
    std::mutex mutex;
    std::vector<Socket*> taken; ///< connections that a callback took over
    std::atomic<unsigned int> calls_ended = 0;
};

/// The last that a callback does with its host. Who has read the number afterwards may end the
/// host.
class CallEnd {
public:
    explicit CallEnd(Host& host)
        : host(host) {}
    CallEnd(const CallEnd&) = delete;
    CallEnd& operator=(const CallEnd&) = delete;
    ~CallEnd() { ++host.calls_ended; }

private:
    Host& host;
};

void obey(SocketCore* core, Socket* client, unsigned char* message, int size, void* user_data) {
    auto& host = *static_cast<Host*>(user_data);
    const CallEnd end(host);
    check(message[size - 1] == 0, "a message without a zero behind it");
    switch (host.habit % 5) {
    case 0:
        core->send_socket(client, message, size - 1);
        break;
    case 1:
        core->kill_socket(client);
        break;
    case 2:
        core->shutdown_socket(client);
        break;
    case 3:
        host.server->send_stop_message();
        break;
    default:
        break;
    }
}

void converse(SocketCore* core, Socket* client, void* params, void* user_data) {
    auto& host = *static_cast<Host*>(user_data);
    const CallEnd end(host);
    auto& own = *static_cast<TcpServerClientThreadParams*>(params);
    unsigned char bytes[64];
    switch (host.habit % 6) {
    case 0: {
        const int count = core->receive_socket(client, bytes, sizeof bytes);
        core->send_socket(client, bytes, count);
        break;
    }
    case 1:
        core->kill_socket(client);
        break;
    case 2: {
        const std::lock_guard guard(host.mutex);
        host.taken.push_back(client);
        own.client_socket = nullptr;
        break;
    }
    case 3:
        host.server->cleanup_client_threads();
        break;
    case 4:
        host.server->send_stop_message();
        break;
    default:
        break;
    }
}

/// A client that owes nothing to the engine, and never waits.
class Client {
public:
    explicit Client(int port)
        : fd(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        static_cast<void>(::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address));
    }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    ~Client() { ::close(fd); }

    void send(const std::string& text) {
        static_cast<void>(::send(fd, text.data(), text.size(), MSG_NOSIGNAL));
    }
    void receive() {
        char bytes[256];
        static_cast<void>(::recv(fd, bytes, sizeof bytes, 0));
    }
    void end_sending() { ::shutdown(fd, SHUT_WR); }
    void reset_at_end() {
        const linger at_once{1, 0};
        ::setsockopt(fd, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    }

private:
    int fd;
};

/// A server, its host and its clients.
class World {
public:
    explicit World(Bytes& in);
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    void start();
    void stop();
    Client* client(Bytes& in) {
        return clients.empty() ? nullptr : clients[in.byte() % clients.size()].get();
    }
    void connect(unsigned int count) {
        for (; count > 0 && clients.size() < 40; --count)
            clients.push_back(std::make_unique<Client>(port.number()));
    }
    void drop(Bytes& in, bool by_reset) {
        if (clients.empty())
            return;
        const auto which =
            clients.begin() + static_cast<std::ptrdiff_t>(in.byte() % clients.size());
        if (by_reset)
            (*which)->reset_at_end();
        clients.erase(which);
    }
    void end_taken();
    /// Few times, as a full queue makes each wait a while.
    void tell_to_stop() {
        if (++times_told < 4)
            server.send_stop_message();
    }

    Host host;
    TcpServer server;

private:
    long threads_before;
    orvex_test::ServedPort port;
    orvex_test::ServedPort::Style style;
    std::vector<std::unique_ptr<Client>> clients;
    int times_told = 0;
    bool runs = false;
};

World::World(Bytes& in)
    : threads_before(entries_of("/proc/self/task"))
    , style(in.flag() ? &TcpServer::run_v2 : &TcpServer::run) {
    host.server = &server;
    host.habit = in.byte();
    server.set_listen_address("127.0.0.1");
    server.set_client_proc(&obey, &host);
    server.set_client_proc_v2(&converse, &host);
    server.threaded_client_callback(in.flag());
    start();
}

World::~World() {
    clients.clear();
    stop();
    server.stop();
    // Threads of messages are nobody's to wait for, but what they call is the host's to keep.
    wait_for("a thread that doesn't end",
             [&] { return entries_of("/proc/self/task") <= threads_before; });
    static_cast<void>(host.calls_ended.load());
    end_taken();
}

void World::start() {
    if (runs)
        return;
    runs = port.start(server, style);
    check(runs, "no port to be had");
}

/// A server is told to stop until it hears it: one that was stopped before has no core to hear by.
void World::stop() {
    if (!runs)
        return;
    runs = false;
    while (server.is_running() && !server.send_stop_message())
        server.init();
    port.wait();
}

void World::end_taken() {
    const std::lock_guard guard(host.mutex);
    SocketCore core;
    for (Socket* const socket : host.taken)
        core.kill_socket(socket);
    host.taken.clear();
}

struct Operation {
    const char* name;
    void (*play)(World& world, Bytes& in);
};

constexpr const char* stop_texts[] = {nullptr, "", "S", "STOP_ORVEX_TCP_SERVER"};

std::string draw_message(Bytes& in) {
    std::string text = in.byte() < 16 ? "STOP_ORVEX_TCP_SERVER" : "";
    if (in.byte() == 255)
        text.append(2000, 'x');
    for (unsigned int count = in.below(20); count > 0; --count)
        text += static_cast<char>(in.byte());
    return text;
}

constexpr Operation rows[] = {
    {"connect", [](World& world, Bytes&) { world.connect(1); }},
    {"connect many", [](World& world, Bytes& in) { world.connect(in.below(16)); }},
    {"send",
     [](World& world, Bytes& in) {
         if (Client* const client = world.client(in))
             client->send(draw_message(in));
     }},
    {"connect and send",
     [](World& world, Bytes& in) {
         world.connect(1);
         if (Client* const client = world.client(in))
             client->send(draw_message(in));
     }},
    {"receive",
     [](World& world, Bytes& in) {
         if (Client* const client = world.client(in))
             client->receive();
     }},
    {"end sending",
     [](World& world, Bytes& in) {
         if (Client* const client = world.client(in))
             client->end_sending();
     }},
    {"close", [](World& world, Bytes& in) { world.drop(in, false); }},
    {"reset", [](World& world, Bytes& in) { world.drop(in, true); }},
    {"habit", [](World& world, Bytes& in) { world.host.habit = in.byte(); }},
    {"yield", [](World&, Bytes&) { std::this_thread::yield(); }},
    {"stop and start",
     [](World& world, Bytes&) {
         world.stop();
         world.start();
     }},
    {"stop", [](World& world, Bytes&) { world.stop(); }},
    {"start", [](World& world, Bytes&) { world.start(); }},
    {"TcpServer::stop", [](World& world, Bytes&) { world.server.stop(); }},
    {"TcpServer::send_stop_message", [](World& world, Bytes&) { world.tell_to_stop(); }},
    {"TcpServer::cleanup_client_threads",
     [](World& world, Bytes&) { world.server.cleanup_client_threads(); }},
    {"TcpServer::init", [](World& world, Bytes&) { world.server.init(); }},
    {"TcpServer::close_unserved_connections",
     [](World& world, Bytes& in) { world.server.close_unserved_connections(in.flag()); }},
    {"TcpServer::threaded_client_callback",
     [](World& world, Bytes& in) { world.server.threaded_client_callback(in.flag()); }},
    {"TcpServer::set_stop_message",
     [](World& world, Bytes& in) {
         world.server.set_stop_message(stop_texts[in.byte() % std::size(stop_texts)]);
     }},
    {"TcpServer::set_listen_address",
     [](World& world, Bytes& in) { world.server.set_listen_address(in.text()); }},
    {"TcpServer::set_client_proc",
     [](World& world, Bytes& in) {
         const bool none = in.flag();
         world.server.set_client_proc(none ? nullptr : &obey, &world.host);
         world.server.set_client_proc_v2(none ? nullptr : &converse, &world.host);
     }},
    {"take what was taken over", [](World& world, Bytes&) { world.end_taken(); }},
};

void play(Bytes& in) {
    constexpr int most_operations = 24;
    static const bool told = std::getenv("ORVEX_FUZZ_TRACE");
    World world(in);
    for (int i = 0; i < most_operations && !in.empty(); ++i) {
        const Operation& operation = rows[in.byte() % std::size(rows)];
        if (told)
            std::fprintf(stderr, "%s\n", operation.name);
        operation.play(world, in);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // With the first thread a sanitizer starts one of its own, which stays.
    static const bool had_a_thread = (std::thread([] {}).join(), true);
    static_cast<void>(had_a_thread);
    // The log tells the port.
    static const bool has_log = core::log_start("");
    core::log_enable(has_log);
    const long descriptors = entries_of("/proc/self/fd");
    Bytes in(data, size);
    play(in);
    check(entries_of("/proc/self/fd") == descriptors, "a descriptor that stays open");
    return 0;
}
