/// @file
/// What a mesh computes from its vertices and faces: normals, bounds, blends of two meshes.
///
/// All of it goes through the store's operations on one vertex, whatever the format and the
/// layout, and marks what it wrote for upload. An index that a host set out of range is passed
/// over.

#include "orvex/geometry/mesh/mesh.h"

#include <utility>
#include <vector>

#include "orvex/base/private/misuse.h"
#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/platform/private/constant_array.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

using namespace mesh_contents;

namespace {

vec4 face_normal(const MeshData& store, const FaceU32& face) {
    const vec3 p0 = store.get_position(face.a);
    const vec3 p1 = store.get_position(face.b);
    const vec3 p2 = store.get_position(face.c);
    vec3 e2 = p2 - p1;
    vec3 normal = e2.cross(p0 - p1);
    normal.normalize();
    return vec4(normal.x, normal.y, normal.z, 0.0f);
}

} // namespace

bool Mesh::compute_faces_normal(Node* node) {
    if (!has_faces(mesh_data))
        return false;
    const unsigned long count = mesh_data->face_normals ? mesh_data->num_faces : 0;
    for (unsigned long i = 0; i < count; ++i)
        mesh_data->face_normals[i] = face_normal(*mesh_data, face_at(*mesh_data, i));
    return Object::compute_faces_normal(node);
}

namespace {

/// Adds each face's normal to those of its three vertices and counts the faces of each vertex.
void sum_face_normals(MeshData& store, std::vector<int>& face_counts) {
    const unsigned long count = store.face_normals ? store.num_faces : 0;
    for (unsigned long i = 0; i < count; ++i) {
        const vec3 normal = store.face_normals[i].get_vec3();
        const FaceU32 face = face_at(store, i);
        for (unsigned int vertex : {face.a, face.b, face.c}) {
            if (vertex >= store.num_vertices)
                continue;
            store.set_normal(vertex, store.get_normal(vertex) + normal);
            ++face_counts[vertex];
        }
    }
}

} // namespace

bool Mesh::compute_vertices_normal(Node* node) {
    if (!has_vertices(mesh_data) || !has_faces(mesh_data))
        return false;
    MeshData& store = *mesh_data;
    std::vector<int> face_counts(store.num_vertices);
    for (unsigned long i = 0; i < store.num_vertices; ++i)
        store.set_normal(i, vec3());
    sum_face_normals(store, face_counts);
    for (unsigned long i = 0; i < store.num_vertices; ++i) {
        vec3 normal = store.get_normal(i) * (1.0f / static_cast<float>(face_counts[i]));
        normal.normalize();
        store.set_normal(i, normal);
    }
    store.normals_need_update = true;
    return Object::compute_vertices_normal(node);
}

namespace {

/// Gives vertex i and the later ones at its place the mean of their normals.
void average_normals_at(MeshData& store, unsigned long i, float threshold) {
    const vec3 position = store.get_position(i);
    vec3 normal = store.get_normal(i);
    int count = 1;
    for (unsigned long j = i + 1; j < store.num_vertices; ++j) {
        if (!position.is_equal(store.get_position(j), threshold))
            continue;
        normal += store.get_normal(j);
        ++count;
    }
    if (count == 1)
        return;
    normal *= 1.0f / static_cast<float>(count);
    normal.normalize();
    store.set_normal(i, normal);
    for (unsigned long j = i + 1; j < store.num_vertices; ++j)
        if (position.is_equal(store.get_position(j), threshold))
            store.set_normal(j, normal);
}

} // namespace

bool Mesh::average_vertices_normal(float threshold, Node* node) {
    if (!has_vertices(mesh_data) || !has_faces(mesh_data))
        return false;
    for (unsigned long i = 0; i < mesh_data->num_vertices; ++i)
        average_normals_at(*mesh_data, i, threshold);
    mesh_data->normals_need_update = true;
    return Object::compute_vertices_normal(node);
}

void Mesh::scale_vertices_position(const vec4& scale, Node* node) {
    if (!has_vertices(mesh_data))
        return;
    const vec3 factor = scale.get_vec3();
    for (unsigned long i = 0; i < mesh_data->num_vertices; ++i) {
        // With its w, which isn't 1 in every format.
        const vec4 p = mesh_data->get_position_4f(i);
        mesh_data->set_position(i, vec4(p.x * factor.x, p.y * factor.y, p.z * factor.z, p.w));
    }
    mesh_data->positions_need_update = true;
    Object::scale_vertices_position(scale, node);
}

