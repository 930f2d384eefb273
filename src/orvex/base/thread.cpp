#include "orvex/base/thread.h"

#include <pthread.h>

namespace orvex {

Thread::Thread()
    : id(pthread_self()) {}

void Thread::update() {
    id = pthread_self();
}

bool Thread::operator==(const Thread& other) const {
    return pthread_equal(id, other.id) != 0;
}

bool Thread::operator!=(const Thread& other) const {
    return !(*this == other);
}

} // namespace orvex
