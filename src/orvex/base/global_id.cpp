#include "orvex/base/global_id.h"

#include <ctime>

#include <unistd.h>

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

void ThreadSleep(unsigned long ms) {
    usleep(static_cast<useconds_t>(ms * 1000));
}

void ThreadSleep_micro(unsigned long us) {
    usleep(static_cast<useconds_t>(us));
}

void ThreadSleep_nano(unsigned long ns) {
    timespec duration{};
    duration.tv_nsec = static_cast<long>(ns);
    nanosleep(&duration, nullptr);
}

} // namespace orvex
