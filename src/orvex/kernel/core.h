#pragma once

/// @file
/// The host's door into the engine: start, stop and the default log.

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// Functions over the engine's single instances, with no state of their own. The host's main thread
/// calls them; the trace functions may be called from any thread. Where memory runs out `start` and
/// `stop` may throw `std::bad_alloc`; the next call of the same goes on from there.
///
/// @code
/// orvex::core::start("host.txt", true, nullptr, nullptr);
/// …
/// orvex::core::stop("bye");
/// @endcode
namespace core {

/// Starts the default log, sets its callback, enables it if asked, and starts the kernel.
/// @param log_filename  null means "_orvex_log.txt"
/// @param callback      receives each line of the log; may be null, and must not trace
/// @param user_data     handed back to the callback
/// @return true
ORVEX_API bool start(const char* log_filename, bool log_enabled,
                     void (*callback)(const char* line, void* user_data), void* user_data);

/// Stops the kernel, logs `message` (null: nothing) and stops all logs.
/// @return true
ORVEX_API bool stop(const char* message);

/// Starts the default log, disabled. @return whether there is one
ORVEX_API bool log_start(const char* filename);
/// Stops all logs. @return true
ORVEX_API bool log_stop();
/// Sets the callback of the default log; nothing if there is none.
ORVEX_API void log_set_callback(void (*callback)(const char* line, void* user_data),
                                void* user_data);
/// Enables or disables the default log; nothing if there is none.
ORVEX_API void log_enable(bool state);
/// The default log; null unless started.
ORVEX_API Log* log_get_default();

/// One line to the default log, at information, warning, error and debug level. Null does nothing.
ORVEX_API void log_trace(const char* message);
/// As `log_trace`, at warning level.
ORVEX_API void log_trace_warning(const char* message);
/// As `log_trace`, at error level.
ORVEX_API void log_trace_error(const char* message);
/// As `log_trace`, at debug level.
ORVEX_API void log_trace_debug(const char* message);

/// The codename of this version of the engine.
ORVEX_API const char* get_engine_codename();
/// The name of the system, empty before the first start.
ORVEX_API const char* get_platform_name();
/// 64 or 32.
ORVEX_API int get_platform_bitness();

} // namespace core
} // namespace orvex
