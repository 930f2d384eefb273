#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <pthread.h>

#include "log_lines.h"
#include "network_calls.h"
#include "orvex/network/socket_core.h"
#include "orvex/network/tcp_server.h"
#include "running_server.h"
#include "system_counts.h"

namespace orvex_test {

using namespace orvex;
namespace {

constexpr char full_line[] = "<*> orvex::TcpServer::run() - unable to handle new TCP connection: "
                             "max client threads (128) reached.";

/// Sends back what it receives until the peer ends the connection.
void echo(SocketCore* core, Socket* client, void*, void*) {
    char buffer[256];
    for (;;) {
        const int size = core->receive_socket(client, buffer, sizeof buffer);
        if (size <= 0)
            return;
        core->send_socket(client, buffer, size);
    }
}

class TcpServerV2Test : public QuietTest {
protected:
    TcpServerV2Test() { server.threaded_client_callback(true); }

    LogLines log;
    TcpServer server;
};

TEST_F(TcpServerV2Test, each_connection_has_a_conversation_of_its_own) {
    server.set_client_proc_v2(echo, nullptr);
    RunningServer running(server, &TcpServer::run_v2, log);
    RawClient first(running.port());
    RawClient second(running.port());
    ASSERT_TRUE(second.send("to the second"));
    EXPECT_EQ(second.receive(13), "to the second");
    ASSERT_TRUE(first.send("to the first"));
    EXPECT_EQ(first.receive(12), "to the first") << "a silent client stalls nobody";
    ASSERT_TRUE(first.send("more"));
    EXPECT_EQ(first.receive(4), "more");
}

TEST_F(TcpServerV2Test, the_stop_text_means_nothing) {
    server.set_client_proc_v2(echo, nullptr);
    RunningServer running(server, &TcpServer::run_v2, log);
    RawClient client(running.port());
    ASSERT_TRUE(client.send("STOP_ORVEX_TCP_SERVER"));
    EXPECT_EQ(client.receive(21), "STOP_ORVEX_TCP_SERVER");
    EXPECT_TRUE(server.is_running());
}

/// What a callback saw of its parameters.
struct Seen {
    TcpServer* server = nullptr;
    bool is_right = false;
    std::string listener_port;
};

TEST_F(TcpServerV2Test, the_callback_sees_the_parameters_of_its_connection) {
    Seen seen;
    seen.server = &server;
    const auto look = [](SocketCore* core, Socket* client, void* argument, void* user_data) {
        const auto* const params = static_cast<TcpServerClientThreadParams*>(argument);
        auto& note = *static_cast<Seen*>(user_data);
        note.is_right = params->server == note.server && params->socket_core == core &&
                        params->port == 0 && !params->flag &&
                        pthread_equal(params->thread, pthread_self()) &&
                        params->client_socket == client && params->client_proc == nullptr &&
                        params->client_proc_v2 != nullptr && params->user_data == user_data &&
                        params->buffer_size == 0 && params->buffer == nullptr;
        note.listener_port = std::to_string(params->server_socket->local.port);
    };
    server.set_client_proc_v2(look, &seen);
    RunningServer running(server, &TcpServer::run_v2, log);
    EXPECT_EQ(RawClient(running.port()).receive(), "");
    EXPECT_FALSE(running.stop_and_wait());
    EXPECT_TRUE(server.cleanup_client_threads()) << "its thread has ended";
    EXPECT_TRUE(seen.is_right);
    EXPECT_EQ(seen.listener_port, std::to_string(running.port()));
}

TEST_F(TcpServerV2Test, without_a_callback_connections_are_closed) {
    RunningServer running(server, &TcpServer::run_v2, log);
    EXPECT_EQ(RawClient(running.port()).receive(), "");
}

TEST_F(TcpServerV2Test, without_threads_connections_are_accepted_and_nothing_else_happens) {
    const long threads = count_threads();
    server.set_client_proc_v2(echo, nullptr);
    server.threaded_client_callback(false);
    RunningServer running(server, &TcpServer::run_v2, log);
    RawClient first(running.port());
    RawClient second(running.port());
    ASSERT_TRUE(first.send("x"));
    log.wait_for("<o> orvex::SocketCore::accept_connection() - accept client socket ", 2);
    EXPECT_TRUE(threads_become(threads + 1));
    EXPECT_TRUE(first.is_open_and_silent());
    EXPECT_TRUE(second.is_open_and_silent());
    EXPECT_FALSE(running.stop_and_wait());
    EXPECT_TRUE(first.is_open_and_silent());
}

TEST_F(TcpServerV2Test, send_stop_message_wakes_the_clients_and_the_server) {
    server.set_client_proc_v2(echo, nullptr);
    const long threads = count_threads();
    RunningServer running(server, &TcpServer::run_v2, log);
    RawClient client(running.port());
    ASSERT_TRUE(client.send("x"));
    EXPECT_EQ(client.receive(1), "x");
    EXPECT_FALSE(running.stop_and_wait());
    EXPECT_EQ(client.receive(), "") << "its thread was waiting for data";
    EXPECT_TRUE(server.is_running()) << "only a stop text changes that";
    EXPECT_TRUE(server.stop());
    EXPECT_TRUE(threads_become(threads));
    EXPECT_TRUE(server.stop());
}

TEST_F(TcpServerV2Test, the_129th_connection_is_refused_until_a_clean_up) {
    const long threads = count_threads();
    RunningServer running(server, &TcpServer::run_v2, log);
    for (int i = 0; i < 128; ++i)
        EXPECT_EQ(RawClient(running.port()).receive(), "");
    EXPECT_EQ(log.count(full_line), 0);
    EXPECT_TRUE(threads_become(threads + 1)) << "no thread is left, but each kept its slot";

    RawClient refused(running.port());
    log.wait_for(full_line);
    EXPECT_TRUE(refused.is_open_and_silent()) << "left open";
    EXPECT_TRUE(server.cleanup_client_threads());
    server.set_client_proc_v2(echo, nullptr);
    RawClient served(running.port());
    ASSERT_TRUE(served.send("x"));
    EXPECT_EQ(served.receive(1), "x");
    EXPECT_EQ(log.count(full_line), 1);
}

TEST_F(TcpServerV2Test, a_clean_up_wakes_a_thread_that_waits_for_data) {
    server.set_client_proc_v2(echo, nullptr);
    const long threads = count_threads();
    RunningServer running(server, &TcpServer::run_v2, log);
    RawClient client(running.port());
    ASSERT_TRUE(client.send("x"));
    EXPECT_EQ(client.receive(1), "x");
    EXPECT_TRUE(server.cleanup_client_threads());
    EXPECT_EQ(client.receive(), "");
    EXPECT_TRUE(threads_become(threads + 1));
}

TEST_F(TcpServerV2Test, a_callback_may_end_its_own_connection) {
    struct Row {
        const char* name;
        TcpServerClientProc_v2 proc;
    };
    const Row rows[] = {
        {"kill",
         [](SocketCore* core, Socket* client, void* argument, void*) {
             auto* const params = static_cast<TcpServerClientThreadParams*>(argument);
             EXPECT_TRUE(core->kill_socket(client));
             EXPECT_EQ(params->client_socket, nullptr);
         }},
        {"kill and say so",
         [](SocketCore* core, Socket* client, void* argument, void*) {
             EXPECT_TRUE(core->kill_socket(client));
             static_cast<TcpServerClientThreadParams*>(argument)->client_socket = nullptr;
         }},
        {"close", [](SocketCore* core, Socket* client, void*,
                     void*) { EXPECT_TRUE(core->close_socket(client)); }},
        {"close_connection", [](SocketCore* core, Socket* client, void*,
                                void*) { EXPECT_TRUE(core->close_connection(client)); }},
    };
    RunningServer running(server, &TcpServer::run_v2, log);
    const long descriptors = count_descriptors();
    for (const Row& row : rows) {
        server.set_client_proc_v2(row.proc, nullptr);
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(RawClient(running.port()).receive(), "") << row.name;
        EXPECT_TRUE(server.cleanup_client_threads());
        EXPECT_EQ(count_descriptors(), descriptors) << row.name;
    }
}

TEST_F(TcpServerV2Test, connections_end_from_both_sides_at_once) {
    const auto end = [](SocketCore* core, Socket* client, void*, void* user_data) {
        auto& turn = *static_cast<std::atomic<int>*>(user_data);
        switch (turn++ % 3) {
        case 0:
            core->close_socket(client);
            return;
        case 1:
            core->kill_socket(client);
            return;
        default:
            return;
        }
    };
    std::atomic<int> turn = 0;
    server.set_client_proc_v2(end, &turn);
    RunningServer running(server, &TcpServer::run_v2, log);
    const long descriptors = count_descriptors();
    for (int round = 0; round < 20; ++round) {
        std::vector<RawClient> clients;
        for (int i = 0; i < 8; ++i)
            clients.emplace_back(running.port());
        EXPECT_TRUE(server.cleanup_client_threads());
        RawClient(running.port()).receive(); // those before are accepted then
    }
    server.cleanup_client_threads();
    EXPECT_TRUE(eventually([&] { return count_descriptors() == descriptors; }));
}

/// A connection that a callback kept for its host.
struct Adopted {
    std::mutex mutex;
    std::condition_variable changed;
    Socket* socket = nullptr;
};

TEST_F(TcpServerV2Test, a_callback_may_take_its_connection_over) {
    const auto adopt = [](SocketCore*, Socket* client, void* argument, void* user_data) {
        auto& adopted = *static_cast<Adopted*>(user_data);
        static_cast<TcpServerClientThreadParams*>(argument)->client_socket = nullptr;
        const std::lock_guard guard(adopted.mutex);
        adopted.socket = client;
        adopted.changed.notify_all();
    };
    Adopted adopted;
    server.set_client_proc_v2(adopt, &adopted);
    RunningServer running(server, &TcpServer::run_v2, log);
    RawClient client(running.port());
    {
        std::unique_lock guard(adopted.mutex);
        adopted.changed.wait(guard, [&] { return adopted.socket != nullptr; });
    }
    EXPECT_FALSE(running.stop_and_wait());
    SocketCore core;
    EXPECT_TRUE(core.kill_socket(adopted.socket));
}

/// A connection that was taken over by a callback that goes on.
struct AdoptedEarly : Adopted {
    bool may_return = false;
};

TEST_F(TcpServerV2Test, a_connection_that_was_taken_over_is_left_alone_from_then_on) {
    const auto adopt = [](SocketCore*, Socket* client, void* argument, void* user_data) {
        auto& adopted = *static_cast<AdoptedEarly*>(user_data);
        static_cast<TcpServerClientThreadParams*>(argument)->client_socket = nullptr;
        std::unique_lock guard(adopted.mutex);
        adopted.socket = client;
        adopted.changed.notify_all();
        adopted.changed.wait(guard, [&] { return adopted.may_return; });
    };
    AdoptedEarly adopted;
    server.set_client_proc_v2(adopt, &adopted);
    RunningServer running(server, &TcpServer::run_v2, log);
    const RawClient client(running.port());
    std::unique_lock guard(adopted.mutex);
    adopted.changed.wait(guard, [&] { return adopted.socket != nullptr; });
    EXPECT_FALSE(running.stop_and_wait());
    EXPECT_TRUE(client.is_open_and_silent());
    SocketCore core;
    EXPECT_TRUE(core.kill_socket(adopted.socket));
    EXPECT_TRUE(server.send_stop_message()) << "after the record has gone";
    adopted.may_return = true;
    adopted.changed.notify_all();
    guard.unlock();
    EXPECT_TRUE(server.stop());
}

TEST_F(TcpServerV2Test, a_callback_may_stop_the_server) {
    const auto halt = [](SocketCore*, Socket*, void* argument, void*) {
        TcpServer* const own = static_cast<TcpServerClientThreadParams*>(argument)->server;
        EXPECT_TRUE(own->send_stop_message());
        EXPECT_TRUE(own->stop());
    };
    const long threads = count_threads();
    server.set_client_proc_v2(halt, nullptr);
    RunningServer running(server, &TcpServer::run_v2, log);
    EXPECT_EQ(RawClient(running.port()).receive(), "");
    EXPECT_FALSE(running.wait());
    EXPECT_TRUE(threads_become(threads));
}

TEST_F(TcpServerV2Test, two_callbacks_may_stop_the_server_at_once) {
    const auto halt = [](SocketCore*, Socket*, void* argument, void*) {
        TcpServer* const own = static_cast<TcpServerClientThreadParams*>(argument)->server;
        own->send_stop_message();
        EXPECT_TRUE(own->stop());
    };
    const long threads = count_threads();
    server.set_client_proc_v2(halt, nullptr);
    RunningServer running(server, &TcpServer::run_v2, log);
    {
        RawClient first(running.port());
        RawClient second(running.port());
        EXPECT_FALSE(running.wait());
    }
    EXPECT_TRUE(server.stop());
    EXPECT_TRUE(threads_become(threads));
}

TEST_F(TcpServerV2Test, stops_from_several_threads_are_one_stop) {
    server.set_client_proc_v2(echo, nullptr);
    const long threads = count_threads();
    RunningServer running(server, &TcpServer::run_v2, log);
    std::vector<RawClient> clients;
    for (int i = 0; i < 8; ++i)
        clients.emplace_back(running.port());
    {
        std::vector<std::thread> stoppers;
        for (int i = 0; i < 4; ++i)
            stoppers.emplace_back([&] {
                server.send_stop_message();
                EXPECT_TRUE(server.stop());
            });
        for (std::thread& stopper : stoppers)
            stopper.join();
    }
    EXPECT_FALSE(running.wait());
    EXPECT_TRUE(server.stop());
    EXPECT_TRUE(threads_become(threads));
}

TEST_F(TcpServerV2Test, a_connection_that_finds_no_thread_is_closed_and_takes_no_slot) {
    server.set_client_proc_v2(echo, nullptr);
    RunningServer running(server, &TcpServer::run_v2, log);
    const long descriptors = count_descriptors();
    {
        // Set while the server waits for a connection and looks at nothing.
        NetworkCalls calls;
        calls.no_threads = true;
        for (int i = 0; i < 130; ++i)
            EXPECT_EQ(RawClient(running.port()).receive(), "");
    }
    EXPECT_EQ(log.count(full_line), 0);
    EXPECT_TRUE(eventually([&] { return count_descriptors() == descriptors; }));
    RawClient client(running.port());
    ASSERT_TRUE(client.send("x"));
    EXPECT_EQ(client.receive(1), "x");
}

TEST_F(TcpServerV2Test, the_end_of_the_server_closes_what_was_left_open) {
    const long before = count_descriptors();
    {
        TcpServer fresh;
        RunningServer running(fresh, &TcpServer::run_v2, log);
        RawClient client(running.port());
        log.wait_for("<o> orvex::SocketCore::accept_connection() - accept client socket ");
        EXPECT_FALSE(running.stop_and_wait());
        EXPECT_TRUE(has_descriptors_after_stop(before + 4))
            << "listener, client, its connection, the one that woke it";
    }
    EXPECT_EQ(count_descriptors(), before + 1) << "the listener stays";
}

TEST_F(TcpServerV2Test, the_thread_function_serves_parameters_that_a_host_made) {
    SocketCore core;
    Socket* const listener = core.create_tcp_server_socket(0);
    RawClient client(listener->local.port);
    TcpServerClientThreadParams params;
    params.socket_core = &core;
    params.client_socket = core.accept_connection(listener);
    params.client_proc_v2 = echo;
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, nullptr, tcp_server_client_thread_func_v2, &params), 0);
    ASSERT_TRUE(client.send("x"));
    EXPECT_EQ(client.receive(1), "x");
    client.close();
    pthread_join(thread, nullptr);
    EXPECT_EQ(params.client_socket, nullptr);
    EXPECT_EQ(tcp_server_client_thread_func_v2(nullptr), nullptr);
    core.kill_socket(listener);
}

} // namespace
} // namespace orvex_test
