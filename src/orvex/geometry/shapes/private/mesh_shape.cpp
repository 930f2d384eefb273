#include "orvex/geometry/shapes/private/mesh_shape.h"

#include <cmath>
#include <numbers>

namespace orvex::mesh_shape {

std::vector<SinCos> full_turn(unsigned long slices) {
    constexpr float two_pi = 2.0f * std::numbers::pi_v<float>;
    std::vector<SinCos> turn(slices + 1);
    for (unsigned long i = 0; i <= slices; ++i) {
        const float angle = static_cast<float>(i) * two_pi / static_cast<float>(slices);
        turn[i] = {std::sin(angle), std::cos(angle)};
    }
    return turn;
}

} // namespace orvex::mesh_shape
