#pragma once

/// @file
/// ThreadLock: the mutex of the engine.

#include <memory>

#include "orvex/api.h"

namespace orvex {

/// A mutex that takes a system resource only when it is first acquired. Not recursive: acquiring it
/// twice on one thread blocks for ever. Any thread may use it, also for the first time.
///
/// @code
/// orvex::ThreadLock lock;
/// lock.acquire();
/// shared_value += 1;
/// lock.release();
/// @endcode
class ORVEX_API ThreadLock {
public:
    /// Free, and without a system resource yet.
    ThreadLock();
    ThreadLock(const ThreadLock&) = delete;
    ThreadLock& operator=(const ThreadLock&) = delete;
    /// Expects the lock to be free.
    ~ThreadLock();

    /// Waits until the lock is free and takes it.
    /// @return 0, or the error number of the system
    int acquire();

    /// Frees the lock; the thread that holds it calls this.
    /// @return 0, or the error number of the system; `EPERM` if the lock was never acquired
    int release();

private:
    struct ThreadLockData;
    std::unique_ptr<ThreadLockData> data;
};

} // namespace orvex
