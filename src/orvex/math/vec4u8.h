#pragma once

#include "orvex/api.h"

#include <type_traits>

namespace orvex {

/// Four bytes: a colour with alpha, as images store it.
///
/// A plain value: copied freely, owned by whoever holds it, with no thread of its own. Like every
/// vector of four components it starts with w 1, which as a byte is an almost transparent alpha.
///
/// @code
/// const orvex::vec4u8 opaque_orange(255, 128, 0, 255);
/// @endcode
class ORVEX_API vec4u8 {
public:
    unsigned char x; ///< offset 0
    unsigned char y; ///< offset 1
    unsigned char z; ///< offset 2
    unsigned char w; ///< offset 3

    /// Makes (0, 0, 0, 1).
    constexpr vec4u8() noexcept
        : x(0)
        , y(0)
        , z(0)
        , w(1) {}
    /// Makes a vector of four components.
    constexpr vec4u8(unsigned char x, unsigned char y, unsigned char z, unsigned char w) noexcept
        : x(x)
        , y(y)
        , z(z)
        , w(w) {}
    constexpr vec4u8(const vec4u8&) = default;  ///< all four components
    vec4u8& operator=(const vec4u8&) = default; ///< all four components

    /// True when any of the four bytes differs.
    [[nodiscard]] bool operator!=(const vec4u8& b) const noexcept {
        return x != b.x || y != b.y || z != b.z || w != b.w;
    }
};

static_assert(sizeof(vec4u8) == 4 && alignof(vec4u8) == 1);
static_assert(std::is_trivially_copyable_v<vec4u8> && std::is_standard_layout_v<vec4u8>);

} // namespace orvex
