/// @file
/// Log. The protocol of one line:
///
/// 1. The filter: threshold and switch, read without a lock. A line that is dropped costs no more.
/// 2. The lazy open, under `opening`, which is held for that alone. Closing takes the same lock.
/// 3. The lock of the log, unless it goes without. From here to the end of the line one thread owns
///    the format buffer, the line's memory, the counter and the stamp.
/// 4. The sinks in order: the callback, the file, the terminal. A sink that fails stops no other.
///
/// A line that finds no memory is dropped: who traces is often in the middle of giving something
/// back, and has no use for an exception. A stamped one leaves a gap in the numbers.

#include "orvex/base/log.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

#include "orvex/base/private/log_format.h"
#include "orvex/base/private/log_stamp.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/base/private/misuse.h"
#include "orvex/base/thread_lock.h"
#include "orvex/platform/private/log_file.h"

namespace orvex {

struct Log::LogData {
    LogFile file;
    std::string filename;
    bool file_open = false;
    std::atomic<bool> opened{false};
    bool enabled = false;
    bool append_mode = false;
    bool send_to_terminal = false;
    bool write_to_file = true;
    std::int32_t line_counter = 0;
    std::int32_t trace_level_threshold = LOG_LEVEL_INFO;
    char format_buffer[65536] = {};
    ThreadLock lock;
    bool use_thread_lock = true;
    void (*trace_callback)(const char* line, void* user_data) = nullptr;
    void* trace_callback_user_data = nullptr;

    std::mutex opening; ///< the lazy open happens before `lock` is taken, which may be off
    LogStamp stamp;
    std::string line_memory; ///< lent to the line being written

    std::string_view format(const char* text, va_list arguments) ORVEX_PRINTF(2, 0);
    void write_stamped(LOG_LEVEL level, std::string_view message);
    void write_simple(std::string_view message);
    void call_back(const std::string& line);
    void write_file(const std::string& line);
};

Log::Log()
    : data(std::make_unique<LogData>()) {}

Log::~Log() = default;

void Log::set_trace_callback(void (*callback)(const char*, void*), void* user_data) {
    data->trace_callback = callback;
    data->trace_callback_user_data = user_data;
}

void Log::use_thread_lock(bool state) {
    data->use_thread_lock = state;
}

void Log::enable() {
    data->enabled = true;
}

void Log::disable() {
    data->enabled = false;
}

void Log::send_to_terminal(bool state) {
    data->send_to_terminal = state;
}

void Log::write_to_file(bool state) {
    data->write_to_file = state;
}

void Log::set_append_mode(bool state) {
    data->append_mode = state;
}

void Log::set_trace_level_threshold(LOG_LEVEL level) {
    data->trace_level_threshold = level;
}

void Log::set_filename(const char* filename) {
    if (filename)
        data->filename = filename;
    else
        misuse("Log::set_filename", "a null name");
}

const char* Log::get_filename() const {
    return data->filename.c_str();
}

bool Log::open(const char* filename, bool append) {
    set_filename(filename);
    set_append_mode(append);
    return _open();
}

bool Log::_open() {
    if (data->opened.load(std::memory_order_acquire))
        return true;
    const std::lock_guard guard(data->opening);
    if (data->opened.load(std::memory_order_relaxed))
        return true;
    if (!data->filename.empty()) {
        data->file.open(data->filename.c_str(), data->append_mode);
        data->file_open = true;
    }
    data->opened.store(true, std::memory_order_release);
    return true;
}

bool Log::close() {
    const std::lock_guard guard(data->opening);
    if (data->file_open)
        data->file.close();
    data->file_open = false;
    data->opened.store(false, std::memory_order_release);
    return true;
}

bool Log::lets_through(LOG_LEVEL level) const {
    return level <= data->trace_level_threshold && data->enabled;
}

/// Whether a line goes out: one that passes the filter and has a text.
bool Log::is_due(LOG_LEVEL level, const char* text) const {
    if (!lets_through(level))
        return false;
    return text || misuse("Log::trace", "a null text");
}

namespace {

/// Holds the lock of a log for one line; null for a log that goes without.
class LineLock {
public:
    explicit LineLock(ThreadLock* lock)
        : lock(lock) {
        if (lock)
            lock->acquire();
    }
    LineLock(const LineLock&) = delete;
    LineLock& operator=(const LineLock&) = delete;
    ~LineLock() {
        if (lock)
            lock->release();
    }

private:
    ThreadLock* lock;
};

} // namespace

void Log::trace(LOG_LEVEL level, const char* message) {
    if (!is_due(level, message))
        return;
    _open();
    const LineLock guard(data->use_thread_lock ? &data->lock : nullptr);
    data->write_stamped(level, message);
}

void Log::tracef(LOG_LEVEL level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vtracef(level, format, arguments);
    va_end(arguments);
}

void Log::vtracef(LOG_LEVEL level, const char* format, va_list arguments) {
    if (!is_due(level, format))
        return;
    _open();
    const LineLock guard(data->use_thread_lock ? &data->lock : nullptr);
    data->write_stamped(level, data->format(format, arguments));
}

void Log::simple_trace(LOG_LEVEL level, const char* message) {
    if (!is_due(level, message))
        return;
    _open();
    const LineLock guard(data->use_thread_lock ? &data->lock : nullptr);
    data->write_simple(message);
}

void Log::simple_tracef(LOG_LEVEL level, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vsimple_tracef(level, format, arguments);
    va_end(arguments);
}

void Log::vsimple_tracef(LOG_LEVEL level, const char* format, va_list arguments) {
    if (!is_due(level, format))
        return;
    _open();
    const LineLock guard(data->use_thread_lock ? &data->lock : nullptr);
    data->write_simple(data->format(format, arguments));
}

std::string_view Log::LogData::format(const char* text, va_list arguments) {
    if (const auto size = format_plainly(format_buffer, sizeof format_buffer, text, arguments))
        return {format_buffer, *size};
    format_buffer[0] = '\0';
    std::vsnprintf(format_buffer, sizeof format_buffer, text, arguments);
    return format_buffer;
}

namespace {

constexpr std::size_t max_marker_size = 5;

std::string_view marker(LOG_LEVEL level) {
    switch (level) {
    case LOG_LEVEL_ERROR:
        return " <*> ";
    case LOG_LEVEL_WARNING:
        return " <!> ";
    case LOG_LEVEL_INFO:
        return " < > ";
    case LOG_LEVEL_DEBUG:
        return " <o> ";
    }
    return {};
}

/// The number after this one, without an overflow.
std::int32_t successor(std::int32_t number) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(number) + 1u);
}

