#include "orvex/network/tcp_server.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <pthread.h>

#include "log_lines.h"
#include "network_calls.h"
#include "orvex/base/global_id.h"
#include "orvex/network/socket_core.h"
#include "running_server.h"
#include "system_counts.h"

namespace orvex_test {

using namespace orvex;
namespace {
using Lines = std::vector<std::string>;

constexpr char stop_text[] = "STOP_ORVEX_TCP_SERVER";
constexpr char stop_line[] =
    "<o> orvex::TcpServer::run() - received stop message. Exit from tcp svr loop.";
constexpr char no_core_line[] = "<*> orvex::TcpServer::run() - unable to start the socket core.";

/// What a callback was given, one after the other.
class Inbox {
public:
    static void take(SocketCore* core, Socket* client, unsigned char* message, int size,
                     void* user_data) {
        auto& inbox = *static_cast<Inbox*>(user_data);
        {
            const std::lock_guard guard(inbox.mutex);
            inbox.texts.emplace_back(reinterpret_cast<char*>(message),
                                     static_cast<std::size_t>(size));
            inbox.threads.insert(std::this_thread::get_id());
        }
        core->send_socket(client, "ok", 2);
    }

    Lines messages() {
        const std::lock_guard guard(mutex);
        return texts;
    }

    std::set<std::thread::id> callers() {
        const std::lock_guard guard(mutex);
        return threads;
    }

private:
    std::mutex mutex;
    Lines texts;
    std::set<std::thread::id> threads;
};

/// A message as the callback sees it.
std::string received(const std::string& message) {
    return message + '\0';
}

class TcpServerTest : public QuietTest {
protected:
    LogLines log;
    Inbox inbox;
    TcpServer server;
};

TEST_F(TcpServerTest, has_an_id_of_its_own) {
    const TcpServer other;
    EXPECT_EQ(other.getid(), server.getid() + 1);
    EXPECT_GT(GenId(), other.getid());
}

TEST_F(TcpServerTest, without_a_run_there_is_nothing_to_stop) {
    EXPECT_FALSE(server.is_running());
    EXPECT_FALSE(server.cleanup_client_threads());
    EXPECT_FALSE(server.send_stop_message());
    EXPECT_TRUE(server.stop());
    EXPECT_TRUE(server.stop());
    EXPECT_TRUE(log.take_all().empty());
}

TEST_F(TcpServerTest, init_twice_keeps_one_core) {
    const long before = count_threads();
    EXPECT_TRUE(server.init());
    EXPECT_TRUE(server.init());
    EXPECT_TRUE(server.cleanup_client_threads()) << "there is a core";
    EXPECT_FALSE(server.send_stop_message()) << "there is no listener";
    EXPECT_TRUE(server.stop());
    EXPECT_FALSE(server.cleanup_client_threads()) << "the one core is gone";
    EXPECT_TRUE(server.init());
    EXPECT_TRUE(log.take_all().empty());
    EXPECT_TRUE(threads_become(before));
}

/// Which core the callbacks see.
void note_core(SocketCore* core, Socket*, unsigned char*, int, void* user_data) {
    *static_cast<SocketCore**>(user_data) = core;
}

TEST_F(TcpServerTest, run_uses_the_core_that_init_made) {
    SocketCore* first = nullptr;
    SocketCore* second = nullptr;
    ASSERT_TRUE(server.init());
    RunningServer running(server, &TcpServer::run, log);
    server.set_client_proc(note_core, &first);
    running.ask("a");
    ASSERT_TRUE(server.init());
    server.set_client_proc(note_core, &second);
    running.ask("b");
    running.ask(stop_text);
    EXPECT_TRUE(running.wait());
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(first, second);
}

TEST_F(TcpServerTest,
       a_stop_while_it_serves_ends_nothing_but_the_core_that_send_stop_message_needs) {
    server.set_client_proc(Inbox::take, &inbox);
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_TRUE(server.stop());
    EXPECT_FALSE(server.send_stop_message());
    EXPECT_TRUE(server.is_running());
    EXPECT_EQ(running.ask("a"), "ok");
    ASSERT_TRUE(server.init());
    EXPECT_TRUE(server.send_stop_message());
    EXPECT_FALSE(running.wait());
}

TEST_F(TcpServerTest, a_core_that_does_not_start_is_an_error) {
    NetworkCalls calls;
    calls.no_start = true;
    EXPECT_FALSE(server.init());
    EXPECT_EQ(log.take_all(), Lines{no_core_line});
    EXPECT_FALSE(server.run(0));
    EXPECT_EQ(log.take_all(), Lines{no_core_line});
    EXPECT_FALSE(server.run_v2(0));
    EXPECT_EQ(log.take_all(), Lines{no_core_line});
    EXPECT_FALSE(server.is_running());
    EXPECT_TRUE(server.stop());
}

TEST_F(TcpServerTest, a_core_that_does_not_start_again_is_an_error) {
    ASSERT_TRUE(server.init());
    NetworkCalls calls;
    calls.no_start = true;
    EXPECT_FALSE(server.init());
    EXPECT_EQ(log.take_all(), Lines{no_core_line});
}

TEST_F(TcpServerTest, a_taken_port_is_an_error) {
    SocketCore core;
    Socket* const taken = core.create_tcp_server_socket(0);
    const std::string port = std::to_string(taken->local.port);
    for (const RunningServer::Style style : {&TcpServer::run, &TcpServer::run_v2}) {
        log.take_all();
        EXPECT_FALSE((server.*style)(taken->local.port));
        EXPECT_FALSE(server.is_running());
        const Lines lines = log.take_all();
        ASSERT_EQ(lines.size(), 4u);
        EXPECT_TRUE(lines[1].ends_with(" to port " + port + " failed.")) << lines[1];
        EXPECT_EQ(lines[2], "<*> orvex::SocketCore::create_tcp_server_socket() - create server "
                            "socket on port [" +
                                port + "] failed.");
        EXPECT_EQ(lines[3], "<*> orvex::TcpServer::run() - unable to create a TCP socket.");
    }
    core.kill_socket(taken);
}

TEST_F(TcpServerTest, hands_each_message_to_the_callback_with_a_zero_behind_it) {
    server.set_client_proc(Inbox::take, &inbox);
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_TRUE(server.is_running());
    EXPECT_EQ(running.ask("abc"), "ok") << "the connection ends with the callback";
    EXPECT_EQ(running.ask(std::string("d\0e", 3)), "ok");
    const Lines expected = {std::string("abc\0", 4), std::string("d\0e\0", 4)};
    EXPECT_EQ(inbox.messages(), expected);
    EXPECT_EQ(inbox.callers().size(), 1u);
}

TEST_F(TcpServerTest, a_message_ends_after_1023_bytes) {
    server.set_client_proc(Inbox::take, &inbox);
    RunningServer running(server, &TcpServer::run, log);
    RawClient client(running.port());
    client.send(std::string(5000, 'x'));
    client.receive();
    ASSERT_EQ(inbox.messages().size(), 1u);
    EXPECT_LE(inbox.messages()[0].size(), 1024u);
    EXPECT_EQ(inbox.messages()[0].back(), '\0');
}

TEST_F(TcpServerTest, the_stop_text_ends_it) {
    server.set_client_proc(Inbox::take, &inbox);
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_EQ(running.ask(stop_text), "");
    EXPECT_TRUE(running.wait());
    EXPECT_FALSE(server.is_running());
    EXPECT_TRUE(inbox.messages().empty());
    EXPECT_EQ(log.take_all().back(), stop_line);
    EXPECT_FALSE(RawClient(running.port()).connected()) << "the listener is closed";
    EXPECT_FALSE(server.send_stop_message()) << "there is no listener";
    EXPECT_TRUE(server.stop());
    EXPECT_FALSE(server.cleanup_client_threads()) << "there is no core";
}

TEST_F(TcpServerTest, compares_the_beginning_of_a_message_with_the_stop_text) {
    struct Row {
        const char* name;
        const char* stop; ///< null: as it is at first
        std::string message;
        bool ends;
    };
    const std::string cut(127, 's');
    const std::string long_text(200, 's');
    const std::string almost = cut.substr(1);
    const Row rows[] = {
        {"further bytes", nullptr, "STOP_ORVEX_TCP_SERVER now", true},
        {"zero behind it", nullptr, std::string("STOP_ORVEX_TCP_SERVER\0x", 23), true},
        {"four letters", nullptr, "STOP", false},
        {"one letter short", nullptr, "STOP_ORVEX_TCP_SERVE", false},
        {"other case", nullptr, "stop_orvex_tcp_server", false},
        {"not at the beginning", nullptr, " STOP_ORVEX_TCP_SERVER", false},
        {"new text", "halt", "halt", true},
        {"old text", "halt", stop_text, false},
        {"cut text", long_text.c_str(), cut, true},
        {"less than cut text", long_text.c_str(), almost, false},
        {"empty text", "", "anything", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        log.take_all();
        TcpServer fresh;
        fresh.set_client_proc(Inbox::take, &inbox);
        fresh.set_stop_message(row.stop);
        RunningServer running(fresh, &TcpServer::run, log);
        EXPECT_EQ(running.ask(row.message), row.ends ? "" : "ok");
        EXPECT_EQ(row.ends ? running.wait() : running.stop_and_wait(), row.ends);
        EXPECT_EQ(fresh.is_running(), !row.ends);
    }
}

TEST_F(TcpServerTest, keeps_the_stop_text) {
    EXPECT_STREQ(server.get_stop_message(), stop_text);
    server.set_stop_message(nullptr);
    EXPECT_STREQ(server.get_stop_message(), stop_text);
    EXPECT_TRUE(log.take_all().empty());

    server.set_stop_message("halt");
    EXPECT_STREQ(server.get_stop_message(), "halt");
    EXPECT_EQ(log.take_all(), Lines{"<o> orvex::TcpServer::set_stop_message() - new stop message: "
                                    "halt - length=4."});
    server.set_stop_message(std::string(128, 'x').c_str());
    EXPECT_EQ(server.get_stop_message(), std::string(127, 'x'));
    EXPECT_TRUE(log.take_all().back().ends_with("x - length=127."));
    server.set_stop_message(server.get_stop_message() + 120);
    EXPECT_STREQ(server.get_stop_message(), "xxxxxxx");
    server.set_stop_message("");
    EXPECT_STREQ(server.get_stop_message(), "");
}

TEST_F(TcpServerTest, without_a_callback_messages_are_read_and_dropped) {
    const long before = count_descriptors();
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_EQ(running.ask("abc"), "");
    EXPECT_EQ(running.ask("def"), "");
    log.wait_for("<o> orvex::SocketCore::receive_socket() - received 3 bytes on socket ", 2);
    EXPECT_TRUE(eventually([&] { return count_descriptors() == before + 1; }))
        << "only the listener is left";
}

TEST_F(TcpServerTest, a_connection_without_a_message_is_left_open) {
    const long before = count_descriptors();
    {
        server.set_client_proc(Inbox::take, &inbox);
        RunningServer running(server, &TcpServer::run, log);
        RawClient silent(running.port());
        silent.end_sending();
        RawClient(running.port()).reset();
        EXPECT_EQ(running.ask("abc"), "ok");
        EXPECT_TRUE(silent.is_open_and_silent());
        EXPECT_EQ(inbox.messages(), Lines{received("abc")});
        EXPECT_TRUE(eventually([&] { return count_descriptors() == before + 4; }))
            << "listener, client, and the server's ends of both";
    }
    EXPECT_TRUE(has_descriptors_after_stop(before + 4))
        << "listener, both, and the one that woke it";
}

TEST_F(TcpServerTest, the_end_of_the_server_closes_what_was_left_open) {
    const long before = count_descriptors();
    {
        TcpServer fresh;
        RunningServer running(fresh, &TcpServer::run, log);
        RawClient(running.port()).close();
        running.ask("abc");
        running.ask(stop_text);
        EXPECT_TRUE(running.wait());
        EXPECT_EQ(count_descriptors(), before + 1) << "the silent client";
    }
    EXPECT_EQ(count_descriptors(), before);
}

TEST_F(TcpServerTest, send_stop_message_ends_run_and_keeps_the_port) {
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_FALSE(running.stop_and_wait());
    EXPECT_TRUE(server.is_running()) << "only a stop text changes that";
    EXPECT_TRUE(server.stop());
    SocketCore core;
    EXPECT_EQ(core.create_tcp_server_socket(static_cast<unsigned short>(running.port())), nullptr);
    RawClient late(running.port());
    EXPECT_TRUE(late.connected()) << "the listener stays open";
    EXPECT_EQ(log.count(stop_line), 0);
}

TEST_F(TcpServerTest, send_stop_message_needs_a_socket) {
    RunningServer running(server, &TcpServer::run, log);
    {
        const DescriptorLimit none(3);
        EXPECT_FALSE(server.send_stop_message());
    }
    EXPECT_EQ(running.ask("still there"), "");
    EXPECT_FALSE(running.stop_and_wait());
}

TEST_F(TcpServerTest, can_be_run_again) {
    for (int i = 0; i < 2; ++i) {
        log.take_all();
        RunningServer running(server, &TcpServer::run, log);
        EXPECT_FALSE(running.stop_and_wait());
        EXPECT_TRUE(server.stop());
    }
    log.take_all();
    RunningServer running(server, &TcpServer::run, log);
    running.ask(stop_text);
    EXPECT_TRUE(running.wait());
    EXPECT_FALSE(server.is_running());
}

TEST_F(TcpServerTest, a_callback_may_stop_it) {
    const auto halt = [](SocketCore*, Socket*, unsigned char*, int, void* user_data) {
        auto* const target = static_cast<TcpServer*>(user_data);
        EXPECT_TRUE(target->send_stop_message());
        EXPECT_TRUE(target->stop());
    };
    server.set_client_proc(halt, &server);
    RunningServer running(server, &TcpServer::run, log);
    running.ask("halt");
    EXPECT_FALSE(running.wait());
}

TEST_F(TcpServerTest, a_callback_may_end_its_own_connection) {
    struct Row {
        const char* name;
        TcpServerClientProc proc;
    };
    const Row rows[] = {
        {"kill", [](SocketCore* core, Socket* client, unsigned char*, int,
                    void*) { EXPECT_TRUE(core->kill_socket(client)); }},
        {"close", [](SocketCore* core, Socket* client, unsigned char*, int,
                     void*) { EXPECT_TRUE(core->close_socket(client)); }},
        {"close_connection", [](SocketCore* core, Socket* client, unsigned char*, int,
                                void*) { EXPECT_TRUE(core->close_connection(client)); }},
        {"shutdown", [](SocketCore* core, Socket* client, unsigned char*, int,
                        void*) { EXPECT_TRUE(core->shutdown_socket(client)); }},
    };
    const long threads = count_threads();
    RunningServer running(server, &TcpServer::run, log);
    const long descriptors = count_descriptors();
    for (const bool threaded : {false, true}) {
        server.threaded_client_callback(threaded);
        for (const Row& row : rows) {
            server.set_client_proc(row.proc, nullptr);
            for (int i = 0; i < 10; ++i)
                EXPECT_EQ(running.ask("x"), "") << row.name;
        }
    }
    EXPECT_TRUE(threads_become(threads + 1));
    EXPECT_TRUE(eventually([&] { return count_descriptors() == descriptors; }));
}

TEST_F(TcpServerTest, a_callback_may_use_sockets_of_its_own) {
    const auto call_out = [](SocketCore* core, Socket* client, unsigned char*, int,
                             void* user_data) {
        Socket* const out = core->create_socket(SOCKET_TYPE_STREAM, SOCKET_PROTOCOL_TCP);
        EXPECT_TRUE(
            core->connect_socket(out, "127.0.0.1", *static_cast<unsigned short*>(user_data)));
        EXPECT_EQ(core->send_socket(out, "out", 3), 3);
        EXPECT_TRUE(core->kill_socket(out));
        core->send_socket(client, "done", 4);
    };
    SocketCore core;
    Socket* const other = core.create_tcp_server_socket(0);
    log.take_all();
    unsigned short port = other->local.port;
    server.set_client_proc(call_out, &port);
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_EQ(running.ask("x"), "done");
    Socket* const accepted = core.accept_connection(other);
    EXPECT_EQ(core.receive_socket_get_data_len(accepted), 3);
    core.kill_socket(accepted);
    core.kill_socket(other);
}

TEST_F(TcpServerTest, a_callback_that_throws_leaves_run_and_closes_its_connection) {
    struct Broken {};
    const auto throw_up = [](SocketCore*, Socket*, unsigned char*, int, void*) { throw Broken(); };
    server.set_client_proc(throw_up, nullptr);
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_EQ(running.ask("x"), "");
    EXPECT_THROW(running.wait(), Broken);
}

/// Keeps callbacks of any number until the test lets them go.
class Gate {
public:
    Gate() = default;
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    ~Gate() {
        while (inside > 0)
            std::this_thread::yield();
    }

    static void wait(SocketCore* core, Socket* client, unsigned char* message, int size,
                     void* user_data) {
        auto& gate = *static_cast<Gate*>(user_data);
        ++gate.inside;
        gate.hold_up();
        core->send_socket(client, message, size - 1);
        --gate.inside;
    }

    void await(int number) {
        std::unique_lock guard(mutex);
        changed.wait(guard, [&] { return waiting >= number; });
    }

    void let_go() {
        const std::lock_guard guard(mutex);
        open = true;
        changed.notify_all();
    }

private:
    void hold_up() {
        std::unique_lock guard(mutex);
        ++waiting;
        changed.notify_all();
        changed.wait(guard, [this] { return open; });
    }

    std::atomic<int> inside = 0;
    std::mutex mutex;
    std::condition_variable changed;
    int waiting = 0;
    bool open = false;
};

TEST_F(TcpServerTest, threaded_callbacks_run_side_by_side_without_a_limit) {
    constexpr int number = 150;
    const long threads = count_threads();
    const long descriptors = count_descriptors();
    Gate gate;
    server.set_client_proc(Gate::wait, &gate);
    server.threaded_client_callback(true);
    RunningServer running(server, &TcpServer::run, log);
    std::vector<RawClient> clients;
    for (int i = 0; i < number; ++i) {
        clients.emplace_back(running.port());
        ASSERT_TRUE(clients.back().send(std::to_string(i)));
        gate.await(i + 1);
    }
    EXPECT_TRUE(threads_become(threads + 1 + number));
    gate.let_go();
    for (int i = 0; i < number; ++i)
        EXPECT_EQ(clients[static_cast<std::size_t>(i)].receive(), std::to_string(i));
    clients.clear();
    EXPECT_TRUE(threads_become(threads + 1)) << "nobody joins them";
    EXPECT_TRUE(eventually([&] { return count_descriptors() == descriptors + 1; }));
}

TEST_F(TcpServerTest, threaded_callbacks_may_outlive_the_core_and_the_server) {
    const long threads = count_threads();
    Gate gate;
    std::optional<RawClient> client;
    {
        TcpServer brief;
        brief.set_client_proc(Gate::wait, &gate);
        brief.threaded_client_callback(true);
        RunningServer running(brief, &TcpServer::run, log);
        client.emplace(running.port());
        client->send("later");
        gate.await(1);
        EXPECT_FALSE(running.stop_and_wait());
        EXPECT_TRUE(brief.stop());
    }
    gate.let_go();
    EXPECT_EQ(client->receive(), "later");
    EXPECT_TRUE(threads_become(threads));
}

TEST_F(TcpServerTest, a_threaded_callback_may_be_none) {
    server.threaded_client_callback(true);
    RunningServer running(server, &TcpServer::run, log);
    EXPECT_EQ(running.ask("x"), "");
}

TEST_F(TcpServerTest, a_message_that_finds_no_thread_is_dropped) {
    NetworkCalls calls;
    calls.no_threads = true;
    server.set_client_proc(Inbox::take, &inbox);
    server.threaded_client_callback(true);
    RunningServer running(server, &TcpServer::run, log);
    const long descriptors = count_descriptors();
    EXPECT_EQ(running.ask("x"), "");
    EXPECT_EQ(running.ask("y"), "");
    EXPECT_TRUE(inbox.messages().empty());
    EXPECT_TRUE(eventually([&] { return count_descriptors() == descriptors; }));
}

TEST_F(TcpServerTest, settings_count_from_the_next_message_on) {
    Inbox other;
    server.set_client_proc(Inbox::take, &inbox);
    RunningServer running(server, &TcpServer::run, log);
    running.ask("a");
    server.set_client_proc(Inbox::take, &other);
    running.ask("b");
    server.set_client_proc_v2(nullptr, &inbox);
    running.ask("c");
    server.threaded_client_callback(true);
    running.ask("d");
    EXPECT_EQ(inbox.messages(), (Lines{received("a"), received("c"), received("d")}))
        << "there is one user data for both kinds of callback";
    EXPECT_EQ(other.messages(), Lines{received("b")});
    EXPECT_EQ(inbox.callers().size(), 2u);
}

TEST_F(TcpServerTest, settings_and_stops_may_come_from_any_thread) {
    std::atomic<bool> enough = false;
    server.set_client_proc(Inbox::take, &inbox);
    RunningServer running(server, &TcpServer::run, log);
    std::thread setter([&] {
        while (!enough) {
            server.set_client_proc(Inbox::take, &inbox);
            server.set_stop_message("halt");
            server.threaded_client_callback(!server.is_running());
            server.cleanup_client_threads();
            server.init();
            server.stop();
        }
    });
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(running.ask("x"), "ok");
    enough = true;
    setter.join();
    running.ask("halt");
    EXPECT_TRUE(running.wait());
}

TEST_F(TcpServerTest, the_thread_function_serves_parameters_that_a_host_made) {
    const long threads = count_threads();
    static SocketCore& core = *new SocketCore; // the thread may end after this test
    Socket* const listener = core.create_tcp_server_socket(0);
    RawClient client(listener->local.port);
    auto* const params = new TcpServerClientThreadParams;
    params->socket_core = &core;
    params->client_socket = core.accept_connection(listener);
    params->client_proc = Inbox::take;
    params->user_data = &inbox;
    params->buffer_size = 3;
    params->buffer = new std::uint8_t[3]{'h', 'i', 0};
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, nullptr, tcp_server_client_thread_func, params), 0);
    EXPECT_EQ(client.receive(), "ok");
    EXPECT_EQ(inbox.messages(), Lines{received("hi")});
    EXPECT_EQ(tcp_server_client_thread_func(nullptr), nullptr);
    core.kill_socket(listener);
    EXPECT_TRUE(threads_become(threads)) << "it detaches itself";
}

TEST_F(TcpServerTest, thread_parameters_begin_empty) {
    const TcpServerClientThreadParams params;
    EXPECT_EQ(params.server, nullptr);
    EXPECT_EQ(params.socket_core, nullptr);
    EXPECT_EQ(params.server_socket, nullptr);
    EXPECT_EQ(params.port, 0);
    EXPECT_FALSE(params.flag);
    EXPECT_EQ(params.client_socket, nullptr);
    EXPECT_EQ(params.client_proc, nullptr);
    EXPECT_EQ(params.client_proc_v2, nullptr);
    EXPECT_EQ(params.user_data, nullptr);
    EXPECT_EQ(params.buffer_size, 0);
    EXPECT_EQ(params.buffer, nullptr);
}

} // namespace
} // namespace orvex_test
