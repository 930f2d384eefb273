#pragma once

#include <string>
#include <vector>

#include "orvex/base/log_mgr.h"

namespace orvex_test {

using namespace orvex;

/// Collects what the default log says during a test, debug lines included. Starts the log without a
/// file unless it runs already, and stops it at the end.
class LogCapture {
public:
    explicit LogCapture(LOG_LEVEL threshold = LOG_LEVEL_DEBUG) {
        LogMgr::get()->start("", true);
        Log* const log = LogMgr::get()->get_default_log();
        log->enable();
        log->set_trace_level_threshold(threshold);
        log->set_trace_callback(&LogCapture::take, this);
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture() { LogMgr::get()->stop(); }

    /// The lines so far without their stamps, as "<!> text".
    const std::vector<std::string>& messages() const { return texts; }

    bool has(const std::string& message) const {
        for (const std::string& text : texts)
            if (text == message)
                return true;
        return false;
    }

    void clear() { texts.clear(); }

private:
    static void take(const char* line, void* user_data) {
        const std::string text = line;
        const std::size_t stamp_end = text.find(") ");
        static_cast<LogCapture*>(user_data)->texts.push_back(
            stamp_end == std::string::npos ? text : text.substr(stamp_end + 2));
    }

    std::vector<std::string> texts;
};

} // namespace orvex_test
