#include "orvex/base/thread.h"

#include "orvex/platform/private/threads.h"

namespace orvex {

Thread::Thread()
    : id(current_thread()) {}

void Thread::update() {
    id = current_thread();
}

bool Thread::operator==(const Thread& other) const {
    return is_same_thread(id, other.id);
}

bool Thread::operator!=(const Thread& other) const {
    return !(*this == other);
}

} // namespace orvex
