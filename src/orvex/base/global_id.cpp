#include "orvex/base/global_id.h"

#include "orvex/base/private/misuse.h"
#include "orvex/platform/private/clock.h"

namespace orvex {

GlobalId* GlobalId::get() {
    static GlobalId* const instance = new GlobalId;
    return instance;
}

std::uint32_t GlobalId::id() {
    lock.acquire();
    const std::uint32_t next = ++counter;
    lock.release();
    return next;
}

std::uint32_t GlobalId::id_fast() {
    return ++counter;
}

int GenId() {
    return static_cast<int>(GlobalId::get()->id());
}

bool Is64BitApp() {
    return sizeof(void*) == 8;
}

namespace {

/// What the system's sleep takes; longer times wrap around.
constexpr unsigned long largest_sleep_us = 0xffffffff;

} // namespace

void ThreadSleep(unsigned long ms) {
    if (ms > largest_sleep_us / 1000)
        misuse("ThreadSleep", "2^32 microseconds or more");
    sleep_microseconds(static_cast<std::uint32_t>(ms * 1000));
}

void ThreadSleep_micro(unsigned long us) {
    if (us > largest_sleep_us)
        misuse("ThreadSleep_micro", "2^32 microseconds or more");
    sleep_microseconds(static_cast<std::uint32_t>(us));
}

void ThreadSleep_nano(unsigned long ns) {
    if (ns >= 1'000'000'000)
        misuse("ThreadSleep_nano", "a second or more");
    sleep_nanoseconds(static_cast<std::int64_t>(ns));
}

} // namespace orvex
