#include "network_calls.h"

#include <cerrno>

#include <pthread.h>

using orvex_test::NetworkCalls;

// The linker sends the engine's calls here (--wrap).
extern "C" {

int __real_socket(int domain, int type, int protocol);
int __wrap_socket(int domain, int type, int protocol);
int __wrap_socket(int domain, int type, int protocol) {
    if (!NetworkCalls::keep_sockets_back)
        return __real_socket(domain, type, protocol);
    NetworkCalls::domain = domain;
    NetworkCalls::type = type;
    NetworkCalls::protocol = protocol;
    errno = EMFILE;
    return -1;
}

using ThreadStart = void* (*)(void*);
int __real_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadStart start,
                          void* argument);
int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadStart start,
                          void* argument);
int __wrap_pthread_create(pthread_t* thread, const pthread_attr_t* attributes, ThreadStart start,
                          void* argument) {
    if (NetworkCalls::no_threads)
        return EAGAIN;
    return __real_pthread_create(thread, attributes, start, argument);
}

bool __real__ZN5orvex10SocketCore5startEv(void* core);
bool __wrap__ZN5orvex10SocketCore5startEv(void* core);
bool __wrap__ZN5orvex10SocketCore5startEv(void* core) {
    if (NetworkCalls::no_start)
        return false;
    return __real__ZN5orvex10SocketCore5startEv(core);
}
}
