#pragma once

namespace orvex::test {

/// What happens to the calls that the test program catches on their way from the engine, until the
/// end of its scope. One at a time, set before threads start.
class NetworkCalls {
public:
    NetworkCalls();
    NetworkCalls(const NetworkCalls&) = delete;
    NetworkCalls& operator=(const NetworkCalls&) = delete;
    ~NetworkCalls();

    bool keep_sockets_back = false; ///< `socket` fails, its arguments are noted
    bool no_threads = false;        ///< `pthread_create` fails
    bool no_start = false;          ///< `SocketCore::start` fails

    int domain = 0;
    int type = 0;
    int protocol = 0;
};

} // namespace orvex::test
