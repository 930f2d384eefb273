#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/limit.h"

namespace orvex_test {

using namespace orvex;

inline long entries_of(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder),
                         std::filesystem::directory_iterator());
}

/// Open descriptors of the process, and one more for the counting itself.
inline long count_descriptors() {
    return entries_of("/proc/self/fd");
}

/// Whether so many descriptors are open, or one less: a server that is told to stop just before it
/// looks at its flag doesn't take the connection that was to wake it.
inline bool has_descriptors_after_stop(long most) {
    const long count = count_descriptors();
    return count == most || count == most - 1;
}

/// Starts a thread, and waits until the system has forgotten it.
inline bool has_had_a_thread() {
    std::atomic<pid_t> id = 0;
    std::thread([&id] { id = gettid(); }).join();
    while (std::filesystem::exists("/proc/self/task/" + std::to_string(id)))
        std::this_thread::yield();
    return true;
}

/// Threads of the process, with one that a tool under which it runs may start beside the first.
inline long count_threads() {
    static const bool had_one = has_had_a_thread();
    static_cast<void>(had_one);
    return entries_of("/proc/self/task");
}

/// Lets others go on until something holds, with an end to the patience.
template<typename Condition>
bool eventually(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(100);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::yield();
    }
    return true;
}

/// A thread that was joined, or has detached itself, stays in the list for a moment.
inline bool threads_become(long number) {
    return eventually([number] { return count_threads() == number; });
}

/// Threads of the process before the first test.
inline const long threads_at_rest = count_threads();

/// The base of tests that count descriptors or threads: it begins when all threads of earlier tests
/// have ended. A client thread that nobody joins closes its connection after its client has seen
/// the end, so that a count taken too early counts what is about to go.
class QuietTest : public testing::Test {
protected:
    QuietTest() { EXPECT_TRUE(threads_become(threads_at_rest)); }
};

/// Limits the number of open descriptors, or lifts the limit, until the end of its scope.
class DescriptorLimit : public Limit {
public:
    explicit DescriptorLimit(rlim_t limit)
        : Limit(RLIMIT_NOFILE, limit) {}
};

} // namespace orvex_test
