#pragma once

/// @file
/// Materials and pictures of assimp's scene.

#include "orvex_formats/private/draft.h"

struct aiScene;

namespace orvex::formats {

/// Adds them to a draft.
void add_materials(const aiScene& scene, Draft& draft);

} // namespace orvex::formats
