/// @file
/// What must not keep a server from being stopped, nor who stops it: silent clients, a full queue,
/// no descriptors, signals.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <unistd.h>

#include "log_lines.h"
#include "network_calls.h"
#include "orvex/network/socket_core.h"
#include "orvex/network/tcp_server.h"
#include "running_server.h"
#include "system_counts.h"

namespace orvex_test {

using namespace orvex;
namespace {

constexpr char accepted[] = "<o> orvex::SocketCore::accept_connection() - accept client socket ";
std::string not_accepted(int port) {
    return "<*> orvex::SocketCore::accept_connection() - accept client on port [" +
           std::to_string(port) + "] failed.";
}

/// Clients that connect, as far as the server lets them, and say nothing.
std::vector<RawClient> silent_clients(int port, int number) {
    std::vector<RawClient> clients;
    for (int i = 0; i < number; ++i)
        clients.emplace_back(port, SOCK_NONBLOCK);
    return clients;
}

class TcpServerStopTest : public QuietTest {
protected:
    LogLines log;
    TcpServer server;
};

TEST_F(TcpServerStopTest, a_silent_client_does_not_keep_run) {
    RunningServer running(server, &TcpServer::run, log);
    const RawClient silent(running.port());
    log.wait_for(accepted);
    EXPECT_FALSE(running.stop_and_wait());
    EXPECT_TRUE(server.is_running()) << "only a stop text changes that";
    EXPECT_TRUE(RawClient(running.port()).connected()) << "the listener stays open";
}

/// The shortest of a few tries: a loaded machine may hold one up, not all of them.
template<class Try>
std::chrono::duration<double> shortest_of(Try attempt) {
    constexpr int tries = 5;
    auto shortest = std::chrono::duration<double>::max();
    for (int i = 0; i < tries && shortest > std::chrono::seconds(1); ++i)
        shortest = std::min(shortest, attempt());
    return shortest;
}

template<class Work>
std::chrono::duration<double> time_of(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - begin;
}

TEST_F(TcpServerStopTest, two_hundred_silent_clients_keep_it_for_less_than_a_second) {
    for (const RunningServer::Style style : {&TcpServer::run, &TcpServer::run_v2}) {
        const auto time = shortest_of([&] {
            log.take_all();
            TcpServer fresh;
            RunningServer running(fresh, style, log);
            const auto clients = silent_clients(running.port(), 200);
            log.wait_for(accepted);
            return time_of([&] { EXPECT_FALSE(running.stop_and_wait()); });
        });
        EXPECT_LT(time, std::chrono::seconds(1));
    }
}

/// A callback that waits until the queue behind its client is full, and then stops the server.
struct Halt {
    TcpServer& server;
    std::promise<void> entered;
    std::promise<void> queue_is_full;
    std::chrono::duration<double> time{};

