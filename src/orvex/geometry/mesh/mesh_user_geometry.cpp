/// @file
/// Geometry from lists: a host adds vertices and faces one by one, and the next build makes the
/// store from them and empties the lists.

#include "orvex/geometry/mesh/mesh.h"

#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/geometry/mesh/private/mesh_user_geometry_data.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

bool Mesh::_build() {
    if (get_build_state()) {
        update_build_state(false);
        if (!_user_geometry_build())
            return false;
    }
    return Object::_build();
}

namespace {

/// The lists, made when the first vertex or face comes.
MeshBuildUserGeometryData& made(std::unique_ptr<MeshBuildUserGeometryData>& lists) {
    if (!lists)
        lists = std::make_unique<MeshBuildUserGeometryData>();
    return *lists;
}

bool set_listed(MeshBuildUserGeometryData* lists, unsigned long i, vec4 Vertex::*attribute,
                const vec4& value) {
    if (!lists || i >= lists->vertices.size())
        return false;
    lists->vertices[i].*attribute = value;
    return true;
}

} // namespace

unsigned long Mesh::user_geometry_add_vertex(const vec4& position) {
    Vertex vertex;
    vertex.position = position;
    vertex.color = vec4(1.0f, 1.0f, 1.0f, 1.0f);
    std::vector<Vertex>& vertices = made(user_geometry).vertices;
    vertices.push_back(vertex);
    update_build_state(true);
    return vertices.size() - 1;
}

bool Mesh::user_geometry_set_vertex_position(unsigned long i, const vec4& position) {
    if (!set_listed(user_geometry.get(), i, &Vertex::position, position))
        return false;
    update_build_state(true);
    return true;
}

bool Mesh::user_geometry_set_vertex_color(unsigned long i, const vec4& color) {
    if (!set_listed(user_geometry.get(), i, &Vertex::color, color))
        return false;
    update_build_state(true);
    return true;
}

bool Mesh::user_geometry_set_vertex_normal(unsigned long i, const vec4& normal) {
    if (!set_listed(user_geometry.get(), i, &Vertex::normal, normal))
        return false;
    update_build_state(true);
    return true;
}

bool Mesh::user_geometry_set_vertex_uv0(unsigned long i, const vec4& uv) {
    if (!set_listed(user_geometry.get(), i, &Vertex::uv0, uv))
        return false;
    update_build_state(true);
    return true;
}

bool Mesh::user_geometry_add_face32(unsigned int a, unsigned int b, unsigned int c) {
    made(user_geometry).faces32.push_back({a, b, c});
    update_build_state(true);
    return true;
}

bool Mesh::user_geometry_cleanup() {
    if (!user_geometry)
        return false;
    user_geometry.reset();
    return true;
}

namespace {

void fill_vertices(MeshData& store, const std::vector<Vertex>& vertices) {
    store.prepare_to_fill(store.color);
    store.prepare_to_fill(store.uv0);
    for (unsigned long i = 0; i < vertices.size(); ++i) {
        store.set_position(i, vertices[i].position.get_vec3());
        store.set_normal(i, vertices[i].normal.get_vec3());
        store.set_color(i, vertices[i].color);
        store.set_uv0(i, vertices[i].uv0);
    }
}

void fill_faces(MeshData& store, const std::vector<FaceU32>& faces) {
    for (unsigned long i = 0; i < faces.size(); ++i) {
        if (store.index_bits == 32)
            store.faces_u32[i] = faces[i];
        else
            store.faces_u16[i] = {static_cast<unsigned short>(faces[i].a),
                                  static_cast<unsigned short>(faces[i].b),
                                  static_cast<unsigned short>(faces[i].c)};
    }
}

} // namespace

bool Mesh::_user_geometry_build() {
    if (!user_geometry)
        return false;
    free_mesh_data();
    const std::vector<Vertex>& vertices = user_geometry->vertices;
    const std::vector<FaceU32>& faces = user_geometry->faces32;
    if (vertices.empty() || faces.empty())
        return false;
    if (!alloc_vertex_data(vertices.size()) || !alloc_face_data(faces.size(), false))
        return false;
    fill_vertices(*mesh_data, vertices);
    fill_faces(*mesh_data, faces);
    mesh_contents::mark_for_upload(*mesh_data);
    return user_geometry_cleanup();
}

} // namespace orvex
