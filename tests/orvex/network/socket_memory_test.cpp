/// @file
/// Sockets and servers that find no memory.

#include "orvex/network/socket_core.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <future>
#include <string>
#include <thread>

#include "orvex/base/log_mgr.h"
#include "orvex/network/tcp_server.h"
#include "raw_client.h"
#include "system_counts.h"
#include "tests/support/memory_runs_out.h"

namespace orvex_test {

using namespace orvex;

namespace {

TEST(SocketMemory, a_socket_without_memory_for_its_record_is_closed) {
    SocketCore core;
    core.kill_socket(core.create_tcp_server_socket(0));
    const long descriptors = count_descriptors();
    Socket* listener = nullptr;
    const unsigned long refused =
        refuse_each_block([&] { listener = core.create_tcp_server_socket(0); },
                          [&] { EXPECT_EQ(count_descriptors(), descriptors); });
    EXPECT_GE(refused, 1u);
    ASSERT_TRUE(listener) << "the next try works";
    core.kill_socket(listener);
}

/// Learns the port of a server from its log, without a block of memory.
class ListeningPort {
public:
    ListeningPort() {
        LogMgr::get()->start("", true);
        Log* const log = LogMgr::get()->get_default_log();
        log->set_trace_level_threshold(LOG_LEVEL_DEBUG);
        log->set_trace_callback(read, this);
        // From here on the log has memory for each line.
        log->trace(LOG_LEVEL_INFO, std::string(1000, '-').c_str());
    }
    ListeningPort(const ListeningPort&) = delete;
    ListeningPort& operator=(const ListeningPort&) = delete;
    ~ListeningPort() { LogMgr::get()->stop(); }

    int wait() const {
        EXPECT_TRUE(eventually([&] { return port > 0; }));
        return port;
    }

private:
    static void read(const char* line, void* user_data) {
        constexpr char beginning[] = "listen_socket() - listen on port ";
        const char* const place = std::strstr(line, beginning);
        if (place)
            static_cast<ListeningPort*>(user_data)->port = std::atoi(place + sizeof beginning - 1);
    }

    std::atomic<int> port = 0;
};

using Style = bool (TcpServer::*)(unsigned short);

/// Serves on this thread, with one block refused after `granted` others, while other threads ask
/// until each has been answered, and then stop the server.
/// @return false if the server didn't come to serve
bool serve_short_of_memory(Style style, const Refusal& refusal) {
    constexpr int questions = 4;
    ListeningPort listening;
    TcpServer server;
    server.init();
    server.threaded_client_callback(true);
    server.set_client_proc([](SocketCore* core, Socket* client, unsigned char* text, int size,
                              void*) { core->send_socket(client, text, size - 1); },
                           nullptr);
    server.set_client_proc_v2(
        [](SocketCore* core, Socket* client, void*, void*) { core->send_socket(client, "x", 1); },
        nullptr);
    std::atomic<bool> is_over = false;
    std::atomic<bool> has_served = false;
    std::thread clients([&] {
        if (!eventually([&] { return server.is_running() || is_over; }) || is_over)
            return;
        const int port = listening.wait();
        for (int answers = 0; answers < questions;) {
            RawClient client(port);
            client.send("x");
            answers += client.receive() == "x";
        }
        has_served = true;
        EXPECT_TRUE(server.send_stop_message());
    });
    {
        const RefuseArrays refuse(refusal);
        EXPECT_FALSE((server.*style)(0));
    }
    is_over = true;
    clients.join();
    server.stop();
    return has_served;
}

TEST(SocketMemory, a_server_without_memory_for_a_client_serves_the_next) {
    for (const Style style : {&TcpServer::run, &TcpServer::run_v2})
        for (const bool single : {true, false}) {
            int served = 0;
            for (unsigned long granted = 0; granted < 24; ++granted)
                served += serve_short_of_memory(
                    style, {.granted = granted, .refused = 1, .single = single});
            EXPECT_GE(served, 12);
        }
}

TEST(SocketMemory, a_stop_without_memory_is_a_stop_or_can_be_tried_again) {
    int refused = 0;
    for (unsigned long granted = 0; granted < 12; ++granted) {
        const long descriptors = count_descriptors();
        ListeningPort listening;
        TcpServer server;
        auto result = std::async(std::launch::async, [&] { return server.run(0); });
        const RawClient silent(listening.wait());
        EXPECT_TRUE(eventually([&] { return count_descriptors() >= descriptors + 3; }));
        bool is_stopped = false;
        {
            const RefuseArrays refuse({.granted = granted, .refused = 1, .single = true});
            is_stopped = server.send_stop_message();
        }
        if (!is_stopped) {
            ++refused;
            EXPECT_TRUE(server.send_stop_message());
        }
        EXPECT_FALSE(result.get());
    }
    EXPECT_GE(refused, 1);
    EXPECT_LE(refused, 2);
}

TEST(SocketMemory, a_conversation_that_gives_its_slot_back_itself_leaves_no_record) {
    EXPECT_TRUE(threads_become(threads_at_rest));
    ListeningPort listening;
    TcpServer server;
    server.threaded_client_callback(true);
    server.set_client_proc_v2(
        [](SocketCore*, Socket*, void* own, void*) {
            static_cast<TcpServerClientThreadParams*>(own)->server->cleanup_client_threads();
        },
        nullptr);
    auto result = std::async(std::launch::async, [&] { return server.run_v2(0); });
    const int port = listening.wait();
    const auto converse = [&] {
        EXPECT_EQ(RawClient(port).receive(), "");
        EXPECT_TRUE(threads_become(threads_at_rest + 1));
        return living_blocks();
    };
    const long blocks = converse();
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(converse(), blocks);
    EXPECT_TRUE(server.send_stop_message());
    EXPECT_FALSE(result.get());
}

} // namespace
} // namespace orvex_test
