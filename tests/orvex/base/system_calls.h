#pragma once

#include <ctime>

#include <sys/time.h>

namespace orvex_test {

/// Stands between the engine and the system: the linker sends the calls of the engine here. They
/// are counted, and with `fake` set clocks and sleeps answer from this record.
struct SystemCalls {
    bool fake = false;
    timeval wall{};
    clock_t ticks = 0;
    time_t calendar = 0;
    unsigned microseconds_slept = 0;
    timespec nanoseconds_slept{};
    int mutexes_made = 0;
    int mutexes_destroyed = 0;
};

extern SystemCalls system_calls;

} // namespace orvex_test
