#pragma once

/// @file
/// Log: one stream of diagnostic lines with up to three sinks.

#include <cstdarg>
#include <memory>

#include "orvex/api.h"

namespace orvex {

/// How severe a line is; a lower number is more severe. Values outside the list are allowed: they
/// pass the same threshold test and their lines carry no marker.
enum LOG_LEVEL : int {
    LOG_LEVEL_ERROR = 1,   ///< marker " <*> "
    LOG_LEVEL_WARNING = 2, ///< marker " <!> "
    LOG_LEVEL_INFO = 3,    ///< marker " < > "
    LOG_LEVEL_DEBUG = 4    ///< marker " <o> "
};

/// Writes each line to a host callback, a text file and the standard output.
///
/// `LogMgr` makes, holds and destroys the logs of the engine; a host may also make one of its own.
/// A fresh log is disabled, has no file name, and drops what is less severe than information.
///
/// The file is opened by the first line that passes the filter, so a log that never speaks leaves
/// no file behind. Each line reaches the operating system before the operation returns: the log
/// survives a crash of its host. A line that the file doesn't take, on a full disk, say, is lost to
/// it without a word, and so are those that follow, until the file is opened again: the other sinks
/// go on. A line that finds no memory is dropped; a gap in the numbers tells of it. Nothing is
/// thrown but what the callback throws.
///
/// A stamped line is "2014:03:04@08:56:44(0000000001) < > message": local date and time, the
/// number of the line, the marker of the level.
///
/// Any thread may trace, also the first line. Every other operation belongs to set-up, on one
/// thread. The callback runs with the log's lock held and must not trace to the same log.
///
/// @code
/// orvex::Log log;
/// log.set_filename("host.txt");
/// log.enable();
/// log.tracef(orvex::LOG_LEVEL_INFO, "%d models", count);
/// @endcode
class ORVEX_API Log {
public:
    /// Disabled, without file name and callback; writes to a file only.
    Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
    /// Closes the file.
    ~Log();

    /// Sets the host's sink. Stamped lines arrive without a line end, simple ones with it.
    /// @param callback   null switches the sink off; the line is valid during the call only
    /// @param user_data  handed back to the callback, never read here
    void set_trace_callback(void (*callback)(const char* line, void* user_data), void* user_data);

    /// Serialises lines with a lock (the default). Without it only one thread may trace.
    void use_thread_lock(bool state);

    /// Lets lines through.
    void enable();

    /// Drops every line.
    void disable();

    /// Also prints lines to the standard output, without a flush (off by default).
    void send_to_terminal(bool state);

    /// Writes lines to the file (on by default).
    void write_to_file(bool state);

    /// Opens the file at its end instead of emptying it. Counts from the next opening.
    void set_append_mode(bool state);

    /// Lets out lines whose level is at most this one (`LOG_LEVEL_INFO` by default).
    void set_trace_level_threshold(LOG_LEVEL level);

    /// Names the file, taken as given. Counts from the next opening; null is ignored, and an empty
    /// name means a log without a file.
    void set_filename(const char* filename);

    /// The name of the file; valid until the next `set_filename`.
    const char* get_filename() const;

    /// `set_filename`, `set_append_mode`, `_open`. On a log that is open already the new name and
    /// mode only count after `close`.
    /// @return true, whether or not the file could be opened
    bool open(const char* filename, bool append);

    /// Opens the file now unless that is done. A file that can't be opened takes no text, and the
    /// other sinks go on.
    /// @return true
    bool _open();

    /// Closes the file; the next line opens it again.
    /// @return true
    bool close();

    /// One stamped line. A null message does nothing.
    /// @param level  any number; see `LOG_LEVEL`
    void trace(LOG_LEVEL level, const char* message);

    /// One stamped line, printf-style, cut at 65,535 characters. A null format does nothing.
    void tracef(LOG_LEVEL level, const char* format, ...) ORVEX_PRINTF(3, 4);

    /// One line without stamp, number and marker. A null message does nothing.
    void simple_trace(LOG_LEVEL level, const char* message);

    /// `simple_trace`, printf-style, cut at 65,535 characters. A null format does nothing.
    void simple_tracef(LOG_LEVEL level, const char* format, ...) ORVEX_PRINTF(3, 4);

private:
    friend class LogMgr;

    bool lets_through(LOG_LEVEL level) const;
    bool is_due(LOG_LEVEL level, const char* text) const;
    void vtracef(LOG_LEVEL level, const char* format, va_list arguments) ORVEX_PRINTF(3, 0);
    void vsimple_tracef(LOG_LEVEL level, const char* format, va_list arguments) ORVEX_PRINTF(3, 0);

    struct LogData;
    std::unique_ptr<LogData> data;
};

} // namespace orvex
