#pragma once

#include "orvex/api.h"

#include <type_traits>

namespace orvex {

/// Four 32-bit signed integers, such as a viewport rectangle.
///
/// A plain value: copied freely, owned by whoever holds it, with no thread of its own.
///
/// @code
/// orvex::vec4i rectangle; // (0, 0, 0, 1)
/// @endcode
class ORVEX_API vec4i {
public:
    int x; ///< offset 0
    int y; ///< offset 4
    int z; ///< offset 8
    int w; ///< offset 12

    /// Makes (0, 0, 0, 1).
    constexpr vec4i() noexcept
        : x(0)
        , y(0)
        , z(0)
        , w(1) {}
};

static_assert(sizeof(vec4i) == 16 && alignof(vec4i) == 4);
static_assert(std::is_trivially_copyable_v<vec4i> && std::is_standard_layout_v<vec4i>);

} // namespace orvex
