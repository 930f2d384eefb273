#pragma once

/// @file
/// Cameras, as glTF tells them.

#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/gltf/private/gltf_notes.h"
#include "orvex_formats/gltf/private/gltf_transform.h"
#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// All cameras of a file.
class GltfCameras {
public:
    GltfCameras(const Json& json, GltfBudget& budget, GltfNotes& notes, Draft& draft)
        : cameras(json.list("cameras"))
        , budget(budget)
        , notes(notes)
        , draft(draft) {}

    /// Adds the camera of a node to the draft, in its place in the scene. One that can't see is
    /// left out.
    /// @throw Refusal
    void add(const Json& node, const GltfTransform& world);

private:
    Json cameras;
    GltfBudget& budget;
    GltfNotes& notes;
    Draft& draft;
};

} // namespace orvex::formats
