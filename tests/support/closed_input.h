#pragma once

/// @file
/// A process whose host has closed its standard input.

#include <unistd.h>

namespace orvex_test {

/// Keeps the standard input closed while it lives: the next file gets its number, 0.
class ClosedInput {
public:
    ClosedInput()
        : input(::dup(STDIN_FILENO)) {
        ::close(STDIN_FILENO);
    }
    ~ClosedInput() {
        if (input < 0)
            return;
        ::dup2(input, STDIN_FILENO);
        ::close(input);
    }
    ClosedInput(const ClosedInput&) = delete;
    ClosedInput& operator=(const ClosedInput&) = delete;

private:
    int input;
};

} // namespace orvex_test
