#include "orvex/renderer/opengl/buffers/private/mesh_instances.h"

#include <algorithm>
#include <array>
#include <utility>

#include "orvex/renderer/opengl/buffers/private/buffer_store.h"
#include "orvex/renderer/opengl/buffers/private/vertex_array.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex::mesh_buffers {

namespace {

struct InstanceArray {
    VertexAttribArray& array;
    bool& need_update;
};

std::array<InstanceArray, 5> instance_arrays(MeshData& mesh) {
    return {{{mesh.instance_positions, mesh.instance_positions_need_update},
             {mesh.instance_rotations, mesh.instance_rotations_need_update},
             {mesh.instance_scales, mesh.instance_scales_need_update},
             {mesh.instance_colors, mesh.instance_colors_need_update},
             {mesh.instance_miscs, mesh.instance_miscs_need_update}}};
}

unsigned long block_bytes(const MeshData& mesh) {
    return mesh.num_instances * sizeof(vec4);
}

BufferStore instance_store(const GlState& state, MeshData& mesh) {
    return {state.gl, GL_ARRAY_BUFFER, "instances", mesh.instance_buffer_id,
            mesh.gpu_state.instance_buffer_bytes};
}

/// Says where each block lies: the number of instances, and a bit for each array that is there.
/// 0 without instances.
unsigned long instance_layout(MeshData& mesh) {
    unsigned long layout = mesh.num_instances;
    unsigned long any = 0;
    for (const InstanceArray& instances : instance_arrays(mesh)) {
        const unsigned long bit = instances.array.data ? 1 : 0;
        layout = layout * 2 + bit;
        any |= bit;
    }
    return mesh.num_instances != 0 && any != 0 ? layout : 0;
}

void raise_instance_flags(MeshData& mesh) {
    for (const InstanceArray& instances : instance_arrays(mesh))
        instances.need_update = true;
}

/// Makes the instance buffer, or makes it anew when the record needs another size. Blocks that lie
/// elsewhere than before are uploaded anew.
void size_instance_buffer(const GlState& state, MeshData& mesh) {
    unsigned long bytes = 0;
    for (const InstanceArray& instances : instance_arrays(mesh))
        bytes += instances.array.data ? block_bytes(mesh) : 0;
    if (bytes == 0)
        return;
    const unsigned long former =
        std::exchange(mesh.gpu_state.instance_layout, instance_layout(mesh));
    BufferStore store = instance_store(state, mesh);
    const bool existed = store.exists();
    if (!store.fits(bytes)) {
        store.allocate(bytes, nullptr, GL_DYNAMIC_DRAW);
        store.unbind();
    }
    if (existed && former != mesh.gpu_state.instance_layout)
        raise_instance_flags(mesh);
}

} // namespace

bool upload_instances(const GlState& state, MeshData& mesh) {
    if (mesh.num_instances == 0)
        return true;
    size_instance_buffer(state, mesh);
    const BufferStore store = instance_store(state, mesh);
    const auto arrays = instance_arrays(mesh);
    const bool dirty = std::any_of(arrays.begin(), arrays.end(),
                                   [](const InstanceArray& a) { return a.need_update; });
    if (!store.exists())
        return instance_layout(mesh) == 0;
    if (!dirty)
        return true;

    store.bind();
    unsigned long offset = 0;
    for (const InstanceArray& instances : arrays) {
        const bool upload_it = instances.need_update;
        instances.need_update = false;
        if (!instances.array.data)
            continue;
        if (upload_it)
            store.upload_bound(offset, block_bytes(mesh), instances.array.data);
        offset += block_bytes(mesh);
    }
    store.unbind();
    return true;
}

void check_instances(MeshData& mesh) {
    MeshDataGpuState& gpu = mesh.gpu_state;
    const unsigned long layout = mesh.num_instances != 0 ? gpu.instance_layout : 0;
    if (gpu.vertex_array_vertex_buffer != 0 && gpu.vertex_array_instances != layout)
        gpu.vertex_array_stale = true;
    gpu.vertex_array_instances = layout;
}

void point_instances(const GlState& state, MeshData& mesh) {
    const BufferStore store = instance_store(state, mesh);
    if (mesh.num_instances == 0 || !store.exists() || !state.gl.glVertexAttribDivisorARB)
        return;
    store.bind();
    unsigned long offset = 0;
    for (const InstanceArray& instances : instance_arrays(mesh)) {
        if (!instances.array.data)
            continue;
        const int location = instances.array.attrib_location;
        if (location >= 0) {
            point_attribute(state.gl, location, 4, 0, offset);
            state.gl.glVertexAttribDivisorARB(static_cast<GLuint>(location), 1);
        }
        // A block without a location takes its place all the same.
        offset += block_bytes(mesh);
    }
}

} // namespace orvex::mesh_buffers
