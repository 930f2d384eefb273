#pragma once

/// @file
/// GlobalId and the small facts of process and thread.

#include <cstdint>

#include "orvex/api.h"
#include "orvex/base/thread_lock.h"

namespace orvex {

/// Gives out the ids of nodes and plugins, from 2 upwards: 0 and 1 are never ids.
///
/// One per process, made on first use and never destroyed.
class ORVEX_API GlobalId {
public:
    /// The only instance.
    static GlobalId* get();

    GlobalId(const GlobalId&) = delete;
    GlobalId& operator=(const GlobalId&) = delete;

    /// The next id. Any thread may call it; no two of 2^32 calls give the same.
    std::uint32_t id();

    /// The next id without the lock, while only one thread asks for ids.
    std::uint32_t id_fast();

private:
    GlobalId() = default;
    ~GlobalId() = default;

    std::uint32_t counter = 1;
    ThreadLock lock;
};

/// The next id of the process, from any thread.
ORVEX_API int GenId();

/// Whether this is a 64-bit build.
ORVEX_API bool Is64BitApp();

/// Lets the calling thread sleep; a signal may cut it short.
/// @param ms  milliseconds; a time of 2^32 microseconds or more wraps around
ORVEX_API void ThreadSleep(unsigned long ms);

/// Lets the calling thread sleep; a signal may cut it short.
/// @param us  microseconds, 0 to 2^32 - 1; more wraps around
ORVEX_API void ThreadSleep_micro(unsigned long us);

/// Lets the calling thread sleep; a signal may cut it short.
/// @param ns  nanoseconds, 0 to 999,999,999; a second or more returns at once
ORVEX_API void ThreadSleep_nano(unsigned long ns);

} // namespace orvex
