#pragma once

#include "orvex/api.h"

#include <type_traits>

namespace orvex {

/// Two floats: a texture coordinate or a position in the plane.
///
/// A plain value: copied freely, owned by whoever holds it, with no invariant and no thread of its
/// own. Units are the caller's.
///
/// @code
/// orvex::vec2 uv;
/// uv.set(0.5f, 1.0f);
/// @endcode
class ORVEX_API vec2 {
public:
    float x; ///< offset 0
    float y; ///< offset 4

    /// Makes (0, 0).
    constexpr vec2() noexcept
        : x(0.0f)
        , y(0.0f) {}

    /// Sets the default value, (0, 0), in memory that no constructor has run on.
    void _construct() noexcept { set(0.0f, 0.0f); }

    /// Sets both components.
    /// @return this vector
    vec2& set(float new_x, float new_y) noexcept {
        x = new_x;
        y = new_y;
        return *this;
    }
};

static_assert(sizeof(vec2) == 8 && alignof(vec2) == 4);
static_assert(std::is_trivially_copyable_v<vec2> && std::is_standard_layout_v<vec2>);

} // namespace orvex
