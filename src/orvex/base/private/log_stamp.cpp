#include "orvex/base/private/log_stamp.h"

#include <cstdio>

namespace orvex {

void LogStamp::set_time(std::time_t seconds) {
    if (valid && seconds == last_seconds)
        return;
    tzset(); // which the form that threads may use leaves out
    localtime_r(&seconds, &local);
    std::snprintf(date, sizeof date, "%02d:%02d:%02d@%02d:%02d:%02d(", local.tm_year + 1900,
                  local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    last_seconds = seconds;
    valid = true;
}

namespace {

/// The number as "%010d" gives it.
void append_number(std::string& line, std::int32_t number) {
    char text[12];
    if (number < 0) {
        line.append(text,
                    static_cast<std::size_t>(std::snprintf(text, sizeof text, "%010d", number)));
        return;
    }
    constexpr int width = 10;
    for (int i = width - 1; i >= 0; --i) {
        text[i] = static_cast<char>('0' + number % 10);
        number /= 10;
    }
    line.append(text, width);
}

} // namespace

void LogStamp::append_to(std::string& line, std::int32_t number) const {
    line.append(date);
    append_number(line, number);
    line.push_back(')');
}

} // namespace orvex
