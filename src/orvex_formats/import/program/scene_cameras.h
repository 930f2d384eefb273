#pragma once

/// @file
/// Cameras of assimp's scene.

#include "orvex_formats/import/program/scene_stands.h"
#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// Adds them to a draft, each where its node stands. One that sees nothing is left out with a note.
void add_cameras(const aiScene& scene, const SceneStands& stands, Draft& draft);

} // namespace orvex::formats
