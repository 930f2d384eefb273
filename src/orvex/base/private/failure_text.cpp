#include "orvex/base/private/failure_text.h"

#include <cstdio>

namespace orvex {

void FailureText::set(const char* format, std::va_list arguments) noexcept {
    if (!format || std::vsnprintf(text, sizeof text, format, arguments) < 0)
        clear();
}

} // namespace orvex
