#pragma once

#include <atomic>
#include <functional>

namespace orvex_test {

/// What happens to the calls that the test program catches on their way from the engine, until the
/// end of its scope. One at a time; any thread may call.
class NetworkCalls {
public:
    NetworkCalls() = default;
    NetworkCalls(const NetworkCalls&) = delete;
    NetworkCalls& operator=(const NetworkCalls&) = delete;
    ~NetworkCalls() {
        keep_sockets_back = false;
        no_threads = false;
        no_start = false;
        interrupted_peeks = 0;
        lookups = 0;
        accepts = 0;
        thread_exits = 0;
        at_refused_accept = nullptr;
    }

    static inline std::atomic<bool> keep_sockets_back = false; ///< `socket` fails, and is noted
    static inline std::atomic<bool> no_threads = false;        ///< `pthread_create` fails
    static inline std::atomic<bool> no_start = false;          ///< `SocketCore::start` fails

    static inline std::atomic<int> interrupted_peeks = 0; ///< so many are cut off by a signal

    static inline std::atomic<int> lookups = 0;      ///< of names
    static inline std::atomic<int> accepts = 0;      ///< asked for, whatever came
    static inline std::atomic<int> thread_exits = 0; ///< threads that ended in `pthread_exit`

    /// Done on the thread that accepts when the system refuses, before it learns of that. To be set
    /// before a server runs.
    static inline std::function<void()> at_refused_accept;

    static inline std::atomic<int> domain = 0;
    static inline std::atomic<int> type = 0;
    static inline std::atomic<int> protocol = 0;
};

} // namespace orvex_test
