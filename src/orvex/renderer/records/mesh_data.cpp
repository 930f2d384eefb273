#include "orvex/renderer/records/mesh_data.h"

#include <algorithm>
#include <cstring>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/math/aligned_new.h"
#include "orvex/platform/private/constant_array.h"
#include "orvex/platform/private/large_pages.h"
#include "orvex/renderer/records/private/mesh_upload.h"
#include "orvex/renderer/records/private/plain_store.h"
#include "orvex/renderer/records/private/vertex_access.h"

// How a store comes by its memory and gives it back. What can be asked of a store stands in
// mesh_data_access.cpp.
//
// A store that memory ran out on keeps the count that was asked for and whatever arrays it got, so
// each reader tests the array that it needs, never the count alone.

namespace orvex {

using namespace vertex_access;

std::atomic<const void*> plain_store_mark{nullptr};

MeshData::MeshData(VERTEX_FORMAT format)
    : vertex_format(format) {
    // In a constructor an object is of that constructor's class yet.
    plain_store_mark.store(mark_of_class(*this), std::memory_order_relaxed);
    instance_positions.attrib_location = 6;
    instance_rotations.attrib_location = 7;
    instance_scales.attrib_location = 8;
    instance_colors.attrib_location = 9;
    instance_miscs.attrib_location = 10;
    MeshData::update_attrib_locations();
}

// The parts of a derived format are gone by now: only what this class made itself is freed.
MeshData::~MeshData() {
    MeshData::free_vertex_arrays();
    free_vertex_particles();
    free_user_vertex_attribs();
    MeshData::free_quad_edge_data();
    delete[] faces_u16;
    delete[] faces_u32;
    delete[] face_normals;
    delete[] face_materials;
    delete[] subsets;
    free_vertex_attrib_array(instance_positions);
    free_vertex_attrib_array(instance_rotations);
    free_vertex_attrib_array(instance_scales);
    free_vertex_attrib_array(instance_colors);
    free_vertex_attrib_array(instance_miscs);
}

bool MeshData::alloc_vertex_data(unsigned long count) {
    return alloc_vertex_data_v2(count, 0);
}

namespace {

void allocate_separate_arrays(MeshData& store, unsigned long count) {
    VertexAttribArray* plain[] = {&store.position, &store.normal, &store.tangent,
                                  &store.color,    &store.uv0,    &store.uv1};
    VertexAttribArray* aligned[] = {&store.position, &store.color, &store.normal,
                                    &store.uv0,      &store.uv1,   &store.tangent};
    for (VertexAttribArray* array : store.alignment < 1 ? plain : aligned)
        if (array == &store.position || array == &store.normal)
            allocate_array(*array, count, store.alignment, AlignedNew_vec4);
        else
            allocate_optional_array(*array, count, store.alignment);
}

void log_failure(unsigned long count, const char* error) {
    if (error)
        LogMgr::get()->tracef_error(
            "Mesh data allocation failed - %zu vertices required - error: %s", count, error);
    else
        LogMgr::get()->tracef_error(
            "Mesh data allocation failed - %zu vertices required - unknown error.", count);
}

} // namespace

bool MeshData::alloc_vertex_data_v2(unsigned long count, unsigned long num_attribs) {
    // What was there goes first, so that no short array is left behind a larger count.
    free_vertex_arrays();
    free_vertex_particles();
    num_vertices = count;
    draw_start_vertex = 0;
    draw_end_vertex = count;

    const auto allocate = [&] {
        if (separate_vertex_arrays)
            allocate_separate_arrays(*this, count);
        else
            allocate_records(*this, count, AlignedNew_Vertex);
        if (num_attribs > 0)
            make_user_vertex_attribs(num_attribs);
        vertex_particles = new_constant_array<vec4>(count, vec4());
    };
    return allocate_or_report(allocate, [&](const char* error) { log_failure(count, error); });
}

void MeshData::free_vertex_data() {
    if (num_vertices == 0)
        return;
    free_vertex_arrays();
    free_user_vertex_attribs();
    free_vertex_particles();
    num_vertices = 0;
}

namespace {

struct VertexBlock {
    void* data;
    unsigned int element_size;
};

/// The blocks of a store's vertices in upload order, the interleaved one last.
struct VertexBlocks {
    VertexBlock blocks[7];

