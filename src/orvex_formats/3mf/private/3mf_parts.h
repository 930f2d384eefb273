#pragma once

/// @file
/// The parts of a 3MF package, as plain lists.

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Three rows of a matrix and its translation: a row of numbers times them is a place.
using Placement3mf = std::array<double, 12>;
inline constexpr Placement3mf nowhere_else = {1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};

/// Which object is put where.
struct Use3mf {
    std::size_t object = SIZE_MAX; ///< a place in the list of objects; the last: not known yet
    std::string part;              ///< until it is
    std::uint32_t id = 0;
    Placement3mf placement = nowhere_else;
};

/// Materials, or else colours of corners, or else their places on a picture.
struct Group3mf {
    std::size_t first_material = 0;
    std::uint32_t num_materials = 0;
    std::vector<vec4> colors;
    std::vector<vec2> uvs; ///< v upward; all faces have the first material then
};

/// What a triangle, or a whole object, looks like.
struct Look3mf {
    std::uint32_t group = 0; ///< its id; 0: none
    std::array<std::uint32_t, 3> entries{};
};

struct Object3mf {
    std::string name;
    std::size_t part = 0;
    std::vector<vec3> positions;
    std::vector<Triangle> triangles;
    std::vector<Look3mf> looks; ///< one a triangle
    std::vector<Use3mf> components;
};

/// A package.
struct Package3mf {
    std::vector<Object3mf> objects;
    std::vector<std::map<std::uint32_t, Group3mf>> groups; ///< by parts, and by their ids
    std::vector<Use3mf> items;
    std::vector<SurfaceMaterial> materials;
    std::vector<Picture> pictures;
    std::vector<std::string> notes;
};

/// Reads all parts that items and components lead to.
/// @throw Refusal
Package3mf read_3mf_package(const InputFile& file);

} // namespace orvex::formats