/// Lends a log's memory to one line. A callback that traces while the log goes without its lock
/// finds no memory to lend and cannot disturb the line that is being written.
class LineMemory {
public:
    explicit LineMemory(std::string& owner)
        : line(std::move(owner))
        , owner(owner) {
        line.clear();
    }
    LineMemory(const LineMemory&) = delete;
    LineMemory& operator=(const LineMemory&) = delete;
    ~LineMemory() {
        if (line.capacity() <= most_kept)
            owner = std::move(line);
    }

    /// @return false without memory for so many characters
    bool make_room(std::size_t size) {
        return or_false([&] {
            line.reserve(size);
            return true;
        });
    }

    std::string line;

private:
    /// What the longest formatted line takes; only an unformatted one can be longer.
    static constexpr std::size_t most_kept = 2 * 65536;

    std::string& owner;
};

} // namespace

void Log::LogData::write_stamped(LOG_LEVEL level, std::string_view message) {
    LineMemory memory(line_memory);
    line_counter = successor(line_counter);
    if (!memory.make_room(LogStamp::max_size + max_marker_size + message.size() + 1))
        return;
    // The head: stamp, number, marker.
    stamp.set_time(std::time(nullptr));
    const std::tm time = stamp.time();
    stamp.append_to(memory.line, line_counter);
    memory.line.append(marker(level)).append(message);
    // The sinks. The callback sees no line end.
    call_back(memory.line);
    memory.line.push_back('\n');
    write_file(memory.line);
    if (send_to_terminal)
        std::printf("\n[%02d:%02d:%02d] %s", time.tm_hour, time.tm_min, time.tm_sec,
                    message.data());
}

void Log::LogData::write_simple(std::string_view message) {
    LineMemory memory(line_memory);
    if (!memory.make_room(message.size() + 1))
        return;
    memory.line.append(message).push_back('\n');
    call_back(memory.line);
    write_file(memory.line);
    if (send_to_terminal)
        std::printf("\n%s", message.data());
}

void Log::LogData::call_back(const std::string& line) {
    if (trace_callback)
        trace_callback(line.c_str(), trace_callback_user_data);
}

void Log::LogData::write_file(const std::string& line) {
    if (file_open && write_to_file)
        file.write(line);
}

} // namespace orvex
