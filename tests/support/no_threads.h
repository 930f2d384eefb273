#pragma once

/// @file
/// A process in which no thread can be started.

#include <cstddef>

#include <pthread.h>

namespace orvex_test {

/// While one lives, no thread can be started: none finds room for its stack.
class NoThreads {
public:
    NoThreads() {
        pthread_getattr_default_np(&before);
        pthread_attr_t vast;
        pthread_getattr_default_np(&vast);
        pthread_attr_setstacksize(&vast, std::size_t{1} << 48);
        pthread_setattr_default_np(&vast);
        pthread_attr_destroy(&vast);
    }
    ~NoThreads() {
        pthread_setattr_default_np(&before);
        pthread_attr_destroy(&before);
    }
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;

private:
    pthread_attr_t before{};
};

} // namespace orvex_test
