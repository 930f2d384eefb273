#include "orvex/math/vec4.h"

#include "orvex/math/private/angle.h"

namespace orvex {

vec4& vec4::rotate_y(float angle) noexcept {
    const float radians = angle * degrees_to_radians;
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    return set(x * c + z * s, y, -x * s + z * c, w);
}

vec4& vec4::rotate_z(float angle) noexcept {
    const float radians = angle * degrees_to_radians;
    const float c = std::cos(radians);
    const float s = std::sin(radians);
    return set(x * c - y * s, x * s + y * c, z, w);
}

} // namespace orvex
