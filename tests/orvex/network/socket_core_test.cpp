#include "orvex/network/socket_core.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include "log_lines.h"
#include "network_calls.h"
#include "raw_client.h"

namespace orvex_test {

using namespace orvex;
namespace {
using Lines = std::vector<std::string>;

std::string text(const std::string& before, long number, const std::string& behind) {
    return before + std::to_string(number) + behind;
}

class SocketCoreTest : public testing::Test {
protected:
    ~SocketCoreTest() override {
        for (Socket* socket : sockets)
            core.kill_socket(socket);
    }

    /// Kills the socket at the end of the test.
    Socket* keep(Socket* socket) {
        if (socket)
            sockets.push_back(socket);
        return socket;
    }

    Socket* tcp() { return keep(core.create_socket(SOCKET_TYPE_STREAM, SOCKET_PROTOCOL_TCP)); }
    Socket* udp() { return keep(core.create_socket(SOCKET_TYPE_DGRAM, SOCKET_PROTOCOL_UDP)); }
    Socket* listener() { return keep(core.create_tcp_server_socket(0)); }

    static int option(const Socket* socket, int level, int name) {
        int value = -1;
        socklen_t size = sizeof value;
        getsockopt(socket->fd, level, name, &value, &size);
        return value;
    }

    static bool is_open(int fd) { return fcntl(fd, F_GETFD) != -1; }

