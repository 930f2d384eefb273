// Servers and sockets.

#include <string>

#include "../clients.h"
#include "../scenarios.h"

namespace orvex_test {

using namespace orvex;

namespace {

void obey(SocketCore* core, Socket* client, unsigned char* text, int size, void*) {
    core->send_socket(client, text, size - 1);
}

void obey_v2(SocketCore* core, Socket* client, void*, void*) {
    char bytes[64];
    const int count = core->receive_socket(client, bytes, sizeof bytes);
    core->send_socket(client, bytes, count);
}

/// The server until it is stopped, asked in between. A message may be lost to the fault, the next
/// one isn't.
void serve(Stage& stage, TcpServer& server, ServedPort::Style style) {
    ServedPort port;
    stage.get_quietly("run", [&] { return port.start(server, style); });
    for (const char* const text : {"one", "two", "three"})
        stage.get_quietly("a message", [&] { return ask(port.number(), text) == text; });
    stage.get_quietly("send_stop_message", [&] { return ServedPort::stop(server); });
    stage.tell("run", port.wait());
}

} // namespace

void play_server(Stage& stage) {
    stage.start_engine();
    TcpServer* const server = stage.make<TcpServer>();
    server->set_client_proc(obey, nullptr);
    serve(stage, *server, &TcpServer::run);
    stage.run_quietly("stop", [&] { server->stop(); });
    stage.run_quietly("~TcpServer", [&] { delete server; });
    stage.close();
}

void play_server_threads(Stage& stage) {
    stage.start_engine();
    TcpServer* const server = stage.make<TcpServer>();
    server->threaded_client_callback(true);
    server->set_client_proc_v2(obey_v2, nullptr);
    serve(stage, *server, &TcpServer::run_v2);
    stage.run_quietly("stop", [&] { server->stop(); });
    stage.run_quietly("~TcpServer", [&] { delete server; });
    stage.close();
}

void play_sockets(Stage& stage) {
    stage.start_engine();
    SocketCore* const core = stage.make<SocketCore>();
    stage.get("start", [&] { return core->start(); });
    Socket* const receiver =
        stage.get("create_udp_server_socket", [&] { return core->create_udp_server_socket(0); });
    Socket* const sender = stage.get("create_socket", [&] {
        return core->create_socket(SOCKET_TYPE_DGRAM, SOCKET_PROTOCOL_UDP);
    });
    stage.get("send_udp", [&] {
        return core->send_udp(sender, "127.0.0.1", receiver->local.port, "hello", 5) == 5;
    });
    char bytes[17] = {};
    SockAddr from;
    // What was cut short on its way comes first.
    while (std::string(bytes) != "hello") {
        const int count = stage.get("receive_udp", [&] {
            const int got = core->receive_udp(receiver, &from, bytes, 16);
            return got > 0 ? got : 0;
        });
        bytes[count] = '\0';
    }
    stage.tell("received", std::string(bytes));
    stage.run_quietly("kill_socket", [&] { core->kill_socket(sender); });
    stage.run_quietly("kill_socket", [&] { core->kill_socket(receiver); });
    stage.run_quietly("~SocketCore", [&] { delete core; });
    stage.close();
}

} // namespace orvex_test
