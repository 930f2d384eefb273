#pragma once

/// @file
/// The wall clock of the system, and sleeping by it.

#include <cstdint>

namespace orvex {

/// A time of the system's clock, which may be set back between two readings.
struct WallTime {
    std::int64_t seconds = 0;      ///< since the system's epoch
    std::int64_t microseconds = 0; ///< 0 to 999,999
};

WallTime read_wall_clock();

/// Lets the calling thread sleep.
void sleep_microseconds(std::uint32_t duration);

/// Lets the calling thread sleep; the system refuses a second or more and returns at once.
void sleep_nanoseconds(std::int64_t duration);

} // namespace orvex
