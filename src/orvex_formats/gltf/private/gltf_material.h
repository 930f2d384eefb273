#pragma once

/// @file
/// Looks, as glTF's materials tell them.

#include <cstddef>
#include <string>
#include <vector>

#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_buffers.h"
#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/gltf/private/gltf_notes.h"
#include "orvex_formats/gltf/private/gltf_texture.h"
#include "orvex_formats/private/draft.h"

namespace orvex::formats {

/// Moves texture coordinates, whose v goes upward.
struct UvChange {
    unsigned layer = 0; ///< which of the file's coordinates become the first
    float offset_u = 0.0f, offset_v = 0.0f;
    float scale_u = 1.0f, scale_v = 1.0f;
    float rotation = 0.0f;
    bool is_any() const {
        return offset_u != 0.0f || offset_v != 0.0f || scale_u != 1.0f || scale_v != 1.0f ||
               rotation != 0.0f;
    }
};

/// All materials of a file, and the pictures that they name.
class GltfMaterials {
public:
    /// @param draft  gets the materials, the pictures and the notes
    /// @throw Refusal
    GltfMaterials(const Json& json, const InputFile& file, GltfBuffers& buffers, GltfBudget& budget,
                  GltfNotes& notes, Draft& draft);

    std::size_t size() const { return changes.size(); }
    /// What has to become of the coordinates of faces of a material, so that looks that know one
    /// picture and no transforms show it as it lies.
    const UvChange& change_of(std::size_t material) const { return changes[material]; }

private:
    void add(const Json& json, std::size_t place);
    void read_core(const Json& json, PhysicalMaterial& physical);
    void read_extensions(const Json& extensions, PhysicalMaterial& physical);

    GltfNotes& notes;
    Draft& draft;
    GltfTextures textures;
    std::vector<UvChange> changes;
};

} // namespace orvex::formats
