#include "orvex/base/thread_lock.h"

#include <atomic>
#include <cerrno>

#include <pthread.h>

namespace orvex {

struct ThreadLock::ThreadLockData {
    std::atomic<bool> initialized{false};
    pthread_mutex_t mutex;
    pthread_mutexattr_t attributes;

    void initialize();
    ~ThreadLockData();
};

namespace {

pthread_mutex_t creation = PTHREAD_MUTEX_INITIALIZER;

} // namespace

void ThreadLock::ThreadLockData::initialize() {
    pthread_mutex_lock(&creation);
    if (!initialized.load(std::memory_order_relaxed)) {
        pthread_mutexattr_init(&attributes);
        pthread_mutex_init(&mutex, &attributes);
        initialized.store(true, std::memory_order_release);
    }
    pthread_mutex_unlock(&creation);
}

ThreadLock::ThreadLockData::~ThreadLockData() {
    if (!initialized.load(std::memory_order_acquire))
        return;
    pthread_mutex_destroy(&mutex);
    pthread_mutexattr_destroy(&attributes);
}

ThreadLock::ThreadLock()
    : data(new ThreadLockData) {}

ThreadLock::~ThreadLock() {
    delete data;
}

int ThreadLock::acquire() {
    if (!data->initialized.load(std::memory_order_acquire))
        data->initialize();
    return pthread_mutex_lock(&data->mutex);
}

int ThreadLock::release() {
    if (!data->initialized.load(std::memory_order_acquire))
        return EPERM;
    return pthread_mutex_unlock(&data->mutex);
}

} // namespace orvex
