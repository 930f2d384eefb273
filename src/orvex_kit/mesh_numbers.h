#pragma once

/// @file
/// Meshes of the host's numbers.

#include <cstddef>
#include <optional>
#include <string>

#include <orvex/math/vec4.h>

#include "orvex_kit/normals.h"
#include "orvex_kit/picture.h"

namespace orvex::kit {

/// What numbers in memory are.
enum class Number {
    u8,  ///< `std::uint8_t`
    u16, ///< `std::uint16_t`
    u32, ///< `std::uint32_t`
    i32, ///< `std::int32_t`
    i64, ///< `std::int64_t`
    f32, ///< `float`
    f64  ///< `double`
};

/// Numbers of the host's, so many together for each element, read where they lie and not kept.
struct Numbers {
    const void* data = nullptr; ///< the first element; null: there are none
    Number kind = Number::f32;  ///< of each number
    int components = 0;         ///< numbers an element, side by side; 0 for as many as are wanted
    std::ptrdiff_t stride = 0;  ///< bytes from one element to the next; 0 for no gaps
};

/// A mesh as `Model::from_numbers` takes it. Reals are `Number::f32` or `Number::f64`.
///
/// @code
/// const float places[] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
/// kit::MeshNumbers numbers;
/// numbers.num_vertices = 3;
/// numbers.positions = {places};
/// kit::Model triangle = kit::Model::from_numbers(numbers);
/// @endcode
struct MeshNumbers {
    std::size_t num_vertices = 0; ///< below 2^31
    Numbers positions;            ///< three reals
    Numbers normals;              ///< three reals, of any length; without: those of the faces
    Numbers texcoords;            ///< two reals; (0, 0) is the texture's lower left corner
    Numbers colors;               ///< three or four reals of 0 to 1, or `Number::u8` of 0 to 255
    std::size_t num_faces = 0;    ///< triangles; without them every three vertices are one
    /// Three vertices, counted from 0, of any whole numbers.
    Numbers faces{nullptr, Number::u32};
    std::optional<Normals> shading{};   ///< where normals come from; as given if nothing is said
    std::optional<orvex::vec4> color{}; ///< of all: red, green, blue, and the opacity
    const Picture* texture = nullptr;   ///< 8-bit, read during the call; null for none
    std::string name{};                 ///< of the mesh
};

} // namespace orvex::kit
