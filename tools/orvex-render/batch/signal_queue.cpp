#include "batch/signal_queue.h"

#include <initializer_list>

#include <sys/signalfd.h>
#include <unistd.h>

namespace batch {

namespace {

bool is_ignored(int number) {
    struct sigaction present {};
    sigaction(number, nullptr, &present);
    return (present.sa_flags & SA_SIGINFO) == 0 && present.sa_handler == SIG_IGN;
}

} // namespace

SignalQueue::SignalQueue() {
    sigset_t ours;
    sigemptyset(&ours);
    sigaddset(&ours, SIGCHLD);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        if (!is_ignored(number))
            sigaddset(&ours, number);
    sigprocmask(SIG_BLOCK, &ours, &before);
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, &pipe_before);
    file = signalfd(-1, &ours, SFD_NONBLOCK | SFD_CLOEXEC);
}

SignalQueue::~SignalQueue() {
    // What came last has been heard of.
    while (next() != 0) {
        // the next one
    }
    if (file >= 0)
        close(file);
    sigaction(SIGPIPE, &pipe_before, nullptr);
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

int SignalQueue::next() {
    signalfd_siginfo info{};
    return read(file, &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo) : 0;
}

} // namespace batch
