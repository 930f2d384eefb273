/// @file
/// The price of a control message. Goal: as many short messages a second through `TcpServer::run`
/// with an inline callback as a bare accept, recv, close loop takes in the same process, within a
/// factor of 1.3. The sender's processor time is in both.

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>

#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "bench/support/row.h"
#include "orvex/base/log_mgr.h"
#include "orvex/network/tcp_server.h"

namespace {

constexpr char message[] = "turn 30";
constexpr char last_message[] = "STOP_ORVEX_TCP_SERVER";

sockaddr_in loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// One message over a connection of its own, until the server ends it.
void send_message(int port, const char* text, std::size_t size) {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(port);
    if (::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::send(fd, text, size, MSG_NOSIGNAL) != static_cast<ssize_t>(size))
        std::abort();
    char end = 0;
    benchmark::DoNotOptimize(::recv(fd, &end, 1, 0));
    ::close(fd);
}

/// A port that was free a moment ago.
unsigned short free_port() {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    if (::bind(fd, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        std::abort();
    ::close(fd);
    return ntohs(address.sin_port);
}

/// What the callback does with a message, in both servers.
void obey(const unsigned char* text, std::atomic<long>& sum) {
    sum.fetch_add(text[0], std::memory_order_relaxed);
}

/// The engine's server, until the end of the scope.
class Server {
public:
    Server() {
        orvex::LogMgr::get()->start("", true);
        server.set_client_proc(
            [](orvex::SocketCore*, orvex::Socket*, unsigned char* text, int, void* user_data) {
                obey(text, *static_cast<std::atomic<long>*>(user_data));
            },
            &sum);
        thread = std::thread([this] {
            if (!server.run(port))
                std::abort();
        });
        while (!server.is_running())
            std::this_thread::yield();
    }
    ~Server() {
        send_message(port, last_message, sizeof last_message - 1);
        thread.join();
        server.stop();
        orvex::LogMgr::get()->stop();
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    const unsigned short port = free_port();

private:
    std::atomic<long> sum = 0;
    orvex::TcpServer server;
    std::thread thread;
};

/// Ends with the first message that isn't the usual one.
void serve_barely(int listener, std::atomic<long>& sum) {
    for (bool open = true; open;) {
        const int client = ::accept(listener, nullptr, nullptr);
        unsigned char buffer[1024] = {};
        open = ::recv(client, buffer, sizeof buffer - 1, 0) == sizeof message - 1;
        if (open)
            obey(buffer, sum);
        ::close(client);
    }
}

/// The loop alone, likewise.
class BareServer {
public:
    BareServer()
        : listener(::socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address = loopback(0);
        socklen_t size = sizeof address;
        if (::bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            ::listen(listener, 10) != 0 ||
            ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            std::abort();
        port = ntohs(address.sin_port);
        thread = std::thread([this] { serve_barely(listener, sum); });
    }
    ~BareServer() {
        send_message(port, last_message, sizeof last_message - 1);
        thread.join();
        ::close(listener);
    }
    BareServer(const BareServer&) = delete;
    BareServer& operator=(const BareServer&) = delete;

    unsigned short port = 0;

private:
    std::atomic<long> sum = 0;
    int listener;
    std::thread thread;
};

void short_messages(benchmark::State& state) {
    constexpr int num_messages = 100;
    const Server ours;
    const BareServer bare;
    const auto send_to = [](unsigned short port) {
        return [port] {
            for (int i = 0; i < num_messages; ++i)
                send_message(port, message, sizeof message - 1);
        };
    };
    orvex_bench::take_turns(state, {"accept, recv, close", 1.3}, send_to(ours.port),
                            send_to(bare.port), num_messages);
}

} // namespace

BENCHMARK(short_messages)->UseManualTime()->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
