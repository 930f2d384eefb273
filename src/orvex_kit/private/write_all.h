#pragma once

#include <csignal>
#include <string_view>

namespace orvex::kit {

/// Keeps the signals of a failed write, SIGPIPE and SIGXFSZ, from the calling thread, to which the
/// system sends them. One that waited before still waits after. Leaves `errno` alone.
class QuietWrites {
public:
    QuietWrites() noexcept;
    ~QuietWrites();
    QuietWrites(const QuietWrites&) = delete;
    QuietWrites& operator=(const QuietWrites&) = delete;

private:
    sigset_t ours;
    sigset_t before;
};

/// Writes all of it to a descriptor, whatever it takes. A pipe whose reader has gone, and a file
/// that may not grow further, are told by the result: the signals that the system sends for them,
/// which would end the program, are kept from it.
/// @return 0, or the system's number of what went wrong
int write_all(int file, std::string_view bytes) noexcept;

} // namespace orvex::kit
