#pragma once

#include <future>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "log_lines.h"
#include "orvex/network/tcp_server.h"
#include "raw_client.h"

namespace orvex_test {

using namespace orvex;

/// A server on a thread of its own and a port of the system's choice.
class RunningServer {
public:
    using Style = bool (TcpServer::*)(unsigned short);

    /// Returns when the server listens. `server` and `log` outlive it.
    RunningServer(TcpServer& server, Style style, LogLines& log)
        : server(server)
        , result(std::async(std::launch::async,
                            [this, &server, style] { return (server.*style)(0); })) {
        const std::string beginning = "<o> orvex::SocketCore::listen_socket() - listen on port ";
        const std::string line = log.wait_for(beginning);
        if (line.size() > beginning.size())
            listening_port = std::stoi(line.substr(beginning.size()));
        while (!server.is_running())
            std::this_thread::yield();
    }
    RunningServer(const RunningServer&) = delete;
    RunningServer& operator=(const RunningServer&) = delete;
    ~RunningServer() {
        if (result.valid())
            stop_and_wait();
    }

    int port() const { return listening_port; }

    /// What `run` returned; waits for it.
    bool wait() { return result.get(); }

    /// Stops it from outside.
    bool stop_and_wait() {
        EXPECT_TRUE(server.send_stop_message());
        return wait();
    }

    /// Sends a message and gives what comes back until the server ends the connection.
    std::string ask(std::string_view message) const {
        RawClient client(listening_port);
        EXPECT_TRUE(client.connected());
        EXPECT_TRUE(client.send(message));
        return client.receive();
    }

private:
    TcpServer& server;
    int listening_port = 0;
    std::future<bool> result;
};

} // namespace orvex_test
