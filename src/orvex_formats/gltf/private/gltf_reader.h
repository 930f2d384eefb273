#pragma once

/// @file
/// glTF 2.0, text and binary.

#include <optional>

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/input_file.h"

namespace orvex::formats {

/// Reads a scene as it stands at rest: the one that the file shows first. A mesh that stands in two
/// places comes twice, each in the coordinates of the scene, a surface for each primitive.
///
/// Materials come with their physical values whole, and the nearest colours of the engine. Where
/// vertices have no normals, they are smooth but for edges, as in all formats. Pictures may lie in
/// the file, and in files of its folder, as buffers may; nothing else is opened.
/// @throw Refusal
Draft read_gltf(const InputFile& file);
/// The same as it stands at a moment of its first animation.
/// @param time  seconds; none: at rest
Draft read_gltf_at(const InputFile& file, std::optional<float> time);

} // namespace orvex::formats
