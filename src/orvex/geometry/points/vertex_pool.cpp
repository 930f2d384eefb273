/// @file
/// A pool of points in either layout: records, or one array per attribute.
///
/// A write marks what it changed for the next upload: the records as a whole, or the one array. A
/// pool without points reads as empty through every access.

#include "orvex/geometry/points/vertex_pool.h"

#include "orvex/base/private/misuse.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/records/private/vertex_access.h"
#include "orvex/renderer/records/vertex_pool_data.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

VertexPool::VertexPool()
    : data(std::make_unique<VertexPoolData>()) {
    set_type(NODE_TYPE_VERTEX_POOL);
    NodeData::of(*this).kind = this;
}

VertexPool::~VertexPool() = default;

VertexPool* VertexPool::from_node(Node* node) {
    return node_as<VertexPool>(node);
}

bool VertexPool::_cleanup(Renderer* renderer) {
    if (renderer)
        renderer->vertex_pool_kill(data.get());
    data->cleanup();
    return Object::_cleanup(renderer);
}

void VertexPool::_render(Renderer* renderer) {
    if (renderer) {
        GpuProgramData* const program = renderer->gpu_program_get_active_program();
        render_apply_automatic_uniforms(renderer, program,
                                        Object::get_use_fixed_mvp_matrices_state());
        render_geometry(renderer);
    }
    Object::_render(renderer);
}

int VertexPool::get_renderer_id() {
    return data->renderer_id;
}

void VertexPool::render_geometry(Renderer* renderer) {
    render_geometry_prepare(renderer);
    render_geometry_draw(renderer);
    render_geometry_finish(renderer);
}

void VertexPool::render_geometry_prepare(Renderer* renderer) {
    if (!renderer)
        return;
    GpuProgramData* const program = renderer->gpu_program_get_active_program();
    data->use_generic_vertex_attribs = program && program->get_use_generic_vertex_attribs_state();
    if (program)
        renderer->gpu_program_bind_uniforms(program);
    const DebugName name(*this);
    renderer->vertex_pool_render_prepare(data.get());
}

void VertexPool::render_geometry_draw(Renderer* renderer) {
    if (renderer)
        renderer->vertex_pool_render_draw(data.get());
}

void VertexPool::render_geometry_finish(Renderer* renderer) {
    if (renderer)
        renderer->vertex_pool_render_finish(data.get());
}

unsigned long VertexPool::get_num_vertices(Node*) {
    return data->num_vertices;
}

Vertex* VertexPool::get_vertex(unsigned long i) {
    if (data->separate_vertex_arrays || !data->vertices || i >= data->num_vertices)
        return nullptr;
    return &data->vertices[i];
}

Vertex VertexPool::get_vertex_v2(unsigned long i) {
    if (const Vertex* const vertex = get_vertex(i))
        return *vertex;
    Vertex vertex;
    if (!data->separate_vertex_arrays || i >= data->num_vertices)
        return vertex;
    vertex.position = vertex_access::element(data->position, i);
    vertex.color = vertex_access::element(data->color, i);
    vertex.normal = vertex_access::element(data->normal, i);
    return vertex;
}

bool VertexPool::init_pool(unsigned long count, bool separate) {
    if (count == 0)
        return misuse("VertexPool::init_pool", "no points");
    return separate ? data->init_v2(count, true) : data->init(count);
}

VertexPoolData* VertexPool::get_vertex_pool_data() const {
    return data.get();
}

Vertex* VertexPool::get_pool_ptr() const {
    return data->vertices;
}

unsigned long VertexPool::get_pool_size() const {
    return data->num_vertices;
}

void VertexPool::set_render_start_offset(int first) {
    data->render_start_offset = first;
}

void VertexPool::set_render_num_vertices(int count) {
    data->render_num_vertices = count;
}

void VertexPool::set_vertex_position(unsigned long i, const vec4& position) {
    if (Vertex* const vertex = get_vertex(i)) {
        vertex->position = position;
        data->vertices_need_update = true;
        return;
    }
    if (!data->separate_vertex_arrays || !data->position.data || i >= data->num_vertices)
        return;
    data->position.data[i] = position.get_vec3();
    data->positions_need_update = true;
}

void VertexPool::set_vertex_position(unsigned long i, const vec3& position) {
    set_vertex_position(i, vec4(position));
}

void VertexPool::set_vertex_position(unsigned long i, float x, float y, float z, float w) {
    set_vertex_position(i, vec4(x, y, z, w));
}

vec4 VertexPool::get_vertex_position(unsigned long i) const {
    if (i >= data->num_vertices)
        return vec4();
    if (data->separate_vertex_arrays)
        return vertex_access::element(data->position, i);
    return data->vertices ? data->vertices[i].position : vec4();
}

void VertexPool::set_vertex_color(unsigned long i, const vec4& color) {
    vec4* const stored = vertex_access::stored(*data, data->color, &Vertex::color, i);
    if (!stored)
        return;
    *stored = color;
    (data->separate_vertex_arrays ? data->colors_need_update : data->vertices_need_update) = true;
}

void VertexPool::set_vertex_color(unsigned long i, float r, float g, float b, float a) {
    set_vertex_color(i, vec4(r, g, b, a));
}

vec4 VertexPool::get_vertex_color(unsigned long i) const {
    return vertex_access::read_vec4(vertex_access::stored(*data, data->color, &Vertex::color, i));
}

} // namespace orvex