    LogLines log;
    SocketCore core;
    std::vector<Socket*> sockets;
};

TEST_F(SocketCoreTest, start_and_stop_flip_a_flag) {
    EXPECT_FALSE(core.stop());
    EXPECT_TRUE(core.start());
    EXPECT_TRUE(core.start());
    EXPECT_TRUE(core.stop());
    EXPECT_FALSE(core.stop());
    EXPECT_TRUE(log.take_all().empty());
}

TEST_F(SocketCoreTest, records_begin_closed_and_local) {
    const Socket socket;
    EXPECT_EQ(socket.fd, 0);
    EXPECT_EQ(socket.type, 1);
    EXPECT_EQ(socket.protocol, 1);
    EXPECT_EQ(socket.local.port, 0);
    EXPECT_EQ(socket.local.address, 0u);
    EXPECT_STREQ(socket.local.host, "localhost");
    EXPECT_EQ(socket.remote.port, 0);
    EXPECT_EQ(socket.remote.address, 0u);
    EXPECT_STREQ(socket.remote.host, "");
    EXPECT_EQ(sizeof socket.local.host, 128u);
}

TEST_F(SocketCoreTest, makes_sockets_by_type_and_protocol) {
    struct Row {
        int type, protocol;
        int system_type, system_protocol;
    };
    const Row rows[] = {
        {1, 1, SOCK_STREAM, IPPROTO_TCP}, {2, 2, SOCK_RAW, IPPROTO_RAW},
        {3, 3, SOCK_DGRAM, IPPROTO_UDP},  {7, 7, SOCK_STREAM, IPPROTO_TCP},
        {0, 0, SOCK_STREAM, IPPROTO_TCP}, {-1, 4, SOCK_STREAM, IPPROTO_TCP},
        {3, 1, SOCK_DGRAM, IPPROTO_TCP},
    };
    NetworkCalls calls;
    calls.keep_sockets_back = true;
    for (const Row& row : rows) {
        EXPECT_EQ(core.create_socket(static_cast<SOCKET_TYPE>(row.type),
                                     static_cast<SOCKET_PROTOCOL>(row.protocol)),
                  nullptr);
        EXPECT_EQ(calls.domain, AF_INET);
        EXPECT_EQ(calls.type, row.system_type | SOCK_CLOEXEC) << row.type;
        EXPECT_EQ(calls.protocol, row.system_protocol) << row.protocol;
    }
}

TEST_F(SocketCoreTest, a_type_of_7_makes_a_stream_socket) {
    Socket* const socket =
        keep(core.create_socket(static_cast<SOCKET_TYPE>(7), SOCKET_PROTOCOL_TCP));
    ASSERT_NE(socket, nullptr);
    EXPECT_EQ(option(socket, SOL_SOCKET, SO_TYPE), SOCK_STREAM);
    EXPECT_EQ(socket->type, 7) << "as created";
    EXPECT_EQ(socket->protocol, SOCKET_PROTOCOL_TCP);
    EXPECT_GT(socket->fd, 0);
    EXPECT_EQ(log.take_all(), Lines{text("<o> orvex::SocketCore::create_socket() - socket ",
                                         socket->fd, ": creation ok.")});
}

TEST_F(SocketCoreTest, logs_a_socket_that_the_system_refuses) {
    NetworkCalls calls;
    calls.keep_sockets_back = true;
    EXPECT_EQ(tcp(), nullptr);
    EXPECT_EQ(log.take_all(),
              Lines{"<*> orvex::SocketCore::create_socket() - socket creation failed."});
}

TEST_F(SocketCoreTest, refuses_null) {
    Socket* const socket = tcp();
    SockAddr addr;
    char byte = 'x';
    log.take_all();
    EXPECT_FALSE(core.close_socket(nullptr));
    EXPECT_FALSE(core.shutdown_socket(nullptr));
    EXPECT_FALSE(core.kill_socket(nullptr));
    EXPECT_FALSE(core.bind_socket(nullptr, &addr));
    EXPECT_FALSE(core.bind_socket(socket, nullptr));
    EXPECT_FALSE(core.listen_socket(nullptr, 10));
    EXPECT_EQ(core.accept_connection(nullptr), nullptr);
    EXPECT_FALSE(core.connect_socket(nullptr, "127.0.0.1", 1));
    EXPECT_FALSE(core.connect_socket(socket, nullptr, 1));
    EXPECT_FALSE(core.connect_socket(nullptr, &addr));
    EXPECT_FALSE(core.connect_socket(socket, nullptr));
    EXPECT_FALSE(core.close_connection(nullptr));
    EXPECT_EQ(core.send_socket(nullptr, &byte, 1), 0);
    EXPECT_EQ(core.send_socket(socket, nullptr, 1), 0);
    EXPECT_EQ(core.receive_socket_get_data_len(nullptr), 0);
    EXPECT_EQ(core.receive_socket(nullptr, &byte, 1), 0);
    EXPECT_EQ(core.receive_socket(socket, nullptr, 1), 0);
    EXPECT_EQ(core.send_udp(nullptr, "127.0.0.1", 1, &byte, 1), 0);
    EXPECT_EQ(core.send_udp(socket, nullptr, 1, &byte, 1), 0);
    EXPECT_EQ(core.send_udp(socket, "127.0.0.1", 1, nullptr, 1), 0);
    EXPECT_EQ(core.receive_udp(nullptr, &addr, &byte, 1), 0);
    EXPECT_EQ(core.receive_udp(socket, &addr, nullptr, 1), 0);
    core.set_socket_option(nullptr, SOCKET_OPTION_REUSEADDR);
    EXPECT_TRUE(log.take_all().empty());
    EXPECT_EQ(byte, 'x');
}

TEST_F(SocketCoreTest, nothing_to_send_or_receive_makes_no_system_call) {
    Socket closed; // any call on it would fail
    SockAddr addr;
    char byte = 'x';
    for (int length : {0, -1, -100}) {
        errno = 0;
        EXPECT_EQ(core.send_socket(&closed, &byte, length), 0);
        EXPECT_EQ(core.receive_socket(&closed, &byte, length), 0);
        EXPECT_EQ(core.send_udp(&closed, "127.0.0.1", 1, &byte, length), 0);
        EXPECT_EQ(core.receive_udp(&closed, &addr, &byte, length), 0);
        EXPECT_EQ(errno, 0);
    }
    EXPECT_TRUE(log.take_all().empty());
}

TEST_F(SocketCoreTest, calls_on_a_closed_record_fail) {
    Socket closed;
    SockAddr addr;
    addr.port = 9;
    std::strcpy(addr.host, "old");
    char byte = 'x';
    EXPECT_FALSE(core.bind_socket(&closed, &addr));
    EXPECT_EQ(closed.local.port, 0);
    EXPECT_FALSE(core.listen_socket(&closed, 1));
    EXPECT_EQ(core.accept_connection(&closed), nullptr);
    EXPECT_FALSE(core.connect_socket(&closed, "127.0.0.1", 9));
    EXPECT_EQ(core.send_socket(&closed, &byte, 1), -1);
    EXPECT_EQ(core.receive_socket_get_data_len(&closed), -1);
    EXPECT_EQ(core.receive_socket(&closed, &byte, 1), -1);
    EXPECT_EQ(core.send_udp(&closed, "127.0.0.1", 9, &byte, 1), -1);
    EXPECT_EQ(core.receive_udp(&closed, &addr, &byte, 1), -1);
    EXPECT_STREQ(addr.host, "");
    EXPECT_EQ(addr.port, 0);
    EXPECT_EQ(core.receive_udp(&closed, nullptr, &byte, 1), -1);
    const Lines expected = {
        "<*> orvex::SocketCore::bind_socket() - bind socket 0 to port 9 failed.",
        "<*> orvex::SocketCore::listen_socket() - listen on port 0 failed.",
        "<*> orvex::SocketCore::accept_connection() - accept client on port [0] failed.",
        "<*> orvex::SocketCore::connect_socket() - socket connection to server 127.0.0.1 on port 9 "
        "failed.",
        "<o> orvex::SocketCore::send_udp() - sent -1 bytes on socket 0.",
        "<o> orvex::SocketCore::receive_udp() - socket 0 - received -1 bytes from .",
        "<o> orvex::SocketCore::receive_udp() - socket 0 - received -1 bytes.",
    };
    EXPECT_EQ(log.take_all(), expected);
}

TEST_F(SocketCoreTest, closes_once) {
    Socket* const socket = tcp();
    const int fd = socket->fd;
    log.take_all();
    EXPECT_TRUE(core.close_socket(socket));
    EXPECT_EQ(socket->fd, 0);
    EXPECT_FALSE(is_open(fd));
    EXPECT_TRUE(core.close_socket(socket));
    EXPECT_EQ(socket->fd, 0);
    EXPECT_FALSE(core.shutdown_socket(socket)) << "closed";
    EXPECT_TRUE(log.take_all().empty());
}

TEST_F(SocketCoreTest, shuts_down_any_open_record) {
    Socket* const socket = tcp();
    EXPECT_TRUE(core.shutdown_socket(socket)) << "not connected";
    Socket negative;
    negative.fd = -1;
    EXPECT_FALSE(core.shutdown_socket(&negative));
}

/// Gives the process a descriptor 0 of its own for a test, or none.
class StandardInput {
public:
    explicit StandardInput(bool open)
        : before(fcntl(0, F_DUPFD_CLOEXEC, 10)) {
        ::close(0);
        if (open && ::open("/dev/null", O_RDONLY) != 0)
            ADD_FAILURE() << "descriptor 0 is not free";
    }
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;
    ~StandardInput() {
        ::close(0);
        if (before < 0)
            return;
        dup2(before, 0);
        ::close(before);
    }

private:
    int before;
};

TEST_F(SocketCoreTest, never_closes_descriptor_0) {
    const StandardInput input(true);
    Socket socket;
    EXPECT_TRUE(core.close_socket(&socket));
    EXPECT_TRUE(core.close_connection(&socket));
    EXPECT_TRUE(core.close_connection(&socket));
    EXPECT_TRUE(core.kill_socket(new Socket));
    EXPECT_TRUE(is_open(0));
    const std::string line = "<o> orvex::SocketCore::close_connection() - socket 0 closed ok.";
    EXPECT_EQ(log.take_all(), (Lines{line, line}));
}

TEST_F(SocketCoreTest, a_socket_is_never_descriptor_0) {
    Socket* const server = listener();
    const StandardInput input(false);
    Socket* const made = tcp();
    ASSERT_NE(made, nullptr);
    EXPECT_GT(made->fd, 0);
    EXPECT_FALSE(is_open(0));

    ASSERT_TRUE(core.connect_socket(made, "127.0.0.1", server->local.port));
    Socket* const accepted = keep(core.accept_connection(server));
    ASSERT_NE(accepted, nullptr);
    EXPECT_GT(accepted->fd, 0);
    EXPECT_FALSE(is_open(0));
    EXPECT_EQ(core.send_socket(made, "x", 1), 1);
    EXPECT_EQ(core.receive_socket_get_data_len(accepted), 1);
}

TEST_F(SocketCoreTest, no_socket_goes_on_to_a_child_of_the_process) {
    Socket* const server = listener();
    const auto stays_here = [](const Socket* socket) {
        return socket && (fcntl(socket->fd, F_GETFD) & FD_CLOEXEC) != 0;
    };
    EXPECT_TRUE(stays_here(server));
    EXPECT_TRUE(stays_here(udp()));
    {
        const StandardInput input(false);
        EXPECT_TRUE(stays_here(tcp())) << "one that was moved up from 0";
    }
    Socket* const client = tcp();
    ASSERT_TRUE(core.connect_socket(client, "localhost", server->local.port));
    EXPECT_TRUE(stays_here(keep(core.accept_connection(server))));
}

TEST_F(SocketCoreTest, close_connection_closes_and_says_so) {
    Socket* const socket = tcp();
    const int fd = socket->fd;
    log.take_all();
    EXPECT_TRUE(core.close_connection(socket));
    EXPECT_EQ(socket->fd, 0);
    EXPECT_FALSE(is_open(fd));
    EXPECT_EQ(log.take_all(), Lines{text("<o> orvex::SocketCore::close_connection() - socket ", fd,
                                         " closed ok.")});
}

TEST_F(SocketCoreTest, kill_goes_through_the_virtual_operations) {
    struct Recorder : SocketCore {
        bool close_socket(Socket* socket) override {
            calls.push_back("close");
            return SocketCore::close_socket(socket);
        }
        bool shutdown_socket(Socket* socket) override {
            calls.push_back("shutdown");
            return SocketCore::shutdown_socket(socket);
        }
        Lines calls;
    } recorder;
    Socket* const socket = core.create_socket(SOCKET_TYPE_STREAM, SOCKET_PROTOCOL_TCP);
    const int fd = socket->fd;
    EXPECT_TRUE(recorder.kill_socket(socket));
    EXPECT_EQ(recorder.calls, (Lines{"shutdown", "close"}));
    EXPECT_FALSE(is_open(fd));
}

TEST_F(SocketCoreTest, binds_every_address_and_notes_the_port) {
    Socket* const socket = tcp();
    SockAddr addr;
    log.take_all();
    ASSERT_TRUE(core.bind_socket(socket, &addr));
    const int chosen = socket->local.port;
    EXPECT_NE(chosen, 0) << "of the system's choice";
    EXPECT_EQ(addr.port, 0);
    EXPECT_EQ(log.take_all(), Lines{text("<o> orvex::SocketCore::bind_socket() - bind socket ",
                                         socket->fd, " to port 0 ok.")});

    sockaddr_in bound{};
    socklen_t size = sizeof bound;
    ASSERT_EQ(getsockname(socket->fd, reinterpret_cast<sockaddr*>(&bound), &size), 0);
    EXPECT_EQ(ntohs(bound.sin_port), chosen);
    EXPECT_EQ(ntohl(bound.sin_addr.s_addr), INADDR_ANY);

    core.close_socket(socket);
    Socket* const again = udp();
    log.take_all();
    addr.port = static_cast<unsigned short>(chosen);
    ASSERT_TRUE(core.bind_socket(again, &addr));
    EXPECT_EQ(again->local.port, chosen);
    EXPECT_EQ(log.take_all(), Lines{text("<o> orvex::SocketCore::bind_socket() - bind socket ",
                                         again->fd, text(" to port ", chosen, " ok."))});
}

TEST_F(SocketCoreTest, listening_fails_on_a_socket_without_connections) {
    Socket* const socket = udp();
    socket->local.port = 12;
    log.take_all();
    EXPECT_FALSE(core.listen_socket(socket, 10));
    EXPECT_EQ(log.take_all(),
              Lines{"<*> orvex::SocketCore::listen_socket() - listen on port 12 failed."});
}

TEST_F(SocketCoreTest, makes_a_tcp_server) {
    Socket* const server = listener();
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(option(server, SOL_SOCKET, SO_ACCEPTCONN), 1);
    EXPECT_EQ(option(server, SOL_SOCKET, SO_REUSEADDR), 1);
    EXPECT_EQ(server->type, SOCKET_TYPE_STREAM);
    EXPECT_EQ(server->protocol, SOCKET_PROTOCOL_TCP);
    const Lines expected = {
        text("<o> orvex::SocketCore::create_socket() - socket ", server->fd, ": creation ok."),
        text("<o> orvex::SocketCore::bind_socket() - bind socket ", server->fd, " to port 0 ok."),
        text("<o> orvex::SocketCore::listen_socket() - listen on port ", server->local.port,
             " ok."),
        "<o> orvex::SocketCore::create_tcp_server_socket() - listening on port 0 ok.",
    };
    EXPECT_EQ(log.take_all(), expected);
}

TEST_F(SocketCoreTest, a_restarted_server_has_its_port_at_once) {
    Socket* server = listener();
    const unsigned short port = server->local.port;
    RawClient client(port);
    Socket* const accepted = keep(core.accept_connection(server));
    core.close_socket(accepted); // the server's end closes first: the port lingers
    core.close_socket(server);
    log.take_all();
    server = keep(core.create_tcp_server_socket(port));
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(server->local.port, port);
    EXPECT_EQ(log.take_all().back(),
              text("<o> orvex::SocketCore::create_tcp_server_socket() - listening on port ", port,
                   " ok."));
}

TEST_F(SocketCoreTest, a_tcp_server_on_a_taken_port_is_refused_step_by_step) {
    const unsigned short port = listener()->local.port;
    log.take_all();
    EXPECT_EQ(core.create_tcp_server_socket(port), nullptr);
    const Lines lines = log.take_all();
    ASSERT_EQ(lines.size(), 3u);
    const std::string number = std::to_string(port);
    EXPECT_TRUE(lines[0].ends_with(": creation ok."));
    EXPECT_TRUE(lines[1].starts_with("<*> orvex::SocketCore::bind_socket() - bind socket ") &&
                lines[1].ends_with(" to port " + number + " failed."))
        << lines[1];
    EXPECT_EQ(lines[2], "<*> orvex::SocketCore::create_tcp_server_socket() - create server socket "
                        "on port [" +
                            number + "] failed.");
}

TEST_F(SocketCoreTest, a_udp_server_on_a_taken_port_is_refused_step_by_step) {
    Socket* const server = keep(core.create_udp_server_socket(0));
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(option(server, SOL_SOCKET, SO_TYPE), SOCK_DGRAM);
    EXPECT_EQ(log.take_all().back(),
              text("<o> orvex::SocketCore::create_udp_server_socket() - bind server socket [",
                   server->fd, "] to port [0] ok."));
    EXPECT_EQ(core.create_udp_server_socket(server->local.port), nullptr);
    const Lines lines = log.take_all();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[2],
              text("<*> orvex::SocketCore::create_udp_server_socket() - create server socket on "
                   "port [",
                   server->local.port, "] failed."));
}

TEST_F(SocketCoreTest, servers_need_a_socket) {
    NetworkCalls calls;
    calls.keep_sockets_back = true;
    const std::string failed = "<*> orvex::SocketCore::create_socket() - socket creation failed.";
    EXPECT_EQ(core.create_tcp_server_socket(80), nullptr);
    EXPECT_EQ(log.take_all(),
              (Lines{failed, "<*> orvex::SocketCore::create_tcp_server_socket() - create server "
                             "socket on port [80] failed."}));
    EXPECT_EQ(core.create_udp_server_socket(80), nullptr);
    EXPECT_EQ(log.take_all(),
              (Lines{failed, "<*> orvex::SocketCore::create_udp_server_socket() - create server "
                             "socket on port [80] failed."}));
}

/// A core of a host's own, whose sockets never come to listen.
struct DeafCore : SocketCore {
    bool listen_socket(Socket*, int asked) override {
        backlog = asked;
        return false;
    }
    bool kill_socket(Socket* socket) override {
        ++killed;
        return SocketCore::kill_socket(socket);
    }
    int backlog = 0;
    int killed = 0;
};

TEST_F(SocketCoreTest, a_tcp_server_that_can_not_listen_is_killed) {
    DeafCore deaf;
    EXPECT_EQ(deaf.create_tcp_server_socket(0), nullptr);
    EXPECT_EQ(deaf.backlog, 10);
    EXPECT_EQ(deaf.killed, 1);
    EXPECT_EQ(log.take_all().back(), "<*> orvex::SocketCore::create_tcp_server_socket() - create "
                                     "server socket on port [0] failed.");
}

TEST_F(SocketCoreTest, accepts_with_the_listeners_type_and_protocol) {
    Socket* const server = listener();
    RawClient client(server->local.port);
    server->type = static_cast<SOCKET_TYPE>(7);
    server->protocol = static_cast<SOCKET_PROTOCOL>(8);
    log.take_all();
    Socket* const accepted = keep(core.accept_connection(server));
    ASSERT_NE(accepted, nullptr);
    EXPECT_EQ(accepted->type, 7);
    EXPECT_EQ(accepted->protocol, 8);
    EXPECT_EQ(accepted->local.port, 0);
    EXPECT_EQ(accepted->remote.port, 0);
    EXPECT_STREQ(accepted->remote.host, "");
    EXPECT_EQ(log.take_all(),
              Lines{text("<o> orvex::SocketCore::accept_connection() - accept client socket ",
                         accepted->fd, text(" on port ", server->local.port, " ok."))});
}

TEST_F(SocketCoreTest, accepting_fails_on_a_socket_that_does_not_listen) {
    Socket* const socket = tcp();
    socket->local.port = 77;
    log.take_all();
    EXPECT_EQ(core.accept_connection(socket), nullptr);
    EXPECT_EQ(log.take_all(),
              Lines{"<*> orvex::SocketCore::accept_connection() - accept client on port [77] "
                    "failed."});
}

TEST_F(SocketCoreTest, connects_by_name_and_by_address) {
    Socket* const server = listener();
    const int port = server->local.port;
    SockAddr addr;
    addr.port = server->local.port;
    std::strcpy(addr.host, "127.0.0.1");
    Socket* const first = tcp();
    Socket* const second = tcp();
    log.take_all();
    EXPECT_TRUE(core.connect_socket(first, "localhost", server->local.port));
    EXPECT_TRUE(core.connect_socket(second, &addr));
    const Lines expected = {
        text("<o> orvex::SocketCore::connect_socket() - socket connection to server localhost on "
             "port ",
             port, " ok."),
        text("<o> orvex::SocketCore::connect_socket() - socket connection to server 127.0.0.1 on "
             "port ",
             port, " ok."),
    };
    EXPECT_EQ(log.take_all(), expected);
}

TEST_F(SocketCoreTest, a_refused_connection_fails) {
    Socket* const server = listener();
    const unsigned short port = server->local.port;
    core.close_socket(server);
    Socket* const socket = tcp();
    log.take_all();
    EXPECT_FALSE(core.connect_socket(socket, "127.0.0.1", port));
    EXPECT_EQ(log.take_all(),
              Lines{text("<*> orvex::SocketCore::connect_socket() - socket connection to server "
                         "127.0.0.1 on port ",
                         port, " failed.")});
}

/// Four numbers that are no address: refused without asking anybody.
TEST_F(SocketCoreTest, this_machine_is_found_without_a_look_up) {
    Socket* const server = listener();
    Socket* const messages = keep(core.create_udp_server_socket(0));
    NetworkCalls calls;
    for (const char* host : {"localhost", "127.0.0.1"}) {
        EXPECT_TRUE(core.connect_socket(tcp(), host, server->local.port)) << host;
        EXPECT_EQ(core.send_udp(udp(), host, messages->local.port, "x", 1), 1) << host;
    }
    EXPECT_EQ(calls.lookups, 0);
}

constexpr char unknown_host[] = "127.0.0.256";

TEST_F(SocketCoreTest, an_unknown_host_is_a_failed_connection) {
    Socket* const socket = tcp();
    log.take_all();
    EXPECT_FALSE(core.connect_socket(socket, unknown_host, 99));
    EXPECT_EQ(log.take_all(),
              Lines{"<*> orvex::SocketCore::connect_socket() - socket connection to server "
                    "127.0.0.256 on port 99 failed."});
}

TEST_F(SocketCoreTest, a_message_to_an_unknown_host_fails_silently) {
    Socket* const socket = udp();
    log.take_all();
    EXPECT_EQ(core.send_udp(socket, unknown_host, 99, "x", 1), -1);
    EXPECT_TRUE(log.take_all().empty());
}

/// Two ends of one connection.
class ConnectionTest : public SocketCoreTest {
protected:
    ConnectionTest()
        : server(listener())
        , client(server->local.port)
        , socket(keep(core.accept_connection(server))) {
        log.take_all();
    }

