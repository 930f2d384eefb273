#include "orvex/base/log_mgr.h"

#include <algorithm>
#include <cstdarg>
#include <map>
#include <string>
#include <vector>

namespace orvex {

struct LogMgr::LogMgrData {
    bool started = false;
    std::string default_filename;
    Log* default_log = nullptr;
    std::map<std::string, Log*> logs;
    std::vector<Log*> made; ///< every living log, also one that lost its name to another

    void end(Log* log);
};

LogMgr* LogMgr::get() {
    static LogMgr* const instance = new LogMgr;
    return instance;
}

LogMgr* LogMgr::getptr() {
    return get();
}

LogMgr::LogMgr()
    : data(new LogMgrData) {}

LogMgr::~LogMgr() {
    delete data;
}

bool LogMgr::start(const char* filename, bool enabled) {
    if (data->started)
        return true;
    data->default_filename = filename ? filename : "_orvex_log.txt";
    if (!data->default_log)
        data->default_log = create_log(data->default_filename.c_str(), enabled);
    data->started = data->default_log != nullptr;
    return data->started;
}

bool LogMgr::stop() {
    if (!data->started)
        return true;
    data->default_log = nullptr;
    for (const auto& [name, log] : data->logs)
        data->end(log);
    while (!data->made.empty())
        data->end(data->made.front());
    data->logs.clear();
    data->default_filename.clear();
    data->started = false;
    return true;
}

Log* LogMgr::create_log(const char* filename, bool enabled) {
    if (!filename)
        return data->default_log;
    Log* log = new Log;
    if (enabled)
        log->enable();
    else
        log->disable();
    log->set_filename(filename);
    log->set_append_mode(false);
    data->made.push_back(log);
    data->logs[filename] = log;
    return log;
}

bool LogMgr::kill_log(Log* log) {
    if (std::find(data->made.begin(), data->made.end(), log) == data->made.end())
        return false;
    const auto entry = data->logs.find(log->get_filename());
    if (entry == data->logs.end())
        return false;
    data->logs.erase(entry);
    std::erase_if(data->logs, [log](const auto& other) { return other.second == log; });
    if (data->default_log == log)
        data->default_log = nullptr;
    data->end(log);
    return true;
}

/// A log that stands under two names must end only once.
void LogMgr::LogMgrData::end(Log* log) {
    if (std::erase(made, log) == 0)
        return;
    log->close();
    delete log;
}

Log* LogMgr::get_default_log() const {
    return data->default_log;
}

bool LogMgr::lets_through(LOG_LEVEL level) const {
    return data->default_log && data->default_log->lets_through(level);
}

void LogMgr::trace(const char* message) {
    if (data->default_log)
        data->default_log->trace(LOG_LEVEL_INFO, message);
}

void LogMgr::trace_warning(const char* message) {
    if (data->default_log)
        data->default_log->trace(LOG_LEVEL_WARNING, message);
}

void LogMgr::trace_error(const char* message) {
    if (data->default_log)
        data->default_log->trace(LOG_LEVEL_ERROR, message);
}

void LogMgr::trace_debug(const char* message) {
    if (data->default_log)
        data->default_log->trace(LOG_LEVEL_DEBUG, message);
}

void LogMgr::simple_trace(const char* message) {
    if (data->default_log)
        data->default_log->simple_trace(LOG_LEVEL_INFO, message);
}

void LogMgr::vtracef(LOG_LEVEL level, const char* format, va_list arguments) {
    if (data->default_log)
        data->default_log->vtracef(level, format, arguments);
}

void LogMgr::tracef(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vtracef(LOG_LEVEL_INFO, format, arguments);
    va_end(arguments);
}

void LogMgr::tracef_warning(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vtracef(LOG_LEVEL_WARNING, format, arguments);
    va_end(arguments);
}

void LogMgr::tracef_error(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vtracef(LOG_LEVEL_ERROR, format, arguments);
    va_end(arguments);
}

void LogMgr::tracef_debug(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vtracef(LOG_LEVEL_DEBUG, format, arguments);
    va_end(arguments);
}

void LogMgr::simple_tracef(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    if (data->default_log)
        data->default_log->vsimple_tracef(LOG_LEVEL_INFO, format, arguments);
    va_end(arguments);
}

} // namespace orvex
