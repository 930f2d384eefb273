#pragma once

/// @file
/// Where things stand, computed in doubles: deep trees multiply many of them.

#include <array>

#include <orvex/math/vec3.h>

namespace orvex::formats {

/// The upper three rows of a matrix, column by column: three axes and a place.
struct GltfTransform {
    std::array<double, 12> columns{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

    /// @param rotation  x, y, z, w; is normalized
    static GltfTransform of_parts(const std::array<double, 3>& translation,
                                  const std::array<double, 4>& rotation,
                                  const std::array<double, 3>& scale);

    GltfTransform operator*(const GltfTransform& inner) const;
    /// Adds a weighted one, number by number.
    void add(const GltfTransform& other, double weight);

    vec3 place(const vec3& point) const;
    /// Whether left and right are swapped.
    bool is_mirrored() const;
};

/// What a transform does to normals.
class GltfNormalTurn {
public:
    explicit GltfNormalTurn(const GltfTransform& transform);

    /// Where a normal looks afterwards; a unit vector, along z where it has no direction.
    vec3 operator()(const vec3& normal) const;

private:
    std::array<double, 9> columns;
};

} // namespace orvex::formats
