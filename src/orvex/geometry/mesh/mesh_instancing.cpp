/// @file
/// Instances of a mesh: five arrays of one `vec4` per instance in its store, each there only if it
/// was asked for. All five answer the same operations, so these are told once, for any row of a
/// table.

#include "orvex/geometry/mesh/mesh.h"

#include "orvex/base/private/memory_out.h"
#include "orvex/base/private/misuse.h"
#include "orvex/math/aligned_new.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/private/vertex_access.h"

namespace orvex {

namespace {

/// One of the five per-instance arrays of a store, its dirty flag, and whether a host wants it.
struct InstanceArray {
    VertexAttribArray MeshData::*array;
    bool MeshData::*need_update;
    bool InstancingInitParams::*asked;
};

constexpr InstanceArray positions{&MeshData::instance_positions,
                                  &MeshData::instance_positions_need_update,
                                  &InstancingInitParams::position};
constexpr InstanceArray rotations{&MeshData::instance_rotations,
                                  &MeshData::instance_rotations_need_update,
                                  &InstancingInitParams::rotation};
constexpr InstanceArray scales{&MeshData::instance_scales, &MeshData::instance_scales_need_update,
                               &InstancingInitParams::scale};
constexpr InstanceArray colors{&MeshData::instance_colors, &MeshData::instance_colors_need_update,
                               &InstancingInitParams::color};
constexpr InstanceArray miscs{&MeshData::instance_miscs, &MeshData::instance_miscs_need_update,
                              &InstancingInitParams::misc};

constexpr const InstanceArray* all_arrays[] = {&positions, &rotations, &scales, &colors, &miscs};

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

void allocate_instances(MeshData& store, const InstancingInitParams& params, int alignment) {
    for (const InstanceArray* const kind : all_arrays)
        if (params.*kind->asked)
            vertex_access::allocate_array(store.*kind->array, store.num_instances, alignment,
                                          AlignedNew_vec4);
}

} // namespace

bool Mesh::instancing_init(unsigned long count, const InstancingInitParams& params, int alignment) {
    if (count == 0)
        return misuse("Mesh::instancing_init", "no instances");
    if (!mesh_data)
        return misuse("Mesh::instancing_init", "a mesh without a store");
    instancing_cleanup();
    instancing_active = true;
    mesh_data->num_instances = count;
    const auto allocate = [&] {
        allocate_instances(*mesh_data, params, alignment);
        return true;
    };
    return or_undo(allocate, [this] {
        instancing_cleanup();
        mesh_data->num_instances = 0;
    });
}

void Mesh::instancing_cleanup() {
    instancing_active = false;
    if (!mesh_data)
        return;
    for (const InstanceArray* const kind : all_arrays)
        mesh_data->free_vertex_attrib_array(mesh_data->*kind->array);
}

unsigned long Mesh::get_num_instances() const {
    return mesh_data ? mesh_data->num_instances : 0;
}

/// The operations of one array: `one` names it in those on a single instance, `pointer` gives all.
#define ORVEX_INSTANCE_ARRAY_OPERATIONS(one, pointer)                                              \
    void Mesh::set_instance_##one(unsigned long i, const vec4& value) {                            \
        set_instance(mesh_data, one##s, i, value);                                                 \
    }                                                                                              \
    vec4 Mesh::get_instance_##one(unsigned long i) const {                                         \
        return get_instance(mesh_data, one##s, i);                                                 \
    }                                                                                              \
    void Mesh::instance_##one##_need_update() {                                                    \
        force_upload(mesh_data, one##s);                                                           \
    }                                                                                              \
    vec4* Mesh::pointer() {                                                                        \
        return array_pointer(mesh_data, one##s);                                                   \
    }                                                                                              \
    const vec4* Mesh::pointer() const {                                                            \
        return array_pointer(mesh_data, one##s);                                                   \
    }

ORVEX_INSTANCE_ARRAY_OPERATIONS(position, get_instances_positions_vec4_ptr)
ORVEX_INSTANCE_ARRAY_OPERATIONS(rotation, get_instances_rotations_vec4_ptr)
ORVEX_INSTANCE_ARRAY_OPERATIONS(scale, get_instances_scales_vec4_ptr)
ORVEX_INSTANCE_ARRAY_OPERATIONS(color, get_instances_colors)
ORVEX_INSTANCE_ARRAY_OPERATIONS(misc, get_instances_miscs)

#undef ORVEX_INSTANCE_ARRAY_OPERATIONS

} // namespace orvex
