#pragma once

/// @file
/// Signals as something that can be waited for.

#include <csignal>

namespace batch {

/// Takes INT, TERM, HUP and CHLD of the process while it lives, and has PIPE ignored. HUP and INT
/// that are ignored, as under nohup, stay so.
class SignalQueue {
public:
    SignalQueue();
    ~SignalQueue();
    SignalQueue(const SignalQueue&) = delete;
    SignalQueue& operator=(const SignalQueue&) = delete;

    /// To be waited for; -1 where the system has none left.
    int descriptor() const { return file; }
    /// The next one; 0 if there is none.
    int next();

private:
    sigset_t before{};
    struct sigaction pipe_before {};
    int file = -1;
};

} // namespace batch
