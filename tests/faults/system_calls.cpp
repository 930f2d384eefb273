// What the engine asks of the system. Each function hands its call on, unless it is the one to
// fail; then the system is not asked, and the caller gets an error that this call may give.

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>

#include <fcntl.h>
#include <locale.h>
#include <netdb.h>
#include <poll.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fault.h"
#include "forward.h"

namespace {

using namespace orvex_test;

bool fails(const char* function, const void* place) {
    return is_engine(place) && is_to_fail(FaultKind::system, function, place);
}

/// Half of what was asked for, at least one, if this is the call to be cut short.
std::size_t cut_short(const char* function, const void* place, std::size_t count) {
    if (count > 1 && is_engine(place) && is_to_fail(FaultKind::short_count, function, place))
        return count / 2;
    return count;
}

} // namespace

#define ORVEX_PLACE __builtin_return_address(0)

// The system declares some of these with more than stands here: each is defined under a name of its
// own. NOLINTBEGIN(bugprone-macro-parentheses): the arguments are types and lists.

/// A call that fails with an error number.
#define ORVEX_SYSTEM_CALL(result, name, parameters, arguments, error, failure)                     \
    extern "C" ORVEX_EXPORT result replaced_##name parameters __asm__(#name);                      \
    extern "C" result replaced_##name parameters {                                                 \
        if (fails(#name, ORVEX_PLACE)) {                                                           \
            errno = error;                                                                         \
            return failure;                                                                        \
        }                                                                                          \
        return ORVEX_NEXT(name) arguments;                                                         \
    }

