#pragma once

#include <atomic>
#include <future>
#include <string>

#include <orvex/network/tcp_server.h>

/// @file
/// A server on a thread of its own, and clients that owe nothing to the engine's sockets: no fault
/// meets them.

namespace orvex_test {

/// A server at work, on a port of the system's choice. It listens to the engine's log, which names
/// the port, as long as it lives: the log's callback may not change while threads of an earlier run
/// still write. One at a time, once the log has been started.
class ServedPort {
public:
    using Style = bool (orvex::TcpServer::*)(unsigned short);

    ServedPort();
    ~ServedPort();
    ServedPort(const ServedPort&) = delete;
    ServedPort& operator=(const ServedPort&) = delete;

    /// Waits until the server listens.
    /// @return false if it ended without
    bool start(orvex::TcpServer& server, Style style);
    int number() const { return port; }
    /// Tells the server to stop.
    /// @return false if it can't be told
    static bool stop(orvex::TcpServer& server) { return server.send_stop_message(); }
    /// Waits for its end, and closes the listener: one that was stopped from outside stays open to
    /// the end of the process, and here the process goes on.
    /// @return what `run` or `run_v2` returned
    bool wait();

private:
    std::atomic<int> port = 0;
    std::future<bool> result;

    static void look(const char* line, void* self);
};

/// Sends a text and gives the answer; empty when none came within a second.
std::string ask(int port, const std::string& text);

} // namespace orvex_test