    explicit VertexBlocks(MeshData& store)
        : blocks{{store.get_position_ptr(), store.get_position_elt_size()},
                 {store.get_color_ptr(), store.get_color_elt_size()},
                 {store.get_normal_ptr(), store.get_normal_elt_size()},
                 {store.get_uv0_ptr(), store.get_uv0_elt_size()},
                 {store.get_uv1_ptr(), store.get_uv1_elt_size()},
                 {store.get_tangent_ptr(), store.get_tangent_elt_size()},
                 {store.get_vertex_ptr(), store.get_vertex_elt_size()}} {}
};

void copy_block(const VertexBlock& to, const VertexBlock& from, unsigned long count) {
    if (to.data && from.data && to.element_size == from.element_size)
        std::memcpy(to.data, from.data, count * from.element_size);
}

} // namespace

bool MeshData::copy_vertex_data(MeshData* source) {
    if (!source || source->num_vertices == 0)
        return false;
    if (source == this)
        return true;

    // Both are expected to have one layout: the flag is taken when the arrays are made already.
    const unsigned long count = source->num_vertices;
    free_vertex_data();
    if (!alloc_vertex_data(count))
        return false;
    separate_vertex_arrays = source->separate_vertex_arrays;

    const VertexBlocks to(*this);
    const VertexBlocks from(*source);
    for (int i = 0; i < 7; ++i)
        copy_block(to.blocks[i], from.blocks[i], count);
    mesh_upload::mark_vertices(*this);
    return true;
}

bool MeshData::alloc_quad_edge_data(unsigned long count) {
    delete[] quad_edges;
    quad_edges = nullptr;
    num_quad_edges = 0;
    return or_false([&] {
        quad_edges = new_large_array<unsigned int>(count);
        std::fill_n(quad_edges, count, 0u);
        num_quad_edges = count;
        return true;
    });
}

void MeshData::free_quad_edge_data() {
    delete[] quad_edges;
    quad_edges = nullptr;
    render_wireframe_quad = false;
    num_quad_edges = 0;
    quad_edges_need_update = false;
}

bool MeshData::alloc_user_vertex_attribs(unsigned long count) {
    if (count == 0)
        return false;
    const auto make = [&] {
        make_user_vertex_attribs(count);
        return true;
    };
    return or_undo(make, [&] { free_user_vertex_attribs(); });
}

bool MeshData::free_user_vertex_attribs() {
    for (unsigned long i = 0; i < num_user_attribs; ++i)
        free_vertex_attrib_array(user_attribs[i]);
    delete[] user_attribs;
    user_attribs = nullptr;
    num_user_attribs = 0;
    user_attribs_allocated = false;
    return true;
}

void MeshData::free_vertex_attrib_array(VertexAttribArray& array) {
    free_array(array, AlignedDelete_vec4);
}

void MeshData::free_vertex_attrib_array(VertexAttribArray_3f& array) {
    free_array(array, AlignedDelete_vec3);
}

void MeshData::free_vertex_attrib_array(VertexAttribArray_2f& array) {
    free_array(array, AlignedDelete_vec2);
}

void MeshData::prepare_to_fill(VertexAttribArray& array) {
    if (array.data && !array.raw_ptr)
        take_for_filling(array.data, array.num_elements * sizeof(vec4));
}

void MeshData::update_attrib_locations() {
    position.attrib_location = position_attrib_location;
    color.attrib_location = color_attrib_location;
    normal.attrib_location = normal_attrib_location;
    uv0.attrib_location = uv0_attrib_location;
    uv1.attrib_location = uv1_attrib_location;
    tangent.attrib_location = tangent_attrib_location;
}

void MeshData::free_vertex_arrays() {
    free_records(*this, AlignedDelete_Vertex);
    for (VertexAttribArray* array : {&position, &color, &normal, &uv0, &uv1, &tangent})
        free_vertex_attrib_array(*array);
}

void MeshData::free_vertex_particles() {
    delete_spread(vertex_particles, num_vertices);
    vertex_particles = nullptr;
}

void MeshData::make_user_vertex_attribs(unsigned long count) {
    free_user_vertex_attribs();
    user_attribs = new VertexAttribArray[count];
    num_user_attribs = count;
    for (unsigned long i = 0; i < count; ++i)
        allocate_array(user_attribs[i], num_vertices, alignment, AlignedNew_vec4);
    user_attribs_allocated = true;
}

} // namespace orvex
