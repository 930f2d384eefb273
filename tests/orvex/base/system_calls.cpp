#include "system_calls.h"

#include <pthread.h>
#include <unistd.h>

namespace orvex_test {

SystemCalls system_calls;

} // namespace orvex_test

using orvex_test::system_calls;

extern "C" {

int __real_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);
int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes);
int __wrap_pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) {
    ++system_calls.mutexes_made;
    return __real_pthread_mutex_init(mutex, attributes);
}

int __real_pthread_mutex_destroy(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_destroy(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_destroy(pthread_mutex_t* mutex) {
    ++system_calls.mutexes_destroyed;
    return __real_pthread_mutex_destroy(mutex);
}

int __real_gettimeofday(timeval* time, void* zone);
int __wrap_gettimeofday(timeval* time, void* zone);
int __wrap_gettimeofday(timeval* time, void* zone) {
    if (!system_calls.fake)
        return __real_gettimeofday(time, zone);
    *time = system_calls.wall;
    return 0;
}

clock_t __real_clock();
clock_t __wrap_clock();
clock_t __wrap_clock() {
    return system_calls.fake ? system_calls.ticks : __real_clock();
}

time_t __real_time(time_t* result);
time_t __wrap_time(time_t* result);
time_t __wrap_time(time_t* result) {
    if (!system_calls.fake)
        return __real_time(result);
    if (result)
        *result = system_calls.calendar;
    return system_calls.calendar;
}

int __real_usleep(useconds_t microseconds);
int __wrap_usleep(useconds_t microseconds);
int __wrap_usleep(useconds_t microseconds) {
    if (!system_calls.fake)
        return __real_usleep(microseconds);
    system_calls.microseconds_slept = microseconds;
    return 0;
}

int __real_nanosleep(const timespec* duration, timespec* rest);
int __wrap_nanosleep(const timespec* duration, timespec* rest);
int __wrap_nanosleep(const timespec* duration, timespec* rest) {
    if (!system_calls.fake)
        return __real_nanosleep(duration, rest);
    system_calls.nanoseconds_slept = *duration;
    return 0;
}
}
