#include "orvex/math/quat.h"

#include <cmath>

#include "orvex/math/private/angle.h"
#include "orvex/math/private/zero.h"
#include "orvex/math/vec4.h"

namespace orvex {

namespace {

constexpr float smallest_length = 1e-7f;

void store(float* where, float value) {
    if (where)
        *where = value;
}

} // namespace

// A length of exactly 1 isn't asked for: a turn has it or just misses it, so that no processor
// foresees the answer, and a scale of 1 changes nothing either.
quat& quat::normalize() noexcept {
    const float length = std::sqrt(x * x + y * y + z * z + w * w);
    if (length < smallest_length)
        return *this;
    const float scale = 1.0f / length;
    return set(x * scale, y * scale, z * scale, w * scale);
}

// The flag asks for a unit axis, but what is normalised is the whole quaternion: an axis of another
// length gives another angle, flag or no flag, and callers have come to rely on it.
quat& quat::from_axis_angle(float angle, float x, float y, float z,
                            bool /*normalize_axis*/) noexcept {
    const float half = angle * degrees_to_radians * 0.5f;
    const float s = std::sin(half);
    return set(x * s, y * s, z * s, std::cos(half)).normalize();
}

quat& quat::from_axis_angle(float angle, const vec4& axis, bool normalize_axis) noexcept {
    return from_axis_angle(angle, axis.x, axis.y, axis.z, normalize_axis);
}

namespace {

/// `from_axis_angle` about one of the unit axes. Of a zero sine, cosine and length are known: each
/// of the first three components is that zero, with its sign.
quat turn_about(const vec4& axis, float angle) noexcept {
    if (angle == 0.0f)
        return quat(angle, angle, angle, 1.0f);
    return quat().from_axis_angle(angle, axis, false);
}

quat euler_product(float x, float y, float z) noexcept {
    quat product = (turn_about(vec4::UNIT_Y_AXIS, y) * turn_about(vec4::UNIT_X_AXIS, x)) *
                   turn_about(vec4::UNIT_Z_AXIS, z);
    return product.normalize();
}

/// Scales a sine and a cosine to unit length, as `normalize` does where the rest is zero.
void normalize_turn(float& sine, float& cosine) noexcept {
    const float scale = 1.0f / std::sqrt(sine * sine + cosine * cosine);
    sine *= scale;
    cosine *= scale;
}

/// The product of a turn about one axis and of two by +0, which leave nothing of it but its sine
/// and cosine, to the bit: the zeros add up to +0. It is normalised twice, as a turn and as a
/// product.
/// @param component  that of the axis
/// @return false, changing nothing, where one of the two is zero or no number
bool set_single_turn(quat& turn, float quat::*component, float angle) noexcept {
    const float half = angle * degrees_to_radians * 0.5f;
    float sine = std::sin(half);
    float cosine = std::cos(half);
    if (!(std::abs(sine) > 0.0f && std::abs(cosine) > 0.0f))
        return false;
    normalize_turn(sine, cosine);
    normalize_turn(sine, cosine);
    turn.set(0.0f, 0.0f, 0.0f, cosine);
    turn.*component = sine;
    return true;
}

} // namespace

quat& quat::from_euler(float x, float y, float z) noexcept {
    // Three turns by +0 are the identity to the bit, and most calls are of a single turn or of
    // none.
    const bool has_x = !is_positive_zero(x), has_y = !is_positive_zero(y),
               has_z = !is_positive_zero(z);
    switch (has_x + 2 * has_y + 4 * has_z) {
    case 0:
        return identity();
    case 1:
        if (set_single_turn(*this, &quat::x, x))
            return *this;
        break;
    case 2:
        if (set_single_turn(*this, &quat::y, y))
            return *this;
        break;
    case 4:
        if (set_single_turn(*this, &quat::z, z))
            return *this;
        break;
    default:
        break;
    }
    return *this = euler_product(x, y, z);
}

void quat::to_euler(float* first, float* second, float* third) const noexcept {
    store(first, std::atan2(2.0f * (y * z + x * w), -x * x - y * y + z * z + w * w));
    store(second, std::asin(-2.0f * (x * z - y * w)));
    store(third, std::atan2(2.0f * (x * y + z * w), x * x - y * y - z * z + w * w));
}

quat& quat::from_vector_rotation(const vec4& from, const vec4& to) noexcept {
    const float d = from.dot(to);
    if (d == 1.0f)
        return identity();
    const float s = std::sqrt((1.0f + d) * 2.0f);
    const vec4 c = from.cross(to);
    const float scale = 1.0f / s;
    return set(c.x * scale, c.y * scale, c.z * scale, 0.5f * s).normalize();
}

vec4 quat::operator*(const vec4& v) const noexcept {
    const vec4 axis(x, y, z, 1.0f);
    vec4 uv = axis.cross(v);
    vec4 uuv = axis.cross(uv);
    uv *= 2.0f * w;
    uuv *= 2.0f;
    // v is const, so the first sum is the free one (w 1); its temporary result takes the member.
    return v + uv + uuv;
}

} // namespace orvex
