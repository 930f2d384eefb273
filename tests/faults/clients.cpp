#include "clients.h"

#include <chrono>
#include <cstdlib>
#include <cstring>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <orvex/base/log.h>
#include <orvex/kernel/core.h>

namespace orvex_test {

using namespace orvex;

void ServedPort::look(const char* line, void* self) {
    static const char words[] = "listen_socket() - listen on port ";
    const char* const found = std::strstr(line, words);
    if (!found)
        return;
    char* rest = nullptr;
    const long number = std::strtol(found + sizeof words - 1, &rest, 10);
    // A port that can't be listened on is logged, too.
    if (std::strncmp(rest, " ok", 3) == 0)
        static_cast<ServedPort*>(self)->port = static_cast<int>(number);
}

ServedPort::ServedPort() {
    core::log_set_callback(look, this);
    core::log_get_default()->set_trace_level_threshold(LOG_LEVEL_DEBUG);
}

ServedPort::~ServedPort() {
    core::log_set_callback(nullptr, nullptr);
}

bool ServedPort::start(TcpServer& server, Style style) {
    port = 0;
    result = std::async(std::launch::async, [&server, style] { return (server.*style)(0); });
    while (!server.is_running() || port == 0)
        if (result.wait_for(std::chrono::milliseconds(1)) == std::future_status::ready) {
            // It listened, and was stopped before it was looked at: its result is for `wait`.
            if (port != 0)
                return true;
            // Throws what `run` let out.
            return result.get();
        }
    return true;
}

namespace {

/// Connections that were accepted have the same port.
bool is_listener_at(int fd, int port) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    int listens = 0;
    socklen_t flag_size = sizeof listens;
    return getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
           address.sin_family == AF_INET && ntohs(address.sin_port) == port &&
           getsockopt(fd, SOL_SOCKET, SO_ACCEPTCONN, &listens, &flag_size) == 0 && listens;
}

} // namespace

bool ServedPort::wait() {
    const bool returned = result.get();
    for (int fd = 3; fd < 256; ++fd)
        if (is_listener_at(fd, port))
            close(fd);
    return returned;
}

std::string ask(int port, const std::string& text) {
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    const timeval patience{1, 0};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    std::string answer;
    if (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        send(fd, text.data(), text.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(text.size())) {
        char bytes[64];
        const ssize_t count = recv(fd, bytes, sizeof bytes, 0);
        if (count > 0)
            answer.assign(bytes, static_cast<std::size_t>(count));
    }
    close(fd);
    return answer;
}

} // namespace orvex_test
