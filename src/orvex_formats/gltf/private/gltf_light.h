#pragma once

/// @file
/// Lights, as glTF tells them.

#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/gltf/private/gltf_notes.h"
#include "orvex_formats/gltf/private/gltf_transform.h"
#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// All lights of a file: what `KHR_lights_punctual` tells.
class GltfLights {
public:
    GltfLights(const Json& json, GltfBudget& budget, GltfNotes& notes, Draft& draft);

    /// Adds the light of a node to the draft, if the node has one, in its place in the scene. One
    /// that stands nowhere or doesn't shine is left out.
    /// @throw Refusal
    void add(const Json& node, const GltfTransform& world);

private:
    Json lights;
    GltfBudget& budget;
    GltfNotes& notes;
    Draft& draft;
};

} // namespace orvex::formats
