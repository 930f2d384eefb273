#pragma once

/// @file
/// The numbers of a mesh as the engine has them.

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include <orvex/math/vec4.h>

#include "orvex_kit/mesh_numbers.h"

namespace orvex::kit {

/// Copies of the host's numbers. What wasn't there is empty.
struct MeshParts {
    std::vector<orvex::vec4> positions; ///< w is 1
    std::vector<orvex::vec4> normals;   ///< w is 0
    std::vector<orvex::vec4> texcoords;
    std::vector<orvex::vec4> colors;
    std::vector<std::array<unsigned, 3>> faces;
};

/// Copies numbers, and looks at each.
/// @param num_vertices  that each array of vertices has
/// @return what is wrong with them; empty if nothing is
std::string read_parts(const MeshNumbers& numbers, std::size_t num_vertices, MeshParts& parts);

} // namespace orvex::kit
