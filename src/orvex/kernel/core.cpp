#include "orvex/kernel/core.h"

#include "orvex/base/log_mgr.h"
#include "orvex/kernel/kernel.h"

namespace orvex::core {

bool start(const char* log_filename, bool log_enabled, void (*callback)(const char*, void*),
           void* user_data) {
    log_start(log_filename);
    log_set_callback(callback, user_data);
    log_enable(log_enabled);
    return Kernel::get()->start();
}

bool stop(const char* message) {
    // The outer stop still has lines to log.
    if (Kernel::get()->is_stopping())
        return true;
    Kernel::get()->stop();
    if (message)
        log_trace(message);
    return log_stop();
}

bool log_start(const char* filename) {
    return LogMgr::get()->start(filename, false);
}

bool log_stop() {
    return LogMgr::get()->stop();
}

void log_set_callback(void (*callback)(const char*, void*), void* user_data) {
    if (Log* const log = log_get_default())
        log->set_trace_callback(callback, user_data);
}

void log_enable(bool state) {
    Log* const log = log_get_default();
    if (!log)
        return;
    if (state)
        log->enable();
    else
        log->disable();
}

Log* log_get_default() {
    return LogMgr::get()->get_default_log();
}

void log_trace(const char* message) {
    LogMgr::get()->trace(message);
}

void log_trace_warning(const char* message) {
    LogMgr::get()->trace_warning(message);
}

void log_trace_error(const char* message) {
    LogMgr::get()->trace_error(message);
}

void log_trace_debug(const char* message) {
    LogMgr::get()->trace_debug(message);
}

const char* get_engine_codename() {
    return Kernel::get()->get_codename();
}

const char* get_platform_name() {
    return Kernel::get()->get_platform_name();
}

int get_platform_bitness() {
    return Kernel::get()->get_platform_bitness();
}

} // namespace orvex::core