namespace {

template<class Face>
void flip(Face* faces, unsigned long count) {
    for (unsigned long i = 0; i < count; ++i)
        std::swap(faces[i].a, faces[i].c);
}

} // namespace

void Mesh::flip_faces(Node* node) {
    if (has_faces(mesh_data)) {
        if (mesh_data->index_bits == 16)
            flip(mesh_data->faces_u16, mesh_data->num_faces);
        else
            flip(mesh_data->faces_u32, mesh_data->num_faces);
    }
    if (mesh_data)
        mesh_data->faces_need_update = true;
    Object::flip_faces(node);
}

void Mesh::flip_vertex_normals(Node* node) {
    if (!has_vertices(mesh_data))
        return;
    for (unsigned long i = 0; i < mesh_data->num_vertices; ++i) {
        vec3 normal = mesh_data->get_normal(i);
        normal *= -1.0f;
        mesh_data->set_normal(i, normal);
    }
    mesh_data->normals_need_update = true;
    Object::flip_vertex_normals(node);
}

namespace {

/// Gives all vertices a colour without touching the memory of each, where that can be.
bool spread_color(MeshData& store, const vec4& color) {
    void* const colors = store.separate_vertex_arrays ? store.get_color_ptr() : nullptr;
    return colors && store.get_color_elt_size() == sizeof(vec4) &&
           spread_again(colors, store.num_vertices * sizeof(vec4), pattern_of(color));
}

} // namespace

void Mesh::set_vertices_color(const vec4& color, Node*) {
    if (!has_vertices(mesh_data))
        return;
    mesh_data->colors_need_update = true;
    if (spread_color(*mesh_data, color))
        return;
    for (unsigned long i = 0; i < mesh_data->num_vertices; ++i)
        mesh_data->set_color(i, color);
}

void Mesh::set_vertices_color(float r, float g, float b, float a, Node* node) {
    set_vertices_color(vec4(r, g, b, a), node);
}

namespace {

struct Box {
    vec3 min;
    vec3 max;
};

void widen(float value, float& min, float& max) {
    if (value < min)
        min = value;
    if (value > max)
        max = value;
}

Box bounding_box(const MeshData& store) {
    Box box{store.get_position(0), store.get_position(0)};
    for (unsigned long i = 1; i < store.num_vertices; ++i) {
        const vec3 p = store.get_position(i);
        widen(p.x, box.min.x, box.max.x);
        widen(p.y, box.min.y, box.max.y);
        widen(p.z, box.min.z, box.max.z);
    }
    return box;
}

} // namespace

bool Mesh::update_bounding_sphere(Node* node) {
    if (!has_vertices(mesh_data))
        return false;
    const Box box = bounding_box(*mesh_data);
    const vec3 diagonal = box.max - box.min;
    float radius = diagonal.length() / 2.0f;
    if (bounding_sphere_inscribed_sphere())
        radius /= 1.732f; // the root of 3, as it always was: diagonal to edge of a cube
    set_bounding_sphere(vec4(box.min + diagonal * 0.5f), radius);
    Object::update_bounding_sphere(node);
    return true;
}

namespace {

vec3 blend(const vec3& a, const vec3& b, float t) {
    return a * (1.0f - t) + b * t;
}

float clamped_to_unit(float t) {
    if (t < 0.0f)
        return 0.0f;
    return t > 1.0f ? 1.0f : t;
}

void tween(MeshData& store, const MeshData& a, const MeshData& b, float t) {
    for (unsigned long i = 0; i < store.num_vertices; ++i) {
        store.set_position(i, blend(a.get_position(i), b.get_position(i), t));
        vec3 normal = blend(a.get_normal(i), b.get_normal(i), t);
        normal.normalize();
        store.set_normal(i, normal);
    }
}

} // namespace

bool Mesh::do_linear_tweening(Mesh* a, Mesh* b, float t) {
    if (!mesh_data || !a || !b || !a->mesh_data || !b->mesh_data)
        return misuse("Mesh::do_linear_tweening", "a null mesh, or one without a store");
    if (a->get_num_vertices(nullptr) != b->get_num_vertices(nullptr))
        return misuse("Mesh::do_linear_tweening", "meshes of different vertex counts");
    if (get_num_vertices(nullptr) != a->get_num_vertices(nullptr))
        copy_geometry(a);
    if (has_vertices(mesh_data))
        tween(*mesh_data, *a->mesh_data, *b->mesh_data, clamped_to_unit(t));
    mesh_data->positions_need_update = true;
    mesh_data->normals_need_update = true;
    return true;
}

} // namespace orvex
