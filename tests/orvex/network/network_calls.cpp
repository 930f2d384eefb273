#include "network_calls.h"

#include <cerrno>

#include <netdb.h>
#include <pthread.h>
#include <sys/socket.h>

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

[[noreturn]] void __real_pthread_exit(void* result);
[[noreturn]] void __wrap_pthread_exit(void* result);
void __wrap_pthread_exit(void* result) {
    ++NetworkCalls::thread_exits;
    __real_pthread_exit(result);
}

int __real_accept4(int fd, sockaddr* address, socklen_t* size, int flags);
int __wrap_accept4(int fd, sockaddr* address, socklen_t* size, int flags);
int __wrap_accept4(int fd, sockaddr* address, socklen_t* size, int flags) {
    ++NetworkCalls::accepts;
    const int client = __real_accept4(fd, address, size, flags);
    if (const int error = errno; client < 0 && NetworkCalls::at_refused_accept) {
        NetworkCalls::at_refused_accept();
        errno = error;
    }
    return client;
}

ssize_t __real_recv(int fd, void* buffer, std::size_t size, int flags);
ssize_t __wrap_recv(int fd, void* buffer, std::size_t size, int flags);
ssize_t __wrap_recv(int fd, void* buffer, std::size_t size, int flags) {
    if (flags == MSG_PEEK && NetworkCalls::interrupted_peeks > 0) {
        --NetworkCalls::interrupted_peeks;
        errno = EINTR;
        return -1;
    }
    return __real_recv(fd, buffer, size, flags);
}

int __real_gethostbyname_r(const char* name, hostent* entry, char* memory, std::size_t size,
                           hostent** found, int* reason);
int __wrap_gethostbyname_r(const char* name, hostent* entry, char* memory, std::size_t size,
                           hostent** found, int* reason);
int __wrap_gethostbyname_r(const char* name, hostent* entry, char* memory, std::size_t size,
                           hostent** found, int* reason) {
    ++NetworkCalls::lookups;
    return __real_gethostbyname_r(name, entry, memory, size, found, reason);
}

bool __real__ZN5orvex10SocketCore5startEv(void* core);
bool __wrap__ZN5orvex10SocketCore5startEv(void* core);
bool __wrap__ZN5orvex10SocketCore5startEv(void* core) {
    if (NetworkCalls::no_start)
        return false;
    return __real__ZN5orvex10SocketCore5startEv(core);
}
}
