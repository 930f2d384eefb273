/// @file
/// LogMgr. It owns every log that it made, in `made`, in the order of making. `logs` finds one by
/// the name it was made under; a log may stand there twice or, when another took its name, not at
/// all. The trace operations read the default log without a lock: they may come from any thread
/// while the default log lives, and no thread may trace while it ends.

#include "orvex/base/log_mgr.h"

#include <algorithm>
#include <cstdarg>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "orvex/base/private/misuse.h"

namespace orvex {

struct LogMgr::LogMgrData {
    bool started = false;
    std::string default_filename;
    Log* default_log = nullptr;
    std::map<std::string, Log*> logs;
    std::vector<std::unique_ptr<Log>>
        made; ///< every living log, also one that lost its name to another

    std::vector<std::unique_ptr<Log>>::iterator find(const Log* log);
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
    : data(std::make_unique<LogMgrData>()) {}

LogMgr::~LogMgr() = default;

bool LogMgr::start(const char* filename, bool enabled) {
    if (data->started)
        return true;
    data->default_filename = filename ? filename : "_orvex_log.txt";
    if (!data->default_log)
        data->default_log = create_log(data->default_filename.c_str(), enabled);
    data->started = data->default_log;
    return data->started;
}

bool LogMgr::stop() {
    if (!data->started)
        return true;
    data->default_log = nullptr;
    for (const auto& [name, log] : data->logs)
        data->end(log);
    while (!data->made.empty())
        data->end(data->made.front().get());
    data->logs.clear();
    data->default_filename.clear();
    data->started = false;
    return true;
}

Log* LogMgr::create_log(const char* filename, bool enabled) {
    if (!filename)
        return data->default_log;
    auto log = std::make_unique<Log>();
    if (enabled)
        log->enable();
    else
        log->disable();
    log->set_filename(filename);
    log->set_append_mode(false);
    // All that needs memory comes before the first change.
    data->made.reserve(data->made.size() + 1);
    data->logs[filename] = log.get();
    return data->made.emplace_back(std::move(log)).get();
}

bool LogMgr::kill_log(Log* log) {
    if (data->find(log) == data->made.end())
        return misuse("LogMgr::kill_log", "no log of its own");
    const auto entry = data->logs.find(log->get_filename());
    if (entry == data->logs.end())
        return misuse("LogMgr::kill_log", "a log whose name isn't registered");
    data->logs.erase(entry);
    std::erase_if(data->logs, [log](const auto& other) { return other.second == log; });
    if (data->default_log == log)
        data->default_log = nullptr;
    data->end(log);
    return true;
}

/// Finds a log among those made here, by its address alone: it may be no log, or none any more.
std::vector<std::unique_ptr<Log>>::iterator LogMgr::LogMgrData::find(const Log* log) {
    return std::find_if(made.begin(), made.end(),
                        [log](const auto& other) { return other.get() == log; });
}

/// A log that stands under two names must end only once.
void LogMgr::LogMgrData::end(Log* log) {
    const auto entry = find(log);
    if (entry == made.end())
        return;
    const std::unique_ptr<Log> ended = std::move(*entry);
    made.erase(entry);
    ended->close();
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
