#include "orvex/platform/private/clock.h"

#include <ctime>

#include <sys/time.h>
#include <unistd.h>

namespace orvex {

WallTime read_wall_clock() {
    timeval time{};
    gettimeofday(&time, nullptr);
    return {time.tv_sec, time.tv_usec};
}

void sleep_microseconds(std::uint32_t duration) {
    usleep(duration);
}

void sleep_nanoseconds(std::int64_t duration) {
    timespec time{};
    time.tv_nsec = static_cast<long>(duration);
    nanosleep(&time, nullptr);
}

} // namespace orvex