/// A call that moves bytes: it fails, or moves half of them.
#define ORVEX_TRANSFER(result, name, parameters, count, arguments, error, failure)                 \
    extern "C" ORVEX_EXPORT result replaced_##name parameters __asm__(#name);                      \
    extern "C" result replaced_##name parameters {                                                 \
        if (fails(#name, ORVEX_PLACE)) {                                                           \
            errno = error;                                                                         \
            return failure;                                                                        \
        }                                                                                          \
        count = cut_short(#name, ORVEX_PLACE, count);                                              \
        return ORVEX_NEXT(name) arguments;                                                         \
    }

// NOLINTEND(bugprone-macro-parentheses)

// clang-format off
ORVEX_TRANSFER(ssize_t, read, (int fd, void* bytes, size_t count), count, (fd, bytes, count), EIO, -1)
ORVEX_TRANSFER(ssize_t, pread, (int fd, void* bytes, size_t count, off_t offset), count, (fd, bytes, count, offset), EIO, -1)
ORVEX_TRANSFER(ssize_t, write, (int fd, const void* bytes, size_t count), count, (fd, bytes, count), ENOSPC, -1)
ORVEX_TRANSFER(ssize_t, recv, (int fd, void* bytes, size_t count, int flags), count, (fd, bytes, count, flags), ECONNRESET, -1)
ORVEX_TRANSFER(ssize_t, send, (int fd, const void* bytes, size_t count, int flags), count, (fd, bytes, count, flags), EPIPE, -1)
ORVEX_TRANSFER(ssize_t, recvfrom, (int fd, void* bytes, size_t count, int flags, sockaddr* from, socklen_t* size), count, (fd, bytes, count, flags, from, size), ENOMEM, -1)
ORVEX_TRANSFER(ssize_t, sendto, (int fd, const void* bytes, size_t count, int flags, const sockaddr* to, socklen_t size), count, (fd, bytes, count, flags, to, size), ENOBUFS, -1)
ORVEX_TRANSFER(size_t, fwrite, (const void* bytes, size_t size, size_t count, FILE* file), count, (bytes, size, count, file), ENOSPC, 0)

ORVEX_SYSTEM_CALL(int, socket, (int domain, int type, int protocol), (domain, type, protocol), EMFILE, -1)
ORVEX_SYSTEM_CALL(int, bind, (int fd, const sockaddr* address, socklen_t size), (fd, address, size), EADDRINUSE, -1)
ORVEX_SYSTEM_CALL(int, listen, (int fd, int backlog), (fd, backlog), EADDRINUSE, -1)
ORVEX_SYSTEM_CALL(int, accept, (int fd, sockaddr* address, socklen_t* size), (fd, address, size), EMFILE, -1)
ORVEX_SYSTEM_CALL(int, accept4, (int fd, sockaddr* address, socklen_t* size, int flags), (fd, address, size, flags), EMFILE, -1)
ORVEX_SYSTEM_CALL(int, connect, (int fd, const sockaddr* address, socklen_t size), (fd, address, size), ETIMEDOUT, -1)
ORVEX_SYSTEM_CALL(int, getsockname, (int fd, sockaddr* address, socklen_t* size), (fd, address, size), ENOBUFS, -1)
ORVEX_SYSTEM_CALL(int, setsockopt, (int fd, int level, int option, const void* value, socklen_t size), (fd, level, option, value, size), ENOMEM, -1)
ORVEX_SYSTEM_CALL(int, shutdown, (int fd, int how), (fd, how), ENOTCONN, -1)
ORVEX_SYSTEM_CALL(int, poll, (pollfd* fds, nfds_t count, int timeout), (fds, count, timeout), EINTR, -1)
ORVEX_SYSTEM_CALL(int, fstat, (int fd, struct stat* status), (fd, status), EIO, -1)
ORVEX_SYSTEM_CALL(int, fsync, (int fd), (fd), EIO, -1)
ORVEX_SYSTEM_CALL(int, rename, (const char* from, const char* to), (from, to), EACCES, -1)
ORVEX_SYSTEM_CALL(int, pipe, (int* fds), (fds), EMFILE, -1)
ORVEX_SYSTEM_CALL(int, pipe2, (int* fds, int flags), (fds, flags), EMFILE, -1)
ORVEX_SYSTEM_CALL(void*, mmap, (void* address, size_t size, int protection, int flags, int fd, off_t offset), (address, size, protection, flags, fd, offset), ENOMEM, MAP_FAILED)
ORVEX_SYSTEM_CALL(int, memfd_create, (const char* name, unsigned int flags), (name, flags), EMFILE, -1)
ORVEX_SYSTEM_CALL(int, madvise, (void* address, size_t size, int advice), (address, size, advice), EINVAL, -1)
ORVEX_SYSTEM_CALL(FILE*, fopen, (const char* path, const char* mode), (path, mode), EMFILE, nullptr)
ORVEX_SYSTEM_CALL(FILE*, fopencookie, (void* cookie, const char* mode, cookie_io_functions_t functions), (cookie, mode, functions), ENOMEM, nullptr)
ORVEX_SYSTEM_CALL(int, fseek, (FILE* file, long offset, int from), (file, offset, from), EIO, -1)
ORVEX_SYSTEM_CALL(locale_t, newlocale, (int mask, const char* name, locale_t base), (mask, name, base), ENOMEM, nullptr)
// clang-format on

extern "C" {

ORVEX_EXPORT int open(const char* path, int flags, ...) {
    if (fails("open", ORVEX_PLACE)) {
        errno = EMFILE;
        return -1;
    }
    mode_t mode = 0;
    if (flags & (O_CREAT | O_TMPFILE)) {
        va_list rest;
        va_start(rest, flags);
        mode = va_arg(rest, mode_t);
        va_end(rest);
    }
    return ORVEX_NEXT(open)(path, flags, mode);
}

ORVEX_EXPORT int fcntl(int fd, int command, ...) {
    if (fails("fcntl", ORVEX_PLACE)) {
        errno = EINVAL;
        return -1;
    }
    va_list rest;
    va_start(rest, command);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    return ORVEX_NEXT(fcntl)(fd, command, argument);
}

// A descriptor is closed even where closing tells an error.

ORVEX_EXPORT int close(int fd) {
    const int result = ORVEX_NEXT(close)(fd);
    if (!fails("close", ORVEX_PLACE))
        return result;
    errno = EIO;
    return -1;
}

ORVEX_EXPORT int fclose(FILE* file) {
    const int result = ORVEX_NEXT(fclose)(file);
    if (!fails("fclose", ORVEX_PLACE))
        return result;
    errno = ENOSPC;
    return EOF;
}

// These give their error number.

ORVEX_EXPORT int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                                void* (*work)(void*), void* argument) {
    if (fails("pthread_create", ORVEX_PLACE))
        return EAGAIN;
    return ORVEX_NEXT(pthread_create)(thread, attributes, work, argument);
}

// The system keeps a text of what went wrong; it is that of a library that isn't there.

ORVEX_EXPORT void* dlopen(const char* path, int mode) {
    if (fails("dlopen", ORVEX_PLACE))
        return ORVEX_NEXT(dlopen)("/nowhere/refused.so", mode);
    return ORVEX_NEXT(dlopen)(path, mode);
}
}
