// A corner's normal is the cross product of its two edges, weighted by the angle between them and
// made one long. Without smoothing the weight cancels out, but for how the numbers are rounded, so
// that the angle is needed to the last bit of a float.

#include "orvex/assets/models/3ds/private/lib3ds_normals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include <lib3ds.h>

namespace orvex::lib3ds {

namespace {

// --- The angle -------------------------------------------------------------------------------
// Of a half circle, directions (c, s) with |c| + s = 1 and steps of 1/64 of c are known beforehand.
// From the nearest of them to (x, y) it is an angle of at most 1/64, whose tangent is
// (c*y - s*x) / (c*x + s*y), and whose series is short.

constexpr int steps = 64;

struct Direction {
    double c;
    double s;
    double angle;
};

const std::array<Direction, 2 * steps + 1> directions = [] {
    std::array<Direction, 2 * steps + 1> result{};
    for (std::size_t i = 0; i < result.size(); ++i) {
        const double c = 1.0 - static_cast<double>(i) / steps;
        const double s = 1.0 - std::abs(c);
        result[i] = {c, s, std::atan2(s, c)};
    }
    return result;
}();

/// `std::atan2` of doubles, as a float. @param y  above 0
float angle_of(double y, double x) {
    const double sum = std::abs(x) + y;
    if (!(sum <= std::numeric_limits<double>::max())) [[unlikely]]
        return static_cast<float>(std::atan2(y, x));
    const Direction& near = directions[static_cast<std::size_t>((1.0 - x / sum) * steps + 0.5)];
    const double t = (near.c * y - near.s * x) / (near.c * x + near.s * y);
    const double tt = t * t;
    const double angle =
        near.angle + t * (1.0 - tt * (1.0 / 3.0 - tt * (1.0 / 5.0 - tt * (1.0 / 7.0))));
    // Within some units of the last place of a double. Where a float's rounding hangs on those, the
    // library has to say.
    constexpr double error = 1e-14;
    const auto low = static_cast<float>(angle * (1.0 - error));
    const auto high = static_cast<float>(angle * (1.0 + error));
    return low == high ? low : static_cast<float>(std::atan2(y, x));
}

// --- Corners ---------------------------------------------------------------------------------

/// The corners of some faces at a time, step by step, so that the processor does several at once.
class Corners {
public:
    static constexpr std::uint32_t max_faces = 64;

    void fill(const Lib3dsMesh& mesh, std::uint32_t first, std::uint32_t num_faces,
              Lib3dsFloat3* normals) {
        count = 0;
        for (std::uint32_t i = first; i < first + num_faces; ++i) {
            const auto& index = mesh.faces[i].index;
            const float(&a)[3] = mesh.vertices[index[0]];
            const float(&b)[3] = mesh.vertices[index[1]];
            const float(&c)[3] = mesh.vertices[index[2]];
            add(a, b, c);
            add(b, c, a);
            add(c, a, b);
        }
        measure();
        weigh();
        measure();
        for (std::size_t i = 0; i < count; ++i)
            normals[i] = normalized(i);
    }

private:
    /// @param next  behind `corner` in its face, as `previous` is before it
    void add(const float (&corner)[3], const float (&next)[3], const float (&previous)[3]) {
        const float px = next[0] - corner[0], py = next[1] - corner[1], pz = next[2] - corner[2];
        const float qx = previous[0] - corner[0], qy = previous[1] - corner[1],
                    qz = previous[2] - corner[2];
        x[count] = py * qz - pz * qy;
        y[count] = pz * qx - px * qz;
        z[count] = px * qy - py * qx;
        dot[count] = px * qx + py * qy + pz * qz;
        ++count;
    }

    void measure() {
        for (std::size_t i = 0; i < count; ++i)
            length[i] = std::sqrt(x[i] * x[i] + y[i] * y[i] + z[i] * z[i]);
    }

    /// A corner without an angle gets no direction.
    void weigh() {
        for (std::size_t i = 0; i < count; ++i) {
            weight[i] = 0.0f;
            if (length[i] > 0.0f)
                weight[i] = angle_of(static_cast<double>(length[i]), static_cast<double>(dot[i]));
            else
                x[i] = y[i] = z[i] = length[i] = 1.0f;
        }
        for (std::size_t i = 0; i < count; ++i) {
            const float factor = weight[i] / length[i];
            x[i] *= factor;
            y[i] *= factor;
            z[i] *= factor;
        }
    }

    /// What is too short for a direction becomes the axis of its greatest part.
    Lib3dsFloat3 normalized(std::size_t i) const {
        constexpr double too_short = 1e-5;
        if (static_cast<double>(length[i]) < too_short) [[unlikely]] {
            if (x[i] >= y[i] && x[i] >= z[i])
                return {1.0f, 0.0f, 0.0f};
            return y[i] >= z[i] ? Lib3dsFloat3{0.0f, 1.0f, 0.0f} : Lib3dsFloat3{0.0f, 0.0f, 1.0f};
        }
        const float factor = 1.0f / length[i];
        return {x[i] * factor, y[i] * factor, z[i] * factor};
    }

    static constexpr std::size_t room = 3 * max_faces;
    std::size_t count = 0;
    float x[room], y[room], z[room]; ///< the cross product of the two edges
    float dot[room];                 ///< of the two edges
    float length[room];
    float weight[room];
};

} // namespace

void fill_unsmoothed_normals(const Lib3dsMesh& mesh, std::uint32_t num_faces,
                             Lib3dsFloat3* normals) {
    Corners corners;
    for (std::uint32_t done = 0; done < num_faces; done += Corners::max_faces)
        corners.fill(mesh, done, std::min(num_faces - done, Corners::max_faces),
                     normals + 3 * std::size_t{done});
}

} // namespace orvex::lib3ds
