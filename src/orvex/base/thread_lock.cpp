#include "orvex/base/thread_lock.h"

#include "orvex/platform/private/threads.h"

namespace orvex {

struct ThreadLock::ThreadLockData {
    LazyMutex mutex;
};

ThreadLock::ThreadLock()
    : data(std::make_unique<ThreadLockData>()) {}

ThreadLock::~ThreadLock() = default;

int ThreadLock::acquire() {
    return data->mutex.lock();
}

int ThreadLock::release() {
    return data->mutex.unlock();
}

} // namespace orvex
