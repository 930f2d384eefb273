#include "orvex/platform/private/threads.h"

#include <cerrno>

namespace orvex {

pthread_t current_thread() {
    return pthread_self();
}

bool is_same_thread(pthread_t one, pthread_t other) {
    return pthread_equal(one, other) != 0;
}

bool start_thread(pthread_t& thread, void* (*body)(void*), void* argument) {
    return pthread_create(&thread, nullptr, body, argument) == 0;
}

void join_thread(pthread_t thread) {
    pthread_join(thread, nullptr);
}

void detach_thread(pthread_t thread) {
    pthread_detach(thread);
}

void end_this_thread() {
    pthread_exit(nullptr);
}

namespace {

/// Lets one thread at a time make the mutex of a `LazyMutex`.
pthread_mutex_t creation = PTHREAD_MUTEX_INITIALIZER;

} // namespace

LazyMutex::~LazyMutex() {
    if (!initialized.load(std::memory_order_acquire))
        return;
    pthread_mutex_destroy(&mutex);
    pthread_mutexattr_destroy(&attributes);
}

void LazyMutex::initialize() {
    pthread_mutex_lock(&creation);
    if (!initialized.load(std::memory_order_relaxed)) {
        pthread_mutexattr_init(&attributes);
        pthread_mutex_init(&mutex, &attributes);
        initialized.store(true, std::memory_order_release);
    }
    pthread_mutex_unlock(&creation);
}

int LazyMutex::lock() {
    if (!initialized.load(std::memory_order_acquire))
        initialize();
    return pthread_mutex_lock(&mutex);
}

int LazyMutex::unlock() {
    if (!initialized.load(std::memory_order_acquire))
        return EPERM;
    return pthread_mutex_unlock(&mutex);
}

} // namespace orvex
