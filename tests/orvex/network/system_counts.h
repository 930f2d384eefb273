#pragma once

#include <chrono>
#include <filesystem>
#include <iterator>
#include <thread>

#include <sys/resource.h>

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

/// Threads of the process, with one that a tool under which it runs may start beside the first.
inline long count_threads() {
    static const bool had_one = (std::thread([] {}).join(), true);
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

/// Limits the number of open descriptors, or lifts the limit, until the end of its scope.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t limit) {
        getrlimit(RLIMIT_NOFILE, &before);
        rlimit changed = before;
        changed.rlim_cur = std::min(limit, before.rlim_max);
        setrlimit(RLIMIT_NOFILE, &changed);
    }
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &before); }

private:
    rlimit before{};
};

} // namespace orvex_test
