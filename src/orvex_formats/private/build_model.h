#pragma once

/// @file
/// From a draft to the engine's nodes.

#include <cstdint>
#include <string>
#include <vector>

#include <orvex/fwd.h>

#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// Roughly the bytes of a mesh, a cloud or lines in the engine that hold next to nothing.
inline constexpr std::uint64_t size_of_node = 2560;

/// Roughly the bytes of a vertex of a mesh there, of a triangle, and of a point or an end of a
/// line.
inline constexpr std::uint64_t size_of_vertex = 112, size_of_triangle = 32, size_of_point = 96;

/// What a model may take whose file has so many bytes, packed or not: what a small one may, and
/// more than any that has its data once for what is in it.
constexpr std::uint64_t most_of_model(std::uint64_t file_size) {
    return (std::uint64_t{256} << 20) +
           (file_size > UINT64_MAX / 128 ? UINT64_MAX / 2 : 64 * file_size);
}

/// Adds what a draft holds to a model: a mesh for each surface, a point pool for each cloud, a
/// polyline for each of its lines, cameras, lights, and the materials, which the material manager
/// gets as well, and the texture manager their pictures. The draft is used up on the way, so that
/// the memory of both isn't needed at once. When it throws, some of it may have been added.
/// @return notes about pictures that no codec can decode: they are white
/// @throw std::bad_alloc
std::vector<std::string> build_model(Draft&& draft, Model& model);

} // namespace orvex::formats
