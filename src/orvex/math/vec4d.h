#pragma once

#include "orvex/api.h"

#include <type_traits>

namespace orvex {

/// Four doubles.
///
/// A plain value: copied freely, owned by whoever holds it, with no thread of its own.
///
/// @code
/// orvex::vec4d precise; // (0, 0, 0, 1)
/// @endcode
class ORVEX_API vec4d {
public:
    double x; ///< offset 0
    double y; ///< offset 8
    double z; ///< offset 16
    double w; ///< offset 24

    /// Makes (0, 0, 0, 1).
    constexpr vec4d() noexcept
        : x(0.0)
        , y(0.0)
        , z(0.0)
        , w(1.0) {}
};

static_assert(sizeof(vec4d) == 32);
static_assert(std::is_trivially_copyable_v<vec4d> && std::is_standard_layout_v<vec4d>);

} // namespace orvex
