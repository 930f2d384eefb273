/// @file
/// A host with a server, for server_stop_test.py: it starts a child that outlives it, says its port
/// and the child's number, stops the server at the first byte from outside, says how many
/// milliseconds that took, and ends.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include <spawn.h>
#include <unistd.h>

#include "log_lines.h"
#include "orvex/network/tcp_server.h"

namespace {

using namespace orvex_test;

/// A child with nothing to do, which is given no file but those that every child gets.
pid_t start_child() {
    char name[] = "sleep";
    char seconds[] = "600";
    char* arguments[] = {name, seconds, nullptr};
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", 1, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", 1, 0);
    pid_t child = 0;
    posix_spawnp(&child, name, &files, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&files);
    return child;
}

int serve() {
    LogLines log;
    TcpServer server;
    bool result = true;
    std::thread thread([&] { result = server.run(0); });
    const std::string beginning = "<o> orvex::SocketCore::listen_socket() - listen on port ";
    const std::string line = log.wait_for(beginning);
    std::printf("port %d\n", std::atoi(line.c_str() + beginning.size()));
    std::fflush(stdout);
    log.wait_for("<o> orvex::SocketCore::accept_connection() - accept client socket ");
    std::printf("child %d\n", static_cast<int>(start_child()));
    std::fflush(stdout);
    // The first byte.
    std::getchar();
    const auto begin = std::chrono::steady_clock::now();
    const bool stopped = server.send_stop_message();
    thread.join();
    const auto time = std::chrono::steady_clock::now() - begin;
    std::printf("stopped in %d ms\n", static_cast<int>(time / std::chrono::milliseconds(1)));
    return stopped && !result && server.stop() ? 0 : 1;
}

} // namespace

int main() {
    return serve();
}
