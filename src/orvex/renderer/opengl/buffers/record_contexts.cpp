#include "orvex/renderer/opengl/buffers/private/record_contexts.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "orvex/base/private/memory_out.h"
#include "orvex/renderer/records/mesh_data.h"
#include "orvex/renderer/records/polyline_data.h"
#include "orvex/renderer/records/vertex_pool_data.h"

// The step is written once, over what differs between the records: which buffers they have, how
// those are divided, and which flags say that a part changed.

namespace orvex {

namespace {

// What the records have

struct Buffer {
    unsigned int& id;
    unsigned long& bytes;
};

template<class Record>
std::array<Buffer, 1> buffers_of(Record& record) {
    return {{{record.vertex_buffer_id, record.gpu_state.vertex_buffer_bytes}}};
}

std::array<Buffer, 4> buffers_of(MeshData& mesh) {
    MeshDataGpuState& state = mesh.gpu_state;
    return {{{mesh.vertex_buffer_id, state.vertex_buffer_bytes},
             {mesh.index_buffer_id, state.index_buffer_bytes},
             {mesh.quad_edge_buffer_id, state.quad_edge_buffer_bytes},
             {mesh.instance_buffer_id, state.instance_buffer_bytes}}};
}

unsigned long layout_of(const MeshData& mesh) {
    return mesh.gpu_state.instance_layout;
}

unsigned long layout_of(const PolylineData&) {
    return 0;
}

unsigned long layout_of(const VertexPoolData& pool) {
    return pool.gpu_state.separate ? 1 : 0;
}

void set_layout(MeshData& mesh, unsigned long layout) {
    mesh.gpu_state.instance_layout = layout;
}

void set_layout(PolylineData&, unsigned long) {}

void set_layout(VertexPoolData& pool, unsigned long layout) {
    pool.gpu_state.separate = layout != 0;
}

template<class Record>
GpuVertexArray array_of(const Record& record) {
    GpuVertexArray array;
    array.context = record.gpu_state.context;
    array.group = record.gpu_state.group;
    array.id = record.vertex_array_id;
    array.vertex_buffer = record.gpu_state.vertex_array_vertex_buffer;
    array.stale = record.gpu_state.vertex_array_stale;
    if constexpr (requires { record.gpu_state.vertex_array_element_buffer; }) {
        array.element_buffer = record.gpu_state.vertex_array_element_buffer;
        array.instances = record.gpu_state.vertex_array_instances;
    }
    return array;
}

template<class Record>
void set_array(Record& record, const GpuVertexArray& array) {
    record.vertex_array_id = array.id;
    record.gpu_state.vertex_array_vertex_buffer = array.vertex_buffer;
    record.gpu_state.vertex_array_stale = array.stale;
    if constexpr (requires { record.gpu_state.vertex_array_element_buffer; }) {
        record.gpu_state.vertex_array_element_buffer = array.element_buffer;
        record.gpu_state.vertex_array_instances = array.instances;
    }
}

// Flags, as the bits of a number

template<class Record, class Visit>
void visit_vertex_flags(Record& record, Visit visit) {
    visit(record.positions_need_update);
    visit(record.normals_need_update);
    visit(record.tangents_need_update);
    visit(record.colors_need_update);
    visit(record.uv0_need_update);
    visit(record.uv1_need_update);
}

template<class Visit>
void visit_flags(PolylineData& polyline, Visit visit) {
    visit_vertex_flags(polyline, visit);
}

template<class Visit>
void visit_flags(VertexPoolData& pool, Visit visit) {
    visit(pool.vertices_need_update);
    visit(pool.positions_need_update);
    visit(pool.colors_need_update);
}

template<class Visit>
void visit_flags(MeshData& mesh, Visit visit) {
    visit_vertex_flags(mesh, visit);
    visit(mesh.faces_need_update);
    visit(mesh.quad_edges_need_update);
    visit(mesh.instance_positions_need_update);
    visit(mesh.instance_rotations_need_update);
    visit(mesh.instance_scales_need_update);
    visit(mesh.instance_colors_need_update);
    visit(mesh.instance_miscs_need_update);
    for (unsigned long i = 0; i < mesh.num_user_attribs; ++i)
        visit(mesh.user_attribs[i].need_update);
}

constexpr unsigned int last_bit = 63; ///< stands for all flags from there on

template<class Record>
unsigned long long raised_flags(Record& record) {
    unsigned long long raised = 0;
    unsigned int bit = 0;
    visit_flags(record, [&](const bool& flag) {
        raised |= static_cast<unsigned long long>(flag) << bit;
        bit = std::min(bit + 1, last_bit);
    });
    return raised;
}

template<class Record>
void raise_flags(Record& record, unsigned long long raised) {
    unsigned int bit = 0;
    visit_flags(record, [&](bool& flag) {
        flag |= ((raised >> bit) & 1) != 0;
        bit = std::min(bit + 1, last_bit);
    });
}

/// A new buffer takes its contents as it is made, but for that of the instances.
template<class Record>
void raise_for_new_buffers(Record&) {}

void raise_for_new_buffers(MeshData& mesh) {
    if (mesh.num_instances == 0)
        return;
    mesh.instance_positions_need_update = true;
    mesh.instance_rotations_need_update = true;
    mesh.instance_scales_need_update = true;
    mesh.instance_colors_need_update = true;
    mesh.instance_miscs_need_update = true;
}

/// What is marked now is to be uploaded in the other contexts too.
template<class Record>
void note_changes(Record& record) {
    if (record.gpu_elsewhere.buffers.empty())
        return;
    const unsigned long long raised = raised_flags(record);
    for (GpuBuffers& buffers : record.gpu_elsewhere.buffers)
        buffers.outdated |= raised;
}

// The step

template<class Record>
void put_array_aside(Record& record) {
    if (record.vertex_array_id != 0 && contexts::find(record.gpu_state.context))
        record.gpu_elsewhere.arrays.push_back(array_of(record));
    set_array(record, {});
}

template<class Record>
void put_buffers_aside(Record& record) {
    GpuBuffers kept;
    kept.group = record.gpu_state.group;
    kept.layout = layout_of(record);
    int i = 0;
    bool any = false;
    for (const Buffer& buffer : buffers_of(record)) {
        any = any || buffer.id != 0;
        kept.ids[i] = std::exchange(buffer.id, 0U);
        kept.bytes[i++] = std::exchange(buffer.bytes, 0UL);
    }
    set_layout(record, 0);
    if (any && contexts::find_group(kept.group))
        record.gpu_elsewhere.buffers.push_back(kept);
}

/// Objects of contexts that ended are gone with them.
void drop_ended(GpuObjectsElsewhere& elsewhere) {
    std::erase_if(elsewhere.arrays,
                  [](const GpuVertexArray& array) { return !contexts::find(array.context); });
    std::erase_if(elsewhere.buffers,
                  [](const GpuBuffers& buffers) { return !contexts::find_group(buffers.group); });
}

template<class Record>
void take_array_up(Record& record, ContextNumber context) {
    std::vector<GpuVertexArray>& arrays = record.gpu_elsewhere.arrays;
    const auto kept = std::find_if(arrays.begin(), arrays.end(), [&](const GpuVertexArray& array) {
        return array.context == context;
    });
    if (kept == arrays.end())
        return;
    set_array(record, *kept);
    arrays.erase(kept);
}

template<class Record>
void take_buffers_up(Record& record, ContextNumber group) {
    std::vector<GpuBuffers>& all = record.gpu_elsewhere.buffers;
    const auto kept = std::find_if(
        all.begin(), all.end(), [&](const GpuBuffers& buffers) { return buffers.group == group; });
    if (kept == all.end()) {
        raise_for_new_buffers(record);
        return;
    }
    int i = 0;
    for (const Buffer& buffer : buffers_of(record)) {
        buffer.id = kept->ids[i];
        buffer.bytes = kept->bytes[i++];
    }
    set_layout(record, kept->layout);
    raise_flags(record, kept->outdated);
    all.erase(kept);
}

template<class Record>
void step(const ContextState& now, Record& record) {
    // Ids that a host wrote, and those of a first draw, are those of the current context.
    if (record.gpu_state.context != 0) {
        // What needs memory comes before the first change.
        record.gpu_elsewhere.arrays.reserve(record.gpu_elsewhere.arrays.size() + 1);
        record.gpu_elsewhere.buffers.reserve(record.gpu_elsewhere.buffers.size() + 1);
        put_array_aside(record);
        const bool other_group = record.gpu_state.group != now.group->number;
        if (other_group)
            put_buffers_aside(record);
        drop_ended(record.gpu_elsewhere);
        note_changes(record);
        if (other_group)
            take_buffers_up(record, now.group->number);
        take_array_up(record, now.number);
    }
    record.gpu_state.context = now.number;
    record.gpu_state.group = now.group->number;
}

template<class Record>
void enter(GlState& state, Record& record) {
    state.follow_context();
    if (record.gpu_state.context == state.context().number) {
        note_changes(record);
        return;
    }
    state.look_at_context();
    if (record.gpu_state.context != state.context().number)
        step(state.context(), record);
}

template<class Record>
void outdate(Record& record) {
    record.gpu_state.vertex_array_stale = record.vertex_array_id != 0;
    for (GpuVertexArray& array : record.gpu_elsewhere.arrays)
        array.stale = array.stale || array.group == record.gpu_state.group;
}

template<class Record>
void bury(Record& record) {
    for (const GpuVertexArray& array : record.gpu_elsewhere.arrays)
        contexts::bury_array(array.context, array.id);
    for (const GpuBuffers& buffers : record.gpu_elsewhere.buffers) {
        // What there is no memory for stays until its context ends.
        or_false([&] {
            BuriedObjects objects;
            std::copy_if(std::begin(buffers.ids), std::end(buffers.ids),
                         std::back_inserter(objects.buffers),
                         [](unsigned int id) { return id != 0; });
            contexts::bury(buffers.group, objects);
            return true;
        });
    }
    record.gpu_elsewhere = {};
}

} // namespace

// NOLINTBEGIN(bugprone-macro-parentheses): the argument is a type.
#define ORVEX_RECORD_STEPS(Record)                                                                 \
    void enter_context(GlState& state, Record& record) {                                           \
        enter(state, record);                                                                      \
    }                                                                                              \
    void outdate_arrays(Record& record) {                                                          \
        outdate(record);                                                                           \
    }                                                                                              \
    void bury_elsewhere(Record& record) {                                                          \
        bury(record);                                                                              \
    }

ORVEX_RECORD_STEPS(MeshData)
ORVEX_RECORD_STEPS(PolylineData)
ORVEX_RECORD_STEPS(VertexPoolData)
// NOLINTEND(bugprone-macro-parentheses)

#undef ORVEX_RECORD_STEPS

} // namespace orvex
