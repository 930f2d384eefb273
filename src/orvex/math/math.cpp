#include "orvex/math/math.h"

#include <cstdlib>

#include "orvex/math/vec4.h"

namespace orvex {

// Cramer's rule on origin + t * dir = p0 - beta * e1 - gamma * e2. A line parallel to the plane has
// det 0: what follows is not finite and fails the first comparisons, so it needs no test of its
// own.
bool Math::ray_triangle_intersection(const vec4& origin, const vec4& dir, const vec4& p0,
                                     const vec4& p1, const vec4& p2, float* t) noexcept {
    const vec4 e1 = p0 - p1;
    const vec4 e2 = p0 - p2;
    const vec4 s = p0 - origin;
    const vec4 a = e2.cross(dir);
    const vec4 b = e1.cross(s);
    const float det = e1.dot(a);
    if (t)
        *t = -e2.dot(b) / det;
    const float beta = dir.dot(b) / det;
    const float gamma = s.dot(a) / det;
    return beta >= 0.0f && gamma >= 0.0f && beta <= 1.0f && gamma <= 1.0f && beta + gamma <= 1.0f;
}

bool Math::check_ray_sphere_intersection(const vec4& origin, const vec4& dir, const vec4& center,
                                         float radius) noexcept {
    const vec4 l = origin - center;
    const float a = dir.dot(dir);
    const float b = 2.0f * l.x * dir.x + 2.0f * l.y * dir.y + 2.0f * l.z * dir.z;
    const float c = l.dot(l) - radius * radius;
    return !(0.0f > b * b - 4.0f * a * c);
}

void Math::srnd(unsigned int seed) noexcept {
    std::srand(seed);
}

float Math::rnd(float a, float b) noexcept {
    constexpr float step = 0x1p-31f;
    return a + ((b - a) * step) * static_cast<float>(std::rand());
}

} // namespace orvex
