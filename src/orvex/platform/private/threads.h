#pragma once

/// @file
/// Threads and mutexes of the system.

#include <atomic>

#include <pthread.h>

namespace orvex {

/// The calling thread.
pthread_t current_thread();

/// Whether both name the same thread.
bool is_same_thread(pthread_t one, pthread_t other);

/// Runs `body` with `argument` on a new thread, which somebody joins or detaches.
/// @param thread  takes the name of the new thread, perhaps after it has begun to run
/// @return false if the system has no thread to give
bool start_thread(pthread_t& thread, void* (*body)(void*), void* argument);

/// Waits for the end of a thread, and frees what the system keeps for it.
void join_thread(pthread_t thread);

/// Lets the system free what it keeps for a thread as soon as that ends.
void detach_thread(pthread_t thread);

/// Ends the calling thread.
[[noreturn]] void end_this_thread();

/// A mutex that costs no system resource before it is locked for the first time. Any thread may be
/// the first. Not recursive.
class LazyMutex {
public:
    LazyMutex() = default;
    LazyMutex(const LazyMutex&) = delete;
    LazyMutex& operator=(const LazyMutex&) = delete;
    ~LazyMutex();

    /// @return 0, or the error number of the system
    int lock();

    /// @return 0, or the error number of the system; `EPERM` if it was never locked
    int unlock();

private:
    void initialize();

    std::atomic<bool> initialized{false};
    pthread_mutex_t mutex;
    pthread_mutexattr_t attributes;
};

} // namespace orvex
