#pragma once

/// @file
/// The text file behind a log, without a buffer of its own.

#include <string_view>

namespace orvex {

/// Hands each text to the operating system in one call. After a failed open or write the file takes
/// no more text until it is opened again, and nobody is told: a log has other sinks.
class LogFile {
public:
    LogFile() = default;
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile() { close(); }

    /// Opens the file for writing, and makes it if there is none.
    /// @param append  keeps what it holds, and writes behind it
    void open(const char* filename, bool append);
    /// Writes the whole text, or takes no more.
    void write(std::string_view text);
    /// Gives the descriptor back; nothing unless open.
    void close();

private:
    int descriptor = -1;
};

} // namespace orvex
