#pragma once

/// @file
/// Meshes that are packed as KHR_draco_mesh_compression packs them.

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "orvex_formats/gltf/private/gltf_accessor.h"
#include "orvex_formats/gltf/private/gltf_budget.h"
#include "orvex_formats/gltf/private/gltf_buffers.h"
#include "orvex_formats/gltf/private/gltf_json.h"
#include "orvex_formats/private/importer.h"

namespace orvex::formats {

/// Whether the program is there that unpacks them.
bool can_unpack_draco();

/// A mesh as it was before it was packed.
struct DracoMesh {
    struct Attribute {
        std::size_t width = 0;
        std::vector<float> numbers; ///< whole numbers as they are stored
    };
    std::size_t num_vertices = 0;
    std::vector<std::uint32_t> corners; ///< three a triangle, below the count of vertices
    std::map<std::uint32_t, Attribute> attributes;
};

/// Meshes as the importer answers them, one for each that it was asked for. Nothing is believed.
/// @throw Refusal
std::vector<DracoMesh> read_draco_answer(const InputFile& answer, std::size_t count);

/// Has all packed meshes of a file unpacked at once, and gives accessors what they hold.
/// @throw Refusal
void unpack_draco(const Json& root, GltfBuffers& buffers, GltfAccessors& accessors,
                  GltfBudget& budget, const Importer& importer);

} // namespace orvex::formats
