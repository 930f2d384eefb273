#pragma once

/// @file
/// LogMgr: the process's default log and the registry of named ones.

#include <cstdarg>
#include <memory>

#include "orvex/api.h"
#include "orvex/base/log.h"

namespace orvex {

/// Carries the default log, to which every message of the engine goes, and owns all logs it made.
///
/// One per process, made on first use and never destroyed. Any thread may trace; `start`, `stop`,
/// `create_log` and `kill_log` belong to one thread. Without a default log (before `start`, after
/// `stop`) every trace operation does nothing.
///
/// @code
/// orvex::LogMgr::get()->start("host.txt", true);
/// orvex::LogMgr::get()->tracef_warning("%s: no such texture", name);
/// @endcode
class ORVEX_API LogMgr {
public:
    /// The only instance.
    static LogMgr* get();

    /// The same as `get`.
    static LogMgr* getptr();

    LogMgr(const LogMgr&) = delete;
    LogMgr& operator=(const LogMgr&) = delete;

    /// Makes the default log; no file comes into being before its first line. Once started, changes
    /// nothing and returns true.
    /// @param filename  null means "_orvex_log.txt" in the working directory
    /// @param enabled   whether the log lets lines through at once
    /// @return whether there is a default log
    bool start(const char* filename, bool enabled);

    /// Closes and destroys every log that `create_log` made, the default log among them. Does
    /// nothing unless started.
    /// @return true
    bool stop();

    /// Makes a log that empties its file when it opens it. It stays owned here. Names are kept
    /// unique by the caller: a second log of a name takes the place of the first, which lives on
    /// until `stop`.
    /// @return the new log; with a null name the default log
    Log* create_log(const char* filename, bool enabled);

    /// Closes and destroys a log that was made here, found by its present file name.
    /// @return false for null, for a log of another origin, and when no log is registered under
    ///         that name
    bool kill_log(Log* log);

    /// The log that the operations below trace to; null unless started.
    Log* get_default_log() const;

    /// One stamped line at `LOG_LEVEL_INFO`. A null message does nothing, here and below.
    void trace(const char* message);
    /// One stamped line at `LOG_LEVEL_WARNING`.
    void trace_warning(const char* message);
    /// One stamped line at `LOG_LEVEL_ERROR`.
    void trace_error(const char* message);
    /// One stamped line at `LOG_LEVEL_DEBUG`.
    void trace_debug(const char* message);
    /// One line without a stamp at `LOG_LEVEL_INFO`.
    void simple_trace(const char* message);

    /// `trace`, printf-style, cut at 65,535 characters. A null format does nothing, here and below.
    /// Nothing is formatted for a line that the default log drops.
    void tracef(const char* format, ...) ORVEX_PRINTF(2, 3);
    /// `trace_warning`, printf-style.
    void tracef_warning(const char* format, ...) ORVEX_PRINTF(2, 3);
    /// `trace_error`, printf-style.
    void tracef_error(const char* format, ...) ORVEX_PRINTF(2, 3);
    /// `trace_debug`, printf-style.
    void tracef_debug(const char* format, ...) ORVEX_PRINTF(2, 3);
    /// `simple_trace`, printf-style.
    void simple_tracef(const char* format, ...) ORVEX_PRINTF(2, 3);

private:
    friend class Plugin;

    LogMgr();
    ~LogMgr();

    bool lets_through(LOG_LEVEL level) const;
    void vtracef(LOG_LEVEL level, const char* format, va_list arguments) ORVEX_PRINTF(3, 0);

    struct LogMgrData;
    std::unique_ptr<LogMgrData> data;
};

} // namespace orvex
