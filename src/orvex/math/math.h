#pragma once

#include "orvex/api.h"
#include "orvex/fwd.h"

namespace orvex {

/// Ray tests and the random source.
///
/// Only static operations: no object is made of it. The ray tests are pure; `srnd` and `rnd` share
/// the C library's random state, which belongs to the whole process.
///
/// @code
/// float t = 0.0f;
/// if (orvex::Math::ray_triangle_intersection(eye, view, a, b, c, &t) && t > 0.0f)
///     hit = eye + view * t;
/// @endcode
class ORVEX_API Math {
public:
    Math() = delete;

    /// Tests the infinite line through a ray against a triangle, from both sides, by Cramer's rule.
    /// @param origin,dir  the ray; `dir` of any length
    /// @param p0,p1,p2  the triangle
    /// @param[out] t  where the plane is met, in lengths of `dir` from `origin`, negative behind
    /// it;
    ///                written whatever the result, not finite for a line parallel to the plane; may
    ///                be null
    /// @return true when the line meets the triangle, its edges included
    static bool ray_triangle_intersection(const vec4& origin, const vec4& dir, const vec4& p0,
                                          const vec4& p1, const vec4& p2, float* t) noexcept;

    /// Tests the infinite line through a ray against a sphere: one behind the origin is hit too.
    /// @param origin,dir  the ray; `dir` of any length
    /// @param center,radius  the sphere
    /// @return true when they touch or cross, and when the numbers are not numbers
    [[nodiscard]] static bool check_ray_sphere_intersection(const vec4& origin, const vec4& dir,
                                                            const vec4& center,
                                                            float radius) noexcept;

    /// Seeds the random source of the whole process. Any thread, one at a time.
    /// @param seed  any number; equal ones give equal sequences
    static void srnd(unsigned int seed) noexcept;
    /// A random number between `a` and `b`, both included, and one step of the random source. Any
    /// thread, one at a time.
    /// @param a,b  in any order
    static float rnd(float a, float b) noexcept;
};

} // namespace orvex
