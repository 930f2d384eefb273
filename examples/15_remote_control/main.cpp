// A host without a screen that renders, and obeys texts which come in on a TCP port of this
// machine:
//
//   remote_control 9600 &
//   echo load examples/data/lighthouse.obj | nc -N localhost 9600
//   echo turn 30 | nc -N localhost 9600
//   echo screenshot /tmp/picture.jpg | nc -N localhost 9600
//   echo quit | nc -N localhost 9600
//
// Each connection carries one text and brings back one line, "ok" or "error: ...". The server has a
// thread of its own, and the render thread obeys between two frames. The port is open to every
// machine that can reach this one: whoever connects is obeyed. `set_listen_address("127.0.0.1")`
// would let in this machine alone. With `run_v2` in place of `run` the render thread would also
// call `cleanup_client_threads` once or twice a second, since 128 connections take all slots.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include <orvex/network/socket_core.h>
#include <orvex/network/tcp_server.h>

#include "command_queue.h"
#include "stage.h"

using namespace orvex;

namespace {

enum ExitCode { SUCCESS = 0, FAILURE = 1, USAGE = 2 };

struct Remote {
    TcpServer server;
    CommandQueue queue;
};

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    const std::size_t last = text.find_last_not_of(std::string(" \t\r\n\0", 5));
    return first == text.npos || last < first ? std::string()
                                              : text.substr(first, last - first + 1);
}

/// On the server's thread: hands the text over and sends the answer back.
void hand_over(SocketCore* core, Socket* client, unsigned char* message, int size,
               void* user_data) {
    auto& remote = *static_cast<Remote*>(user_data);
    const std::string text(reinterpret_cast<char*>(message), static_cast<std::size_t>(size - 1));
    const std::string answer = remote.queue.ask(trimmed(text)) + "\n";
    core->send_socket(client, answer.data(), static_cast<int>(answer.size()));
    // Said from here, so that the server doesn't wait for another client first.
    if (remote.queue.is_closed())
        remote.server.send_stop_message();
}

std::string load(Stage& stage, const std::string& path) {
    const std::string mistake = stage.load(path);
    return mistake.empty() ? "ok" : "error: " + mistake;
}

std::string turn(Stage& stage, const std::string& text) {
    char* end = nullptr;
    const float degrees = std::strtof(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !std::isfinite(degrees))
        return "error: turn DEGREES";
    stage.turn(degrees);
    return "ok";
}

std::string take_screenshot(Stage& stage, const std::string& path) {
    return stage.screenshot(path) ? "ok" : "error: can't write " + path;
}

struct Verb {
    const char* name;
    std::string (*obey)(Stage& stage, const std::string& argument);
};

constexpr Verb verbs[] = {
    {"load", load},
    {"screenshot", take_screenshot},
    {"turn", turn},
};

std::string obey(Stage& stage, const std::string& text) {
    const std::size_t blank = std::min(text.find_first_of(" \t"), text.size());
    const std::string name = text.substr(0, blank);
    for (const Verb& verb : verbs)
        if (name == verb.name)
            return verb.obey(stage, trimmed(text.substr(blank)));
    return "error: load FILE, turn DEGREES, screenshot FILE or quit";
}

/// One frame after the other, with the texts in between.
void render(Stage& stage, Remote& remote, int port) {
    constexpr std::chrono::milliseconds frame_time(33);
    bool told = false;
    while (!remote.queue.is_closed()) {
        if (!told && remote.server.is_running()) {
            std::printf("listening on port %d\n", port);
            std::fflush(stdout);
            told = true;
        }
        if (std::optional<Command> command = remote.queue.take(frame_time)) {
            const bool quit = command->text == "quit";
            if (quit)
                remote.queue.close();
            command->answer.set_value(quit ? "ok" : obey(stage, command->text));
        }
        stage.draw();
        stage.show();
    }
}

int fail(const std::string& mistake) {
    std::fprintf(stderr, "remote_control: %s\n", mistake.c_str());
    return FAILURE;
}

int run(int port) {
    Stage stage;
    if (const std::string mistake = stage.open(640, 480); !mistake.empty())
        return fail(mistake);
    Remote remote;
    remote.server.set_client_proc(hand_over, &remote);
    // Who looks whether the port is open, and says nothing, keeps no descriptor.
    remote.server.close_unserved_connections(true);
    bool listened = true;
    std::thread service([&] {
        const bool stopped = remote.server.run(static_cast<unsigned short>(port));
        // Still running, for the server, after a stop from this side.
        listened = stopped || remote.server.is_running();
        remote.queue.close();
    });
    render(stage, remote, port);
    service.join();
    remote.server.stop();
    return listened ? SUCCESS : fail("can't listen on port " + std::to_string(port));
}

} // namespace

int main(int argc, char** argv) {
    const long port = argc == 2 ? std::strtol(argv[1], nullptr, 10) : 0;
    if (port < 1 || port > 65535) {
        std::fputs("usage: remote_control PORT\n", stderr);
        return USAGE;
    }
    return run(static_cast<int>(port));
}