    static void obey(SocketCore*, Socket*, unsigned char*, int, void* user_data) {
        auto& halt = *static_cast<Halt*>(user_data);
        halt.entered.set_value();
        halt.queue_is_full.get_future().wait();
        halt.time = time_of([&] { EXPECT_TRUE(halt.server.send_stop_message()); });
    }
};

TEST_F(TcpServerStopTest, a_callback_stops_it_within_a_second_though_nobody_drains_the_queue) {
    const auto time = shortest_of([&] {
        log.take_all();
        TcpServer fresh;
        Halt halt{fresh, {}, {}, {}};
        fresh.set_client_proc(Halt::obey, &halt);
        RunningServer running(fresh, &TcpServer::run, log);
        RawClient client(running.port());
        client.send("halt");
        halt.entered.get_future().wait();
        const auto clients = silent_clients(running.port(), 30);
        halt.queue_is_full.set_value();
        EXPECT_FALSE(running.wait());
        return halt.time;
    });
    EXPECT_LT(time, std::chrono::seconds(1));
}

/// Runs a server whose process has no descriptor for the next client, and lets `work` look at it.
template<class Work>
void starve(LogLines& log, TcpServer& server, RunningServer::Style style, Work work) {
    log.take_all();
    RunningServer running(server, style, log);
    RawClient client = RawClient::apart();
    const DescriptorLimit none(3);
    client.connect(running.port());
    log.wait_for(not_accepted(running.port()));
    work(running);
}

TEST_F(TcpServerStopTest, without_descriptors_it_waits_and_says_so_once) {
    constexpr std::chrono::milliseconds while_looking(300);
    NetworkCalls calls;
    starve(log, server, &TcpServer::run, [&](RunningServer& running) {
        const int before = calls.accepts;
        const auto time = time_of([&] { std::this_thread::sleep_for(while_looking); });
        EXPECT_LE(calls.accepts - before, time / std::chrono::milliseconds(10) + 2);
        EXPECT_EQ(log.count(not_accepted(running.port())), 1);
    });
}

TEST_F(TcpServerStopTest, is_stopped_without_descriptors) {
    for (const RunningServer::Style style : {&TcpServer::run, &TcpServer::run_v2}) {
        TcpServer fresh;
        starve(log, fresh, style, [](RunningServer& running) {
            EXPECT_FALSE(running.stop_and_wait()); // which asks for true of the stop
        });
    }
}

TEST_F(TcpServerStopTest, is_stopped_from_the_moment_that_it_has_no_descriptors) {
    NetworkCalls calls;
    std::promise<bool> stopped;
    std::atomic<bool> is_first = true;
    NetworkCalls::at_refused_accept = [&] {
        if (is_first.exchange(false))
            stopped.set_value(server.send_stop_message());
    };
    RunningServer running(server, &TcpServer::run, log);
    RawClient client = RawClient::apart();
    {
        const DescriptorLimit none(3);
        client.connect(running.port());
        EXPECT_TRUE(stopped.get_future().get());
    }
    server.send_stop_message(); // else one that was refused is waited for
    EXPECT_FALSE(running.wait());
}

TEST_F(TcpServerStopTest, serves_again_once_there_are_descriptors) {
    RunningServer running(server, &TcpServer::run, log);
    for (int time = 1; time <= 2; ++time) {
        RawClient client = RawClient::apart();
        {
            const DescriptorLimit none(3);
            client.connect(running.port());
            log.wait_for(not_accepted(running.port()), time);
        }
        ASSERT_TRUE(client.send("x"));
        EXPECT_EQ(client.receive(), "");
    }
    EXPECT_EQ(log.count(not_accepted(running.port())), 2) << "a line for each time";
}

TEST_F(TcpServerStopTest, many_that_close_without_a_word_leave_it_able_to_stop) {
    const DescriptorLimit few(static_cast<rlim_t>(count_descriptors() + 40));
    RunningServer running(server, &TcpServer::run, log);
    // Each keeps a descriptor of the server's until there is none left.
    for (int spare = 0; spare >= 0;) {
        RawClient(running.port(), SOCK_NONBLOCK).close();
        spare = ::dup(0);
        ::close(spare);
    }
    EXPECT_FALSE(running.stop_and_wait());
}

TEST_F(TcpServerStopTest, connections_that_are_not_served_are_closed_where_a_host_wants_that) {
    server.close_unserved_connections(true);
    RunningServer running(server, &TcpServer::run, log);
    const long before = count_descriptors();
    for (int i = 0; i < 20; ++i) {
        RawClient client(running.port());
        client.end_sending();
        EXPECT_EQ(client.receive(), "") << "the server has closed its end";
        client.close();
    }
    EXPECT_TRUE(eventually([&] { return count_descriptors() == before; }));
    EXPECT_EQ(running.ask("still there"), "");
    EXPECT_FALSE(running.stop_and_wait());
}

TEST_F(TcpServerStopTest, conversations_that_find_no_slot_are_closed_where_a_host_wants_that) {
    server.close_unserved_connections(true);
    RunningServer running(server, &TcpServer::run_v2, log);
    const long before = count_descriptors();
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(RawClient(running.port()).receive(), "") << "there are no threads";
    EXPECT_TRUE(eventually([&] { return count_descriptors() == before; }));
}

TEST_F(TcpServerStopTest, a_signal_while_it_waits_for_a_message_loses_nothing) {
    NetworkCalls calls;
    const auto echo = [](SocketCore* core, Socket* client, unsigned char* message, int size,
                         void*) { core->send_socket(client, message, size - 1); };
    server.set_client_proc(echo, nullptr);
    RunningServer running(server, &TcpServer::run, log);
    calls.interrupted_peeks = 3;
    EXPECT_EQ(running.ask("abc"), "abc");
    EXPECT_EQ(calls.interrupted_peeks, 0);
}

TEST_F(TcpServerStopTest, its_threads_end_by_returning) {
    NetworkCalls calls;
    const long threads = count_threads();
    for (const RunningServer::Style style : {&TcpServer::run, &TcpServer::run_v2}) {
        log.take_all();
        TcpServer fresh;
        fresh.threaded_client_callback(true);
        RunningServer running(fresh, style, log);
        EXPECT_EQ(running.ask("x"), "");
        EXPECT_FALSE(running.stop_and_wait());
        EXPECT_TRUE(fresh.stop());
        EXPECT_TRUE(threads_become(threads));
    }
    EXPECT_EQ(calls.thread_exits, 0);
}

/// The process that would look a name up may be out of memory.
TEST_F(TcpServerStopTest, looks_no_name_up) {
    NetworkCalls calls;
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_FALSE(running.stop_and_wait());
    EXPECT_EQ(calls.lookups, 0);
}

TEST_F(TcpServerStopTest, listens_on_the_address_that_a_host_chooses) {
    constexpr char one_of_this_machine[] = "127.0.0.2";
    EXPECT_TRUE(server.set_listen_address(one_of_this_machine));
    RunningServer running(server, &TcpServer::run, log);
    const auto port = static_cast<unsigned short>(running.port());
    SocketCore core;
    Socket* const here = core.create_socket(SOCKET_TYPE_STREAM, SOCKET_PROTOCOL_TCP);
    Socket* const elsewhere = core.create_socket(SOCKET_TYPE_STREAM, SOCKET_PROTOCOL_TCP);
    EXPECT_TRUE(core.connect_socket(here, one_of_this_machine, port));
    EXPECT_FALSE(core.connect_socket(elsewhere, "127.0.0.1", port));
    core.kill_socket(here);
    core.kill_socket(elsewhere);
    EXPECT_FALSE(running.stop_and_wait()) << "it is reached there by its own stop as well";
}

TEST_F(TcpServerStopTest, listens_on_every_address_unless_told_otherwise) {
    EXPECT_TRUE(server.set_listen_address("127.0.0.2"));
    for (const char* text : {"localhost", "127.0.0", "127.0.0.256", "::1"})
        EXPECT_FALSE(server.set_listen_address(text)) << text;
    EXPECT_TRUE(server.set_listen_address(nullptr)) << "every address again";
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_EQ(running.ask("x"), "");
}

} // namespace
} // namespace orvex_test
