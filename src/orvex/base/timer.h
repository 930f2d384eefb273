#pragma once

/// @file
/// Timer: elapsed wall and processor time.

#include <cstdint>
#include <ctime>

#include "orvex/api.h"

namespace orvex {

/// Measures the time since it was made or last reset. A plain value for one thread.
///
/// @code
/// orvex::Timer timer;
/// draw();
/// float dt = float(timer.getMicroseconds()) * 1e-6f;
/// @endcode
class ORVEX_API Timer {
public:
    /// Calls `reset`.
    Timer();

    /// Counts from now on.
    void reset();

    /// Processor time of the process since `reset`, in milliseconds. Goes through a
    /// single-precision float, which is exact for the first 16 seconds only.
    [[nodiscard]] std::uint64_t getMillisecondsCPU() const;

    /// Processor time of the process since `reset`, in microseconds, through the same float.
    [[nodiscard]] std::uint64_t getMicrosecondsCPU() const;

    /// Wall time since `reset` in milliseconds; 0 if the clock was set back behind it.
    [[nodiscard]] std::uint64_t getMilliseconds();

    /// Wall time since `reset` in microseconds; 0 if the clock was set back behind it.
    [[nodiscard]] std::uint64_t getMicroseconds();

private:
    std::clock_t cpu_at_reset;
    std::int64_t seconds_at_reset;
    std::int64_t microseconds_at_reset;
    double last_reading; ///< of the last wall-time query, in that query's unit
};

} // namespace orvex
