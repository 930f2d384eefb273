#pragma once

/// @file
/// The stamp at the head of a log line.

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>

namespace orvex {

/// Writes "2014:03:04@08:56:44(0000000001)". The calendar is asked once a second: it takes longer
/// than all the rest of a line. A change of the time zone in the environment counts from the next
/// second on.
class LogStamp {
public:
    /// Characters that `append_to` appends at most.
    static constexpr std::size_t max_size = 96 + 12;

    /// Takes the local time of `seconds`.
    void set_time(std::time_t seconds);

    /// Appends the stamp of line `number`.
    void append_to(std::string& line, std::int32_t number) const;

    /// The local time last set.
    const std::tm& time() const { return local; }

private:
    bool valid = false;
    std::time_t last_seconds = 0;
    std::tm local{};
    char date[96] = {};
};

} // namespace orvex
