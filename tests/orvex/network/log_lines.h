#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvex/base/log_mgr.h"

namespace orvex_test {

using namespace orvex;

/// Collects what the default log says, debug lines included, while any number of threads trace.
/// Starts the log without a file and stops it at the end, when those threads are gone.
class LogLines {
public:
    LogLines() {
        LogMgr::get()->start("", true);
        Log* const log = LogMgr::get()->get_default_log();
        log->set_trace_level_threshold(LOG_LEVEL_DEBUG);
        log->set_trace_callback(&LogLines::take, this);
    }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;
    ~LogLines() { LogMgr::get()->stop(); }

    /// The lines since the last `take_all`, without their stamps, as "<!> text".
    std::vector<std::string> take_all() {
        const std::lock_guard guard(mutex);
        return std::exchange(lines, {});
    }

    int count(const std::string& line) {
        const std::lock_guard guard(mutex);
        return static_cast<int>(std::count(lines.begin(), lines.end(), line));
    }

    /// Waits for the `number`-th line that begins like this, and gives it; empty, with a failure,
    /// if it never comes.
    std::string wait_for(const std::string& beginning, int number = 1) {
        constexpr auto patience = std::chrono::seconds(100);
        std::unique_lock guard(mutex);
        std::string found;
        const bool came = changed.wait_for(guard, patience, [&] {
            int left = number;
            for (const std::string& line : lines)
                if (line.starts_with(beginning) && --left == 0)
                    found = line;
            return !found.empty();
        });
        EXPECT_TRUE(came) << "no line: " << beginning;
        return found;
    }

private:
    static void take(const char* line, void* user_data) {
        const std::string text = line;
        static_cast<LogLines*>(user_data)->add(text.substr(text.find(") ") + 2));
    }

    void add(const std::string& line) {
        const std::lock_guard guard(mutex);
        lines.push_back(line);
        changed.notify_all();
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> lines;
};

} // namespace orvex_test
