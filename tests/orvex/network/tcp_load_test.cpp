/// @file
/// Many clients, and clients that behave badly: the server goes on, and nothing is lost beyond the
/// connections that it leaves open on purpose.

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "log_lines.h"
#include "orvex/network/socket_core.h"
#include "orvex/network/tcp_server.h"
#include "running_server.h"
#include "system_counts.h"

namespace orvex_test {

using namespace orvex;
namespace {

void answer(SocketCore* core, Socket* client, unsigned char* message, int size, void* user_data) {
    ++*static_cast<std::atomic<int>*>(user_data);
    core->send_socket(client, message, size - 1);
}

class TcpLoadTest : public QuietTest {
protected:
    /// Serves one message a connection while `load` runs, stops by the stop text, and looks at what
    /// is left then.
    template<class Load>
    void serve_and_stop(bool on_threads, Load load, long descriptors_left) {
        server.set_client_proc(answer, &calls);
        server.threaded_client_callback(on_threads);
        const long threads = count_threads();
        const long descriptors = count_descriptors();
        RunningServer running(server, &TcpServer::run, log);
        load(running);
        const std::string farewell = running.ask("STOP_ORVEX_TCP_SERVER");
        if (!on_threads)
            EXPECT_EQ(farewell, "");
        EXPECT_TRUE(running.wait());
        EXPECT_TRUE(threads_become(threads));
        EXPECT_EQ(count_descriptors(), descriptors + descriptors_left);
    }

    const DescriptorLimit many{8192};
    LogLines log;
    std::atomic<int> calls = 0;
    TcpServer server;
};

void ask_10000_times(const RunningServer& running) {
    for (int i = 0; i < 10000; ++i) {
        const std::string message = std::to_string(i);
        ASSERT_EQ(running.ask(message), message);
    }
}

TEST_F(TcpLoadTest, serves_10000_connections_one_after_the_other) {
    serve_and_stop(false, ask_10000_times, 0);
    EXPECT_EQ(calls, 10000);
}

TEST_F(TcpLoadTest, serves_10000_connections_on_threads_of_their_own) {
    serve_and_stop(true, ask_10000_times, 0);
    EXPECT_EQ(calls, 10000);
}

/// Echoes one message, with all other conversations still open.
void converse(SocketCore* core, Socket* client, void*, void* user_data) {
    ++*static_cast<std::atomic<int>*>(user_data);
    char buffer[64];
    int size = 0;
    while ((size = core->receive_socket(client, buffer, sizeof buffer)) > 0)
        core->send_socket(client, buffer, size);
}

TEST_F(TcpLoadTest, holds_128_conversations_at_once_and_refuses_the_129th) {
    constexpr char full_line[] = "<*> orvex::TcpServer::run() - unable to handle new TCP "
                                 "connection: max client threads (128) reached.";
    server.set_client_proc_v2(converse, &calls);
    server.threaded_client_callback(true);
    const long threads = count_threads();
    const long descriptors = count_descriptors();
    RunningServer running(server, &TcpServer::run_v2, log);
    for (int round = 1; round <= 3; ++round) {
        std::vector<RawClient> clients;
        for (int i = 0; i < 128; ++i) {
            clients.emplace_back(running.port());
            ASSERT_TRUE(clients.back().send("x"));
            ASSERT_EQ(clients.back().receive(1), "x");
        }
        for (RawClient& client : clients)
            ASSERT_TRUE(client.send("all here"));
        for (RawClient& client : clients)
            ASSERT_EQ(client.receive(8), "all here");
        EXPECT_TRUE(threads_become(threads + 1 + 128));
        EXPECT_EQ(log.count(full_line), round - 1);

        RawClient refused(running.port());
        log.wait_for(full_line, round);
        EXPECT_TRUE(refused.is_open_and_silent());
        EXPECT_TRUE(server.cleanup_client_threads());
        EXPECT_TRUE(threads_become(threads + 1));
    }
    EXPECT_EQ(calls, 3 * 128);
    EXPECT_FALSE(running.stop_and_wait());
    EXPECT_TRUE(has_descriptors_after_stop(descriptors + 5))
        << "listener, the refused of each round, the one that woke it";
}

/// What a broken client does. Half of the kinds come without data, and are left open.
void break_off(int kind, int port) {
    RawClient client(port);
    switch (kind) {
    case 0: // silent
        return;
    case 1: // half a message
        client.send("STOP_ORVEX_");
        return;
    case 2: // reset
        client.reset();
        return;
    default: // flood
        client.send(std::string(1u << 20, 'x'));
        return;
    }
}

constexpr int broken_clients = 1000;

/// The system lets few connections wait for the server: a good client now and then gives it time to
/// take them.
void break_off_all(const RunningServer& running) {
    for (int i = 0; i < broken_clients; ++i) {
        break_off(i % 4, running.port());
        if (i % 4 == 3)
            ASSERT_EQ(running.ask("and a good one"), "and a good one");
    }
}

constexpr int good_clients = broken_clients / 4;

// What is left open are those that never sent anything.
TEST_F(TcpLoadTest, goes_on_after_1000_broken_clients) {
    serve_and_stop(false, break_off_all, broken_clients / 2);
    EXPECT_EQ(calls, broken_clients / 2 + good_clients);
}

TEST_F(TcpLoadTest, goes_on_after_1000_broken_clients_on_threads) {
    serve_and_stop(true, break_off_all, broken_clients / 2);
    EXPECT_EQ(calls, broken_clients / 2 + good_clients);
}

TEST_F(TcpLoadTest, goes_on_after_1000_broken_conversations) {
    server.set_client_proc_v2(converse, &calls);
    server.threaded_client_callback(true);
    const long threads = count_threads();
    const long descriptors = count_descriptors();
    RunningServer running(server, &TcpServer::run_v2, log);
    for (int i = 0; i < broken_clients; ++i) {
        break_off(i % 4, running.port());
        if (i % 8 == 7)
            ASSERT_TRUE(eventually([&] { return calls == i + 1; }));
        if (i % 80 == 79)
            EXPECT_TRUE(server.cleanup_client_threads());
    }
    RawClient client(running.port());
    ASSERT_TRUE(client.send("still here?"));
    EXPECT_EQ(client.receive(11), "still here?");
    EXPECT_FALSE(running.stop_and_wait());
    EXPECT_TRUE(server.stop());
    EXPECT_TRUE(threads_become(threads));
    EXPECT_TRUE(has_descriptors_after_stop(descriptors + 3))
        << "listener, client, and the connection that woke it";
}

TEST_F(TcpLoadTest, serves_a_host_with_more_than_1024_open_descriptors) {
    std::vector<int> files;
    while (files.empty() || files.back() < 1100)
        files.push_back(::dup(0));
    server.set_client_proc(answer, &calls);
    {
        RunningServer running(server, &TcpServer::run, log);
        EXPECT_EQ(running.ask("high up"), "high up");
        EXPECT_FALSE(running.stop_and_wait());
    }
    SocketCore core;
    Socket* const socket = core.create_udp_server_socket(0);
    ASSERT_NE(socket, nullptr);
    EXPECT_GT(socket->fd, 1024);
    char byte = 0;
    EXPECT_EQ(core.send_udp(socket, "127.0.0.1", socket->local.port, "x", 1), 1);
    EXPECT_EQ(core.receive_udp(socket, nullptr, &byte, 1), 1);
    core.kill_socket(socket);
    for (const int file : files)
        ::close(file);
}

} // namespace
} // namespace orvex_test
