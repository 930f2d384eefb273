#pragma once

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

namespace orvex_test {

/// Does something in a process of its own. @return the status that it ended with
inline int status_of(const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

} // namespace orvex_test
