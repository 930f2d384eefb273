#include "orvex/geometry/mesh/mesh.h"

#include <exception>

#include "orvex/math/aligned_new.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/private/vertex_access.h"

namespace orvex {

namespace {

/// One of the five per-instance arrays of a store, and its dirty flag.
struct InstanceArray {
    VertexAttribArray MeshData::*array;
    bool MeshData::*need_update;
};

constexpr InstanceArray positions{&MeshData::instance_positions,
                                  &MeshData::instance_positions_need_update};
constexpr InstanceArray rotations{&MeshData::instance_rotations,
                                  &MeshData::instance_rotations_need_update};
constexpr InstanceArray scales{&MeshData::instance_scales, &MeshData::instance_scales_need_update};
constexpr InstanceArray colors{&MeshData::instance_colors, &MeshData::instance_colors_need_update};
constexpr InstanceArray miscs{&MeshData::instance_miscs, &MeshData::instance_miscs_need_update};

/// The value of one instance, or null if the array or the instance isn't there.
vec4* instance_value(MeshData* store, const InstanceArray& kind, unsigned long i) {
    if (!store || i >= store->num_instances)
        return nullptr;
    const VertexAttribArray& array = store->*kind.array;
    return i < array.num_elements ? &array.data[i] : nullptr;
}

void set_instance(MeshData* store, const InstanceArray& kind, unsigned long i, const vec4& value) {
    vec4* const place = instance_value(store, kind, i);
    if (!place)
        return;
    *place = value;
    store->*kind.need_update = true;
}

vec4 get_instance(MeshData* store, const InstanceArray& kind, unsigned long i) {
    const vec4* const place = instance_value(store, kind, i);
    return place ? *place : vec4();
}

void force_upload(MeshData* store, const InstanceArray& kind) {
    if (store)
        store->*kind.need_update = true;
}

vec4* array_pointer(MeshData* store, const InstanceArray& kind) {
    return store ? (store->*kind.array).data : nullptr;
}

void allocate_if_asked(bool asked, VertexAttribArray& array, unsigned long count, int alignment) {
    if (asked)
        vertex_access::allocate_array(array, count, alignment, AlignedNew_vec4);
}

void allocate_instances(MeshData& store, const InstancingInitParams& params, int alignment) {
    const unsigned long count = store.num_instances;
    allocate_if_asked(params.position, store.instance_positions, count, alignment);
    allocate_if_asked(params.rotation, store.instance_rotations, count, alignment);
    allocate_if_asked(params.scale, store.instance_scales, count, alignment);
    allocate_if_asked(params.color, store.instance_colors, count, alignment);
    allocate_if_asked(params.misc, store.instance_miscs, count, alignment);
}

} // namespace

bool Mesh::instancing_init(unsigned long count, const InstancingInitParams& params, int alignment) {
    if (count == 0 || !mesh_data)
        return false;
    instancing_cleanup();
    instancing_active = true;
    mesh_data->num_instances = count;
    try {
        allocate_instances(*mesh_data, params, alignment);
        return true;
    } catch (const std::exception&) {
        instancing_cleanup();
        mesh_data->num_instances = 0;
        return false;
    }
}

void Mesh::instancing_cleanup() {
    instancing_active = false;
    if (!mesh_data)
        return;
    for (const InstanceArray& kind : {positions, rotations, scales, colors, miscs})
        mesh_data->free_vertex_attrib_array(mesh_data->*kind.array);
}

unsigned long Mesh::get_num_instances() const {
    return mesh_data ? mesh_data->num_instances : 0;
}

void Mesh::set_instance_position(unsigned long i, const vec4& value) {
    set_instance(mesh_data, positions, i, value);
}

vec4 Mesh::get_instance_position(unsigned long i) {
    return get_instance(mesh_data, positions, i);
}

void Mesh::instance_position_need_update() {
    force_upload(mesh_data, positions);
}

vec4* Mesh::get_instances_positions_vec4_ptr() {
    return array_pointer(mesh_data, positions);
}

void Mesh::set_instance_rotation(unsigned long i, const vec4& value) {
    set_instance(mesh_data, rotations, i, value);
}

vec4 Mesh::get_instance_rotation(unsigned long i) {
    return get_instance(mesh_data, rotations, i);
}

void Mesh::instance_rotation_need_update() {
    force_upload(mesh_data, rotations);
}

vec4* Mesh::get_instances_rotations_vec4_ptr() {
    return array_pointer(mesh_data, rotations);
}

void Mesh::set_instance_scale(unsigned long i, const vec4& value) {
    set_instance(mesh_data, scales, i, value);
}

vec4 Mesh::get_instance_scale(unsigned long i) {
    return get_instance(mesh_data, scales, i);
}

void Mesh::instance_scale_need_update() {
    force_upload(mesh_data, scales);
}

vec4* Mesh::get_instances_scales_vec4_ptr() {
    return array_pointer(mesh_data, scales);
}

void Mesh::set_instance_color(unsigned long i, const vec4& value) {
    set_instance(mesh_data, colors, i, value);
}

vec4 Mesh::get_instance_color(unsigned long i) {
    return get_instance(mesh_data, colors, i);
}

void Mesh::instance_color_need_update() {
    force_upload(mesh_data, colors);
}

vec4* Mesh::get_instances_colors() {
    return array_pointer(mesh_data, colors);
}

void Mesh::set_instance_misc(unsigned long i, const vec4& value) {
    set_instance(mesh_data, miscs, i, value);
}

vec4 Mesh::get_instance_misc(unsigned long i) {
    return get_instance(mesh_data, miscs, i);
}

void Mesh::instance_misc_need_update() {
    force_upload(mesh_data, miscs);
}

vec4* Mesh::get_instances_miscs() {
    return array_pointer(mesh_data, miscs);
}

} // namespace orvex