    Socket* server;
    RawClient client;
    Socket* socket;
};

TEST_F(ConnectionTest, sends_once) {
    EXPECT_EQ(core.send_socket(socket, "hello", 5), 5);
    EXPECT_EQ(client.receive(5), "hello");
    EXPECT_TRUE(log.take_all().empty());
}

TEST_F(ConnectionTest, a_send_may_be_short) {
    core.set_socket_option(socket, SOCKET_OPTION_NONBLOCKING);
    const std::string much(64u << 20, 'x');
    const int sent = core.send_socket(socket, much.data(), static_cast<int>(much.size()));
    EXPECT_GT(sent, 0);
    EXPECT_LT(sent, static_cast<int>(much.size()));
}

TEST_F(ConnectionTest, peeks_and_receives) {
    ASSERT_TRUE(client.send("hello"));
    EXPECT_EQ(core.receive_socket_get_data_len(socket), 5);
    EXPECT_EQ(core.receive_socket_get_data_len(socket), 5) << "the data stays";
    char buffer[6] = {};
    EXPECT_EQ(core.receive_socket(socket, buffer, 5), 5);
    EXPECT_STREQ(buffer, "hello");
    EXPECT_EQ(log.take_all(),
              Lines{text("<o> orvex::SocketCore::receive_socket() - received 5 bytes on socket ",
                         socket->fd, " - buffer: hello")});
}

TEST_F(ConnectionTest, shows_no_more_of_the_buffer_than_its_length) {
    ASSERT_TRUE(client.send("abcdef"));
    char buffer[8] = {'-', '-', '-', '-', '-', '-', '-', '-'};
    ASSERT_EQ(core.receive_socket(socket, buffer, 3), 3);
    EXPECT_EQ(log.take_all().back(),
              text("<o> orvex::SocketCore::receive_socket() - received 3 bytes on socket ",
                   socket->fd, " - buffer: abc"));
    ASSERT_EQ(core.receive_socket(socket, buffer, 2), 2);
    ASSERT_TRUE(client.send({"g\0h", 3}));
    ASSERT_EQ(core.receive_socket_get_data_len(socket), 4);
    ASSERT_EQ(core.receive_socket(socket, buffer, 4), 4);
    EXPECT_EQ(log.take_all().back(),
              text("<o> orvex::SocketCore::receive_socket() - received 4 bytes on socket ",
                   socket->fd, " - buffer: fg"));
}

TEST_F(ConnectionTest, shows_no_more_of_the_buffer_than_was_received) {
    ASSERT_TRUE(client.send("hi"));
    char buffer[] = "password:secret";
    ASSERT_EQ(core.receive_socket(socket, buffer, sizeof buffer), 2);
    EXPECT_EQ(log.take_all().back(),
              text("<o> orvex::SocketCore::receive_socket() - received 2 bytes on socket ",
                   socket->fd, " - buffer: hi"));
}

TEST_F(ConnectionTest, a_long_message_is_peeked_at_up_to_1023_bytes) {
    ASSERT_TRUE(client.send(std::string(2000, 'x')));
    client.end_sending();
    std::string buffer(1024, '\0');
    EXPECT_EQ(core.receive_socket_get_data_len(socket), 1023);
    EXPECT_EQ(core.receive_socket(socket, buffer.data(), 1023), 1023);
    EXPECT_EQ(core.receive_socket_get_data_len(socket), 977);
}

TEST_F(ConnectionTest, a_closed_peer_is_nothing_to_receive) {
    client.close();
    char buffer[4] = {};
    EXPECT_EQ(core.receive_socket_get_data_len(socket), 0);
    EXPECT_EQ(core.receive_socket(socket, buffer, 4), 0);
    EXPECT_TRUE(log.take_all().empty());
}

TEST_F(ConnectionTest, a_reset_is_a_failure) {
    client.reset();
    char buffer[4] = {};
    EXPECT_EQ(core.receive_socket_get_data_len(socket), -1);
    EXPECT_EQ(core.receive_socket(socket, buffer, 4), 0) << "told once by the system";
    EXPECT_TRUE(log.take_all().empty());
}

TEST_F(ConnectionTest, sending_to_a_closed_peer_fails_without_a_signal) {
    struct sigaction before {};
    ASSERT_EQ(sigaction(SIGPIPE, nullptr, &before), 0);
    ASSERT_EQ(before.sa_handler, SIG_DFL) << "a signal would end this program";
    core.shutdown_socket(socket);
    EXPECT_EQ(core.send_socket(socket, "x", 1), -1);
    EXPECT_EQ(errno, EPIPE);
    struct sigaction after {};
    ASSERT_EQ(sigaction(SIGPIPE, nullptr, &after), 0);
    EXPECT_EQ(after.sa_handler, SIG_DFL);
}

TEST_F(SocketCoreTest, messages_carry_their_sender) {
    Socket* const server = keep(core.create_udp_server_socket(0));
    Socket* const sender = keep(core.create_udp_server_socket(0));
    log.take_all();
    EXPECT_EQ(core.send_udp(sender, "localhost", server->local.port, "hello", 5), 5);
    EXPECT_EQ(log.take_all(),
              Lines{text("<o> orvex::SocketCore::send_udp() - sent 5 bytes on socket ", sender->fd,
                         ".")});
    SockAddr from;
    std::memset(from.host, 'x', sizeof from.host);
    char buffer[16] = {};
    EXPECT_EQ(core.receive_udp(server, &from, buffer, 16), 5);
    EXPECT_STREQ(buffer, "hello");
    EXPECT_STREQ(from.host, "127.0.0.1");
    EXPECT_EQ(from.host[127], '\0');
    EXPECT_EQ(from.port, sender->local.port);
    EXPECT_EQ(log.take_all(), Lines{text("<o> orvex::SocketCore::receive_udp() - socket ",
                                         server->fd, " - received 5 bytes from 127.0.0.1.")});
}

TEST_F(SocketCoreTest, messages_are_received_without_asking_for_the_sender) {
    Socket* const server = keep(core.create_udp_server_socket(0));
    Socket* const sender = udp();
    char buffer[4] = {};
    ASSERT_EQ(core.send_udp(sender, "127.0.0.1", server->local.port, "longer", 6), 6);
    log.take_all();
    EXPECT_EQ(core.receive_udp(server, nullptr, buffer, 4), 4) << "the rest is lost";
    EXPECT_EQ(log.take_all(), Lines{text("<o> orvex::SocketCore::receive_udp() - socket ",
                                         server->fd, " - received 4 bytes.")});
}

TEST_F(SocketCoreTest, switches_options_on) {
    Socket* const stream = tcp();
    Socket* const message = udp();
    log.take_all();
    core.set_socket_option(stream, SOCKET_OPTION_REUSEADDR);
    core.set_socket_option(stream, SOCKET_OPTION_TCPNODELAY);
    core.set_socket_option(message, SOCKET_OPTION_BROADCAST);
    EXPECT_NE(option(stream, SOL_SOCKET, SO_REUSEADDR), 0);
    EXPECT_NE(option(stream, IPPROTO_TCP, TCP_NODELAY), 0);
    EXPECT_NE(option(message, SOL_SOCKET, SO_BROADCAST), 0);

    fcntl(stream->fd, F_SETFL, O_ASYNC);
    core.set_socket_option(stream, SOCKET_OPTION_NONBLOCKING);
    EXPECT_EQ(fcntl(stream->fd, F_GETFL) & (O_NONBLOCK | O_ASYNC), O_NONBLOCK);
    EXPECT_TRUE(log.take_all().empty());
}

TEST_F(SocketCoreTest, tells_which_option_it_could_not_set) {
    struct Row {
        int option;
        const char* line; ///< null: silent
    };
    const Row rows[] = {
        {1, "<o> orvex::SocketCore::set_socket_option() - socket 0 - unable to set socket option "
            "SOCKET_OPTION_REUSEADDR."},
        {2, "<o> orvex::SocketCore::set_socket_option() - socket 0 - unable to set socket option "
            "SOCKET_OPTION_TCPNODELAY."},
        {3, nullptr},
        {4, "<*> orvex::SocketCore::set_socket_option() - socket 0 - unable to set socket option "
            "SOCKET_OPTION_BROADCAST."},
        {0, "<*> orvex::SocketCore::set_socket_option() - socket 0 - unknown option (0)."},
        {-3, "<*> orvex::SocketCore::set_socket_option() - socket 0 - unknown option (-3)."},
    };
    Socket closed;
    for (const Row& row : rows) {
        core.set_socket_option(&closed, static_cast<SOCKET_OPTION>(row.option));
        EXPECT_EQ(log.take_all(), row.line ? Lines{row.line} : Lines{}) << row.option;
    }
}

TEST_F(SocketCoreTest, an_unknown_option_changes_nothing) {
    Socket* const socket = tcp();
    log.take_all();
    const int flags = fcntl(socket->fd, F_GETFL);
    core.set_socket_option(socket, static_cast<SOCKET_OPTION>(9));
    EXPECT_EQ(log.take_all(), Lines{text("<*> orvex::SocketCore::set_socket_option() - socket ",
                                         socket->fd, " - unknown option (9).")});
    EXPECT_EQ(fcntl(socket->fd, F_GETFL), flags);
    EXPECT_EQ(option(socket, SOL_SOCKET, SO_REUSEADDR), 0);
    EXPECT_EQ(option(socket, IPPROTO_TCP, TCP_NODELAY), 0);
    EXPECT_EQ(option(socket, SOL_SOCKET, SO_BROADCAST), 0);
}

} // namespace
} // namespace orvex_test
