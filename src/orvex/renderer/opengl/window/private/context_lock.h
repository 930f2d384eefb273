#pragma once

/// @file
/// The lock of one context.

#include <condition_variable>
#include <mutex>
#include <thread>

namespace orvex {

/// A counting lock that can be given back only by the thread that holds it.
///
/// One per render window that has a context, for hosts that draw from two threads.
class ContextLock {
public:
    /// Waits until no other thread holds the lock.
    void lock();
    /// @return false, with nothing done, when the calling thread doesn't hold the lock
    bool unlock();

private:
    std::mutex mutex;
    std::condition_variable free;
    std::thread::id owner;
    int depth = 0;
};

} // namespace orvex
