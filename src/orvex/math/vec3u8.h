#pragma once

#include "orvex/api.h"

#include <type_traits>

namespace orvex {

/// Three bytes: a colour without alpha, as images store it.
///
/// A plain value: copied freely, owned by whoever holds it, with no thread of its own.
///
/// @code
/// const orvex::vec3u8 orange(255, 128, 0);
/// @endcode
class ORVEX_API vec3u8 {
public:
    unsigned char x; ///< offset 0
    unsigned char y; ///< offset 1
    unsigned char z; ///< offset 2

    /// Makes (0, 0, 0).
    constexpr vec3u8() noexcept
        : x(0)
        , y(0)
        , z(0) {}
    /// Makes a vector of three components.
    constexpr vec3u8(unsigned char x, unsigned char y, unsigned char z) noexcept
        : x(x)
        , y(y)
        , z(z) {}
    constexpr vec3u8(const vec3u8&) = default;  ///< all three components
    vec3u8& operator=(const vec3u8&) = default; ///< all three components
};

static_assert(sizeof(vec3u8) == 3 && alignof(vec3u8) == 1);
static_assert(std::is_trivially_copyable_v<vec3u8> && std::is_standard_layout_v<vec3u8>);

} // namespace orvex
