#pragma once

/// @file
/// From assimp's scene to a draft.

#include <cstdint>
#include <optional>

#include "orvex_formats/private/draft.h"

struct aiScene;

namespace orvex::formats {

/// A scene as it stands at rest, or at a moment of its first animation. A mesh that stands in two
/// places comes twice, each in the coordinates of the scene. Names of pictures are those that the
/// file has; what it carries within itself is a picture of the draft.
/// @param is_z_up     whether the scene's z points upward, which nothing in it tells
/// @param time        in seconds; none: at rest
/// @param most_bytes  of all vertices and triangles
/// @throw std::runtime_error  for what can't be right, and where there is nothing to draw
Draft draft_of(const aiScene& scene, bool is_z_up, std::optional<float> time,
               std::uint64_t most_bytes);

} // namespace orvex::formats
