#include "orvex_formats/gltf/private/gltf_transform.h"

#include <cmath>
#include <cstddef>

namespace orvex::formats {

namespace {

using Columns = std::array<double, 12>;

/// The cross product of two axes.
std::array<double, 3> cross(const Columns& columns, std::size_t a, std::size_t b) {
    const double* const left = columns.data() + 3 * a;
    const double* const right = columns.data() + 3 * b;
    return {left[1] * right[2] - left[2] * right[1], left[2] * right[0] - left[0] * right[2],
            left[0] * right[1] - left[1] * right[0]};
}

double determinant(const Columns& columns) {
    const std::array<double, 3> normal = cross(columns, 1, 2);
    return columns[0] * normal[0] + columns[1] * normal[1] + columns[2] * normal[2];
}

} // namespace

GltfTransform GltfTransform::of_parts(const std::array<double, 3>& translation,
                                      const std::array<double, 4>& rotation,
                                      const std::array<double, 3>& scale) {
    auto [x, y, z, w] = rotation;
    const double length = std::sqrt(x * x + y * y + z * z + w * w);
    if (length > 0.0 && std::isfinite(length)) {
        x /= length;
        y /= length;
        z /= length;
        w /= length;
    } else {
        x = y = z = 0.0;
        w = 1.0;
    }
    GltfTransform made;
    made.columns = {(1 - 2 * (y * y + z * z)) * scale[0],
                    2 * (x * y + z * w) * scale[0],
                    2 * (x * z - y * w) * scale[0],
                    2 * (x * y - z * w) * scale[1],
                    (1 - 2 * (x * x + z * z)) * scale[1],
                    2 * (y * z + x * w) * scale[1],
                    2 * (x * z + y * w) * scale[2],
                    2 * (y * z - x * w) * scale[2],
                    (1 - 2 * (x * x + y * y)) * scale[2],
                    translation[0],
                    translation[1],
                    translation[2]};
    return made;
}

GltfTransform GltfTransform::operator*(const GltfTransform& inner) const {
    GltfTransform product;
    for (std::size_t column = 0; column < 4; ++column)
        for (std::size_t row = 0; row < 3; ++row) {
            double sum = column == 3 ? columns[9 + row] : 0.0;
            for (std::size_t i = 0; i < 3; ++i)
                sum += columns[3 * i + row] * inner.columns[3 * column + i];
            product.columns[3 * column + row] = sum;
        }
    return product;
}

void GltfTransform::add(const GltfTransform& other, double weight) {
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i] += other.columns[i] * weight;
}

vec3 GltfTransform::place(const vec3& point) const {
    const auto x = double(point.x), y = double(point.y), z = double(point.z);
    const auto row = [&](std::size_t i) {
        return static_cast<float>(columns[i] * x + columns[3 + i] * y + columns[6 + i] * z +
                                  columns[9 + i]);
    };
    return {row(0), row(1), row(2)};
}

bool GltfTransform::is_mirrored() const {
    return determinant(columns) < 0.0;
}

// The cofactors turn normals as the inverse's transpose does, and also where there is none; but for
// their sign.
GltfNormalTurn::GltfNormalTurn(const GltfTransform& transform) {
    const double sign = transform.is_mirrored() ? -1.0 : 1.0;
    for (std::size_t column = 0; column < 3; ++column) {
        const std::array<double, 3> axis =
            cross(transform.columns, (column + 1) % 3, (column + 2) % 3);
        for (std::size_t row = 0; row < 3; ++row)
            columns[3 * column + row] = sign * axis[row];
    }
}

vec3 GltfNormalTurn::operator()(const vec3& normal) const {
    const auto x = double(normal.x), y = double(normal.y), z = double(normal.z);
    const auto row = [&](std::size_t i) {
        return columns[i] * x + columns[3 + i] * y + columns[6 + i] * z;
    };
    const double turned[] = {row(0), row(1), row(2)};
    const double length =
        std::sqrt(turned[0] * turned[0] + turned[1] * turned[1] + turned[2] * turned[2]);
    if (!(length > 0.0) || !std::isfinite(length))
        return {0.0f, 0.0f, 1.0f};
    return {static_cast<float>(turned[0] / length), static_cast<float>(turned[1] / length),
            static_cast<float>(turned[2] / length)};
}

} // namespace orvex::formats
