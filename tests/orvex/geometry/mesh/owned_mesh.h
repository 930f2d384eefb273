#pragma once

/// @file
/// Meshes of a test, ended the way a host ends them.

#include <memory>

#include "orvex/geometry/mesh/mesh.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex_test {

struct ReleaseNode {
    void operator()(orvex::Node* node) const { node->release(nullptr, nullptr); }
};

/// A node that its scope releases.
template<class T>
using Owned = std::unique_ptr<T, ReleaseNode>;

using OwnedMesh = Owned<orvex::Mesh>;

inline OwnedMesh make_mesh(orvex::VERTEX_FORMAT format = orvex::VERTEX_FORMAT_96) {
    return OwnedMesh(new orvex::Mesh(format));
}

/// A mesh with that many default vertices and faces over vertex 0.
inline OwnedMesh make_mesh(unsigned long num_vertices, unsigned long num_faces) {
    OwnedMesh mesh = make_mesh();
    mesh->alloc_vertex_data(num_vertices);
    mesh->alloc_face_data(num_faces, false);
    return mesh;
}

/// A mesh without a store, as an unknown format makes it.
inline OwnedMesh make_mesh_without_store() {
    return make_mesh(static_cast<orvex::VERTEX_FORMAT>(4));
}

/// The triangle (0, 0, 0), (1, 0, 0), (0, 1, 0).
inline OwnedMesh make_unit_triangle(orvex::VERTEX_FORMAT format = orvex::VERTEX_FORMAT_96,
                                    bool separate = true, bool wide_faces = false) {
    OwnedMesh mesh = make_mesh(format);
    mesh->set_vertex_alloc_params(separate, 0);
    mesh->alloc_vertex_data(3);
    mesh->alloc_face_data(1, wide_faces);
    mesh->set_vertex_position(1, orvex::vec4(1.0f, 0.0f, 0.0f, 1.0f));
    mesh->set_vertex_position(2, orvex::vec4(0.0f, 1.0f, 0.0f, 1.0f));
    mesh->set_face_indexes(0, 0, 1, 2);
    return mesh;
}

} // namespace orvex_test
