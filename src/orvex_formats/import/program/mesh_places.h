#pragma once

/// @file
/// Where the vertices of assimp's meshes are.

#include <vector>

#include <orvex/math/vec3.h>

#include "orvex_formats/import/program/scene_stands.h"

struct aiMesh;

namespace orvex::formats {

/// Takes the vertices of a mesh to the coordinates of the scene: all by the node that has the mesh,
/// or each by the bones that hold it.
class MeshPlaces {
public:
    /// @param stands     where bones are; null: they hold nothing
    /// @throw std::runtime_error  for a bone that holds what isn't there
    MeshPlaces(const aiMesh& mesh, const Stand& stand, const SceneStands* stands);

    std::vector<vec3> positions() const;
    /// Unit vectors; none where the mesh has none.
    std::vector<vec3> normals() const;
    /// Whether what was counter-clockwise isn't any more.
    bool is_mirrored() const;

private:
    const aiMatrix4x4& world_of(unsigned vertex) const {
        return by_vertex.empty() ? world : by_vertex[vertex];
    }
    void add_bones(const SceneStands& stands);

    const aiMesh& mesh;
    aiMatrix4x4 world;
    std::vector<aiMatrix4x4> by_vertex; ///< empty: all are the node's
};

} // namespace orvex::formats
