#pragma once

/// @file
/// The lock of one context.

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace orvex {

/// A counting lock that can be given back only by the thread that holds it.
///
/// One per context, for hosts that draw from two threads: `context_lock_of` gives it.
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

/// The one lock of a native context, whoever asks. It lives as long as somebody holds it: a later
/// context at the same address gets another.
/// @param native  what the window system calls the context
std::shared_ptr<ContextLock> context_lock_of(const void* native);

} // namespace orvex
