#pragma once

/// @file
/// Lists of a mesh's faces that no draw reads: their normals and their materials. They take 20
/// bytes a face.

#include <optional>

#include <orvex/math/vec4.h>
#include <orvex/renderer/records/mesh_data.h>

namespace orvex::kit {

/// The lists of one mesh, while they are put away.
class FaceLists {
public:
    /// Ends those that can be made again to the bit: of one value, or of the normals that the faces
    /// have.
    void put_away(orvex::MeshData& mesh);
    /// Makes them again. What there is no memory for stays away.
    void bring_back(orvex::MeshData& mesh) noexcept;

private:
    std::optional<orvex::vec4> normal; ///< of all faces
    std::optional<float> computed_w;   ///< of all normals, where the faces give the rest of them
    std::optional<int> material;       ///< of all faces
};

} // namespace orvex::kit
