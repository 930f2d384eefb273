#include "orvex/renderer/records/vertex_pool_data.h"

#include <algorithm>

#include "orvex/math/aligned_new.h"
#include "orvex/platform/private/large_pages.h"
#include "orvex/renderer/records/private/vertex_access.h"

namespace orvex {

namespace {

const vec4 white(1.0f, 1.0f, 1.0f, 1.0f);

void make_records(VertexPoolData& store, unsigned long count) {
    store.vertices = new_large_array<Vertex>(count);
    for (unsigned long i = 0; i < count; ++i)
        store.vertices[i].color = white;
}

template<class Array, class Element>
void make_array(Array& array, Element* elements, unsigned long count) {
    array.data = elements;
    array.num_elements = count;
}

void make_separate_arrays(VertexPoolData& store, unsigned long count) {
    make_array(store.position, new_large_array<vec3>(count), count);
    make_array(store.normal, new_large_array<vec3>(count), count);
    make_array(store.color, new_large_array<vec4>(count), count);
    std::fill_n(store.color.data, count, white);
}

} // namespace

VertexPoolData::VertexPoolData() {
    position.attrib_location = 0;
    color.attrib_location = 1;
    normal.attrib_location = 2;
}

VertexPoolData::~VertexPoolData() {
    cleanup();
}

bool VertexPoolData::init(unsigned long count) {
    if (count == 0)
        return false;
    cleanup();
    num_vertices = 0; // where memory runs out there are no points to draw
    make_records(*this, count);
    num_vertices = count;
    return true;
}

bool VertexPoolData::init_v2(unsigned long count, bool separate) {
    if (count == 0)
        return false;
    cleanup();
    num_vertices = 0;
    separate_vertex_arrays = separate;
    if (separate)
        make_separate_arrays(*this, count);
    else
        make_records(*this, count);
    num_vertices = count;
    return true;
}

bool VertexPoolData::cleanup() {
    delete[] vertices;
    vertices = nullptr;
    // A host may have put aligned arrays in their place.
    vertex_access::free_array(position, AlignedDelete_vec3);
    vertex_access::free_array(normal, AlignedDelete_vec3);
    vertex_access::free_array(color, AlignedDelete_vec4);
    return true;
}

bool VertexPoolData::has_points() const {
    if (num_vertices == 0)
        return false;
    if (separate_vertex_arrays)
        return position.data && color.data;
    return vertices;
}

} // namespace orvex
