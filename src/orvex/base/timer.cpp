#include "orvex/base/timer.h"

#include "orvex/platform/private/clock.h"

namespace orvex {

namespace {

/// A clock set back gives a negative time, which has no unsigned form.
std::uint64_t truncated(double time) {
    return time > 0.0 ? static_cast<std::uint64_t>(time) : 0;
}

/// The step through a float is part of what the processor-time queries promise.
double ticks_since(std::clock_t start) {
    return static_cast<double>(static_cast<float>(std::clock() - start));
}

} // namespace

Timer::Timer() {
    reset();
}

void Timer::reset() {
    const WallTime now = read_wall_clock();
    cpu_at_reset = std::clock();
    seconds_at_reset = now.seconds;
    microseconds_at_reset = now.microseconds;
    last_reading = 0.0;
}

std::uint64_t Timer::getMillisecondsCPU() const {
    return truncated(ticks_since(cpu_at_reset) / 1000.0);
}

std::uint64_t Timer::getMicrosecondsCPU() const {
    return truncated(ticks_since(cpu_at_reset) / 1.0);
}

std::uint64_t Timer::getMilliseconds() {
    const WallTime now = read_wall_clock();
    last_reading = static_cast<double>(now.seconds - seconds_at_reset) * 1000.0 +
                   static_cast<double>(now.microseconds - microseconds_at_reset) * 0.001;
    return truncated(last_reading);
}

std::uint64_t Timer::getMicroseconds() {
    const WallTime now = read_wall_clock();
    last_reading = static_cast<double>(now.seconds - seconds_at_reset) * 1000000.0 +
                   static_cast<double>(now.microseconds - microseconds_at_reset);
    return truncated(last_reading);
}

} // namespace orvex
