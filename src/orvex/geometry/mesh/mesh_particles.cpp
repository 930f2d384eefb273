/// @file
/// The particles of a mesh: a position and a weight per vertex, for a simulation outside the
/// engine.

#include "orvex/geometry/mesh/mesh.h"

#include <cstring>

#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

namespace {

unsigned long num_particles(const MeshData* store) {
    return store && store->vertex_particles ? store->num_vertices : 0;
}

} // namespace

void Mesh::set_vertex_particle(unsigned long i, const vec4& particle) {
    if (i < num_particles(mesh_data))
        mesh_data->vertex_particles[i] = particle;
}

void Mesh::set_vertex_particle_w(unsigned long i, float w) {
    if (i < num_particles(mesh_data))
        mesh_data->vertex_particles[i].w = w;
}

void Mesh::set_vertices_particle_w(float w) {
    const unsigned long count = num_particles(mesh_data);
    for (unsigned long i = 0; i < count; ++i)
        mesh_data->vertex_particles[i].w = w;
}

vec4* Mesh::get_vertex_particles() {
    return mesh_data ? mesh_data->vertex_particles : nullptr;
}

const vec4* Mesh::get_vertex_particles() const {
    return mesh_data ? mesh_data->vertex_particles : nullptr;
}

bool Mesh::update_vertex_particle_from_position() {
    if (!mesh_data || !mesh_data->vertex_particles)
        return false;
    MeshData& store = *mesh_data;
    const void* const positions = store.get_position_ptr();
    if (store.separate_vertex_arrays && positions &&
        store.get_position_elt_size() == sizeof(vec4)) {
        std::memcpy(store.vertex_particles, positions, store.num_vertices * sizeof(vec4));
        return true;
    }
    for (unsigned long i = 0; i < store.num_vertices; ++i)
        store.vertex_particles[i] = store.get_position_4f(i);
    return true;
}

namespace {

/// Bounds of particles. They start inside out, at the limits of the working range.
struct Bounds {
    vec3 min{100000000.0f, 100000000.0f, 100000000.0f};
    vec3 max{-100000000.0f, -100000000.0f, -100000000.0f};
};

void widen(float value, float& min, float& max) {
    if (value < min)
        min = value;
    if (value > max)
        max = value;
}

Bounds bounds_of(const vec4* particles, unsigned long count) {
    Bounds bounds;
    for (unsigned long i = 0; i < count; ++i) {
        widen(particles[i].x, bounds.min.x, bounds.max.x);
        widen(particles[i].y, bounds.min.y, bounds.max.y);
        widen(particles[i].z, bounds.min.z, bounds.max.z);
    }
    return bounds;
}

bool on_asked_border(const vec4& p, const Bounds& bounds, int flags) {
    return ((flags & MESH_PLANE_BORDER_X_MIN) && p.x <= bounds.min.x) ||
           ((flags & MESH_PLANE_BORDER_X_MAX) && p.x >= bounds.max.x) ||
           ((flags & MESH_PLANE_BORDER_Z_MIN) && p.z <= bounds.min.z) ||
           ((flags & MESH_PLANE_BORDER_Z_MAX) && p.z >= bounds.max.z) ||
           ((flags & MESH_PLANE_BORDER_Y_MIN) && p.y <= bounds.min.y) ||
           ((flags & MESH_PLANE_BORDER_Y_MAX) && p.y >= bounds.max.y);
}

/// The corners of an X border lie at both ends of z, and the reverse.
bool on_asked_corner(const vec4& p, const Bounds& bounds, int flags) {
    const bool x_min = p.x <= bounds.min.x;
    const bool x_max = p.x >= bounds.max.x;
    const bool z_min = p.z <= bounds.min.z;
    const bool z_max = p.z >= bounds.max.z;
    return ((flags & MESH_PLANE_BORDER_X_MIN) && x_min && (z_min || z_max)) ||
           ((flags & MESH_PLANE_BORDER_X_MAX) && x_max && (z_min || z_max)) ||
           ((flags & MESH_PLANE_BORDER_Z_MIN) && z_min && (x_min || x_max)) ||
           ((flags & MESH_PLANE_BORDER_Z_MAX) && z_max && (x_min || x_max));
}

bool attach(MeshData* store, int flags, bool (*asked)(const vec4&, const Bounds&, int)) {
    if (!store || !store->vertex_particles)
        return false;
    const Bounds bounds = bounds_of(store->vertex_particles, store->num_vertices);
    for (unsigned long i = 0; i < store->num_vertices; ++i)
        if (asked(store->vertex_particles[i], bounds, flags))
            store->vertex_particles[i].w = 0.0f;
    return true;
}

} // namespace

bool Mesh::vertex_particle_attach_border(int flags) {
    return attach(mesh_data, flags, on_asked_border);
}

bool Mesh::vertex_particle_attach_border_two_points(int flags) {
    return attach(mesh_data, flags, on_asked_corner);
}

} // namespace orvex
