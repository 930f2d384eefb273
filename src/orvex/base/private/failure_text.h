#pragma once

/// @file
/// Where loaders and codecs keep why they refused a file.

#include <cstdarg>

#include "orvex/api.h"

namespace orvex {

/// A text of bounded length inside its owner: writing one allocates nothing and throws nothing, so
/// that the end of memory can be told, too.
struct FailureText {
    static constexpr unsigned long capacity = 512;

    char text[capacity] = {};

    /// Formats as `printf` does; what doesn't fit is cut. A null format empties it.
    void set(const char* format, std::va_list arguments) noexcept ORVEX_PRINTF(2, 0);
    /// The empty text.
    void clear() noexcept { text[0] = '\0'; }
};

} // namespace orvex
