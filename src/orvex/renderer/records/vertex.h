#pragma once

/// @file
/// The vertex and face records of a mesh, as the GPU reads them, and the aligned arrays of them.

#include <cstddef>
#include <type_traits>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/math/vec2.h"
#include "orvex/math/vec3.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/geometry_enums.h"

namespace orvex {

/// The full vertex: six `vec4`, 96 bytes. A default vertex has (0, 0, 0, 1) in every attribute.
///
/// Arrays of it are uploaded as they stand, with a stride of 96 bytes. Positions are in the space
/// of the object, texture coordinates have their origin at the lower left.
struct ORVEX_API Vertex {
    vec4 position; ///< byte 0
    vec4 color;    ///< byte 16: red, green, blue, alpha
    vec4 normal;   ///< byte 32: x, y, z
    vec4 uv0;      ///< byte 48: first texture layer
    vec4 uv1;      ///< byte 64: second texture layer
    vec4 tangent;  ///< byte 80
};

/// The packed vertex of `VERTEX_FORMAT_64`, 64 bytes. By default vectors of two and three floats
/// are zero, those of four (0, 0, 0, 1).
struct ORVEX_API Vertex_64 {
    vec3 position; ///< byte 0
    vec4 color;    ///< byte 12
    vec3 normal;   ///< byte 28
    vec2 uv0;      ///< byte 40
    vec4 tangent;  ///< byte 48
};

/// The smallest vertex, of `VERTEX_FORMAT_32`, 32 bytes: no colour and no tangent.
struct ORVEX_API Vertex_32 {
    vec3 position; ///< byte 0
    vec3 normal;   ///< byte 12
    vec2 uv0;      ///< byte 24
};

/// The vertex of `VERTEX_FORMAT_PHYSX_CLOTH`, 64 bytes: its position is a cloth simulator's
/// particle, with the inverse mass in w.
struct ORVEX_API Vertex_PhysXCloth {
    vec4 position; ///< byte 0
    vec4 color;    ///< byte 16
    vec3 normal;   ///< byte 32
    vec2 uv0;      ///< byte 44
    vec3 tangent;  ///< byte 52
};

/// A triangle of 16-bit vertex indices, 6 bytes, counter-clockwise seen from the front.
struct ORVEX_API FaceU16 {
    unsigned short a = 0; ///< first corner
    unsigned short b = 0; ///< second corner
    unsigned short c = 0; ///< third corner
};

/// A triangle of 32-bit vertex indices, 12 bytes, counter-clockwise seen from the front.
struct ORVEX_API FaceU32 {
    unsigned int a = 0; ///< first corner
    unsigned int b = 0; ///< second corner
    unsigned int c = 0; ///< third corner
};

static_assert(sizeof(Vertex) == 96 && std::is_trivially_copyable_v<Vertex> &&
              std::is_standard_layout_v<Vertex>);
static_assert(offsetof(Vertex, position) == 0 && offsetof(Vertex, color) == 16 &&
              offsetof(Vertex, normal) == 32 && offsetof(Vertex, uv0) == 48 &&
              offsetof(Vertex, uv1) == 64 && offsetof(Vertex, tangent) == 80);
static_assert(sizeof(Vertex_64) == 64 && std::is_trivially_copyable_v<Vertex_64> &&
              std::is_standard_layout_v<Vertex_64>);
static_assert(offsetof(Vertex_64, position) == 0 && offsetof(Vertex_64, color) == 12 &&
              offsetof(Vertex_64, normal) == 28 && offsetof(Vertex_64, uv0) == 40 &&
              offsetof(Vertex_64, tangent) == 48);
static_assert(sizeof(Vertex_32) == 32 && std::is_trivially_copyable_v<Vertex_32> &&
              std::is_standard_layout_v<Vertex_32>);
static_assert(offsetof(Vertex_32, position) == 0 && offsetof(Vertex_32, normal) == 12 &&
              offsetof(Vertex_32, uv0) == 24);
static_assert(sizeof(Vertex_PhysXCloth) == 64 && std::is_trivially_copyable_v<Vertex_PhysXCloth> &&
              std::is_standard_layout_v<Vertex_PhysXCloth>);
static_assert(offsetof(Vertex_PhysXCloth, position) == 0 &&
              offsetof(Vertex_PhysXCloth, color) == 16 &&
              offsetof(Vertex_PhysXCloth, normal) == 32 && offsetof(Vertex_PhysXCloth, uv0) == 44 &&
              offsetof(Vertex_PhysXCloth, tangent) == 52);
static_assert(sizeof(FaceU16) == 6 && sizeof(FaceU32) == 12);

/// Allocates an aligned array of vertices and leaves its memory uninitialised.
///
/// The block is `count` records plus `alignment - 1` bytes from `malloc`. Give the array back with
/// the `AlignedDelete_*` of the same type.
/// @param count      number of vertices
/// @param alignment  in bytes, a power of two; below 1 acts as 1
/// @param raw        takes the address of the block itself; may be null, but then nothing can give
///                   the block back
/// @return the array, or null (and null in `*raw`) if there is no memory or the size overflows
[[nodiscard]] ORVEX_API Vertex* AlignedNew_Vertex(unsigned long count, int alignment,
                                                  unsigned char** raw);
/// @copydoc AlignedNew_Vertex
[[nodiscard]] ORVEX_API Vertex_64* AlignedNew_Vertex_64(unsigned long count, int alignment,
                                                        unsigned char** raw);
/// @copydoc AlignedNew_Vertex
[[nodiscard]] ORVEX_API Vertex_32* AlignedNew_Vertex_32(unsigned long count, int alignment,
                                                        unsigned char** raw);
/// @copydoc AlignedNew_Vertex
[[nodiscard]] ORVEX_API Vertex_PhysXCloth*
AlignedNew_Vertex_PhysXCloth(unsigned long count, int alignment, unsigned char** raw);

/// Gives an aligned array back.
/// @param aligned  the array's pointer, set to null
/// @param count    not used
/// @param raw      the block that `AlignedNew_Vertex` stored: freed and set to null; may be null
ORVEX_API void AlignedDelete_Vertex(Vertex** aligned, unsigned long count, unsigned char** raw);
/// @copydoc AlignedDelete_Vertex
ORVEX_API void AlignedDelete_Vertex_64(Vertex_64** aligned, unsigned long count,
                                       unsigned char** raw);
/// @copydoc AlignedDelete_Vertex
ORVEX_API void AlignedDelete_Vertex_32(Vertex_32** aligned, unsigned long count,
                                       unsigned char** raw);
/// @copydoc AlignedDelete_Vertex
ORVEX_API void AlignedDelete_Vertex_PhysXCloth(Vertex_PhysXCloth** aligned, unsigned long count,
                                               unsigned char** raw);

} // namespace orvex
