/// @file
/// A polyline and its store: taking, sharing and freeing it, vertices, and what part of them is
/// drawn.
///
/// The store is counted like that of a mesh. Offsets are kept as a host set them, but never
/// behind the last vertex or line.

#include "orvex/geometry/lines/polyline.h"

#include <algorithm>

#include "orvex/base/private/misuse.h"
#include "orvex/geometry/lines/private/polyline_user_geometry_data.h"
#include "orvex/geometry/mesh/private/render_with_material.h"
#include "orvex/geometry/mesh/private/shared_store.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/polyline_data.h"
#include "orvex/renderer/records/private/vertex_access.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

Polyline::Polyline()
    : polyline_data(nullptr) {
    set_type(NODE_TYPE_POLYLINE);
    NodeData::of(*this).kind = this;
    init_polyline_data(nullptr);
}

// `_cleanup` has let go of the store already, but where the constructor of a class below met the
// end of memory.
Polyline::~Polyline() {
    Polyline::_set_polyline_data(nullptr, nullptr);
}

Polyline* Polyline::from_node(Node* node) {
    return node_as<Polyline>(node);
}

bool Polyline::_cleanup(Renderer* renderer) {
    cleanup_polyline_data(renderer);
    return Object::_cleanup(renderer);
}

void Polyline::_render(Renderer* renderer) {
    if (renderer)
        render_with_material(*this, *renderer, get_material_by_index(0));
}

int Polyline::get_renderer_id() {
    return polyline_data ? polyline_data->renderer_id : 0;
}

void Polyline::render_geometry(Renderer* renderer) {
    render_geometry_prepare(renderer);
    render_geometry_draw(renderer);
    render_geometry_finish(renderer);
}

void Polyline::render_geometry_prepare(Renderer* renderer) {
    if (!renderer || !polyline_data)
        return;
    GpuProgramData* const program = renderer->gpu_program_get_active_program();
    polyline_data->use_generic_vertex_attribs =
        program && program->get_use_generic_vertex_attribs_state();
    if (program)
        renderer->gpu_program_bind_uniforms(program);
    const DebugName name(*this);
    renderer->polyline_vb_prepare(polyline_data);
}

void Polyline::render_geometry_draw(Renderer* renderer) {
    if (renderer && polyline_data)
        renderer->polyline_vb_draw(polyline_data, polyline_data->vertex_start_offset,
                                   polyline_data->vertex_end_offset);
}

void Polyline::render_geometry_finish(Renderer* renderer) {
    if (renderer && polyline_data)
        renderer->polyline_vb_finish(polyline_data);
}

void Polyline::set_tessellation_state(bool state, Node* node) {
    if (polyline_data)
        polyline_data->tessellation_state = state;
    Object::set_tessellation_state(state, node);
}

unsigned long Polyline::get_num_vertices(Node* node) {
    const unsigned long own = polyline_data ? polyline_data->num_vertices : 0;
    return own + Object::get_num_vertices(node);
}

bool Polyline::init_polyline_data(Renderer* renderer) {
    return _set_polyline_data(renderer, new PolylineData);
}

PolylineData* Polyline::get_polyline_data() const {
    return polyline_data;
}

bool Polyline::share_polyline_data(Renderer* renderer, Polyline* other) {
    if (!other)
        return misuse("Polyline::share_polyline_data", "a null polyline");
    return _set_polyline_data(renderer, other->polyline_data);
}

bool Polyline::cleanup_polyline_data(Renderer* renderer) {
    return _set_polyline_data(renderer, nullptr);
}

bool Polyline::_set_polyline_data(Renderer* renderer, PolylineData* data) {
    take_store(polyline_data, data, [this, renderer] {
        if (renderer)
            renderer->polyline_vb_kill(polyline_data);
        free_polyline_data();
        delete polyline_data;
    });
    return true;
}

void Polyline::free_polyline_data() {
    if (!polyline_data || polyline_data->num_vertices == 0)
        return;
    polyline_data->free_vertices();
    polyline_data->num_vertices = 0;
}

void Polyline::set_vertex_alloc_params(int alignment) {
    if (polyline_data)
        polyline_data->alignment = alignment;
}

bool Polyline::alloc_vertex_data(unsigned long count) {
    if (!polyline_data)
        return misuse("Polyline::alloc_vertex_data", "a polyline without a store");
    polyline_data->free_vertices();
    polyline_data->num_vertices = 0; // where memory runs out there are no vertices to draw
    vertex_access::allocate_records(*polyline_data, count, AlignedNew_Vertex);
    polyline_data->num_vertices = count;
    polyline_data->num_lines = count / 2;
    return true;
}

bool Polyline::initialize(unsigned long count, LINE_RENDER_MODE mode) {
    if (!alloc_vertex_data(count))
        return false;
    polyline_data->render_mode = mode;
    return true;
}

namespace {

/// Number of vertices that can be written.
unsigned long writable_vertices(const PolylineData* store) {
    return store && store->vertices ? store->num_vertices : 0;
}

} // namespace

bool Polyline::set_vertex_position(unsigned long i, const vec4& position) {
    if (i >= writable_vertices(polyline_data))
        return false;
    polyline_data->vertices[i].position = position;
    polyline_data->positions_need_update = true;
    return true;
}

bool Polyline::set_vertex_position(unsigned long i, const vec3& position) {
    return set_vertex_position(i, vec4(position));
}

bool Polyline::set_vertex_position(unsigned long i, float x, float y, float z) {
    return set_vertex_position(i, vec4(x, y, z, 1.0f));
}

bool Polyline::set_vertex_position(unsigned long i, float x, float y, float z, float w) {
    return set_vertex_position(i, vec4(x, y, z, w));
}

bool Polyline::set_vertex_color(unsigned long i, const vec4& color) {
    if (i >= writable_vertices(polyline_data))
        return false;
    polyline_data->vertices[i].color = color;
    polyline_data->colors_need_update = true;
    return true;
}

bool Polyline::set_vertices_color(const vec4& color) {
    const unsigned long count = writable_vertices(polyline_data);
    for (unsigned long i = 0; i < count; ++i)
        polyline_data->vertices[i].color = color;
    if (count > 0)
        polyline_data->colors_need_update = true;
    return count > 0;
}

bool Polyline::set_vertices_color(float r, float g, float b, float a) {
    return set_vertices_color(vec4(r, g, b, a));
}

namespace {

/// The offset, or the end if it lies behind that. Counts are compared with their sign: -1 stays.
int at_most(int offset, unsigned long end) {
    return static_cast<int>(std::min(static_cast<long>(offset), static_cast<long>(end)));
}

/// Twice the line number, wrapping where an int is too short for it.
int first_vertex_of(int line) {
    return static_cast<int>(static_cast<unsigned int>(line) * 2);
}

} // namespace

void Polyline::set_vertex_start_offset(int offset) {
    if (polyline_data)
        polyline_data->vertex_start_offset = at_most(offset, polyline_data->num_vertices);
}

void Polyline::set_vertex_end_offset(int offset) {
    if (polyline_data)
        polyline_data->vertex_end_offset = at_most(offset, polyline_data->num_vertices);
}

int Polyline::get_vertex_start_offset() const {
    return polyline_data ? polyline_data->vertex_start_offset : 0;
}

int Polyline::get_vertex_end_offset() const {
    return polyline_data ? polyline_data->vertex_end_offset : -1;
}

void Polyline::set_line_start_offset(int offset) {
    if (!polyline_data)
        return;
    polyline_data->line_start_offset = at_most(offset, polyline_data->num_lines);
    polyline_data->vertex_start_offset = first_vertex_of(polyline_data->line_start_offset);
}

void Polyline::set_line_end_offset(int offset) {
    if (!polyline_data)
        return;
    polyline_data->line_end_offset = at_most(offset, polyline_data->num_lines);
    polyline_data->vertex_end_offset = first_vertex_of(polyline_data->line_end_offset);
}

int Polyline::get_line_start_offset() const {
    return polyline_data ? polyline_data->line_start_offset : 0;
}

int Polyline::get_line_end_offset() const {
    return polyline_data ? polyline_data->line_end_offset : -1;
}

void Polyline::set_line_position(unsigned long line, const vec4& a, const vec4& b) {
    if (line >= writable_vertices(polyline_data) / 2)
        return;
    set_vertex_position(2 * line, a);
    set_vertex_position(2 * line + 1, b);
}

void Polyline::set_line_color(unsigned long line, const vec4& a, const vec4& b) {
    if (line >= writable_vertices(polyline_data) / 2)
        return;
    set_vertex_color(2 * line, a);
    set_vertex_color(2 * line + 1, b);
}

void* Polyline::map_vertex_buffer(Renderer* renderer) {
    if (!renderer || !polyline_data) {
        misuse("Polyline::map_vertex_buffer", "a null renderer, or a polyline without a store");
        return nullptr;
    }
    polyline_data->mapped_vertex_buffer =
        renderer->vertex_buffer_map(polyline_data->vertex_buffer_id);
    return polyline_data->mapped_vertex_buffer;
}

bool Polyline::unmap_vertex_buffer(Renderer* renderer) {
    if (!renderer || !polyline_data)
        return misuse("Polyline::unmap_vertex_buffer",
                      "a null renderer, or a polyline without a store");
    renderer->vertex_buffer_unmap(polyline_data->vertex_buffer_id);
    return true;
}

void* Polyline::get_mapped_vertex_buffer() const {
    return polyline_data ? polyline_data->mapped_vertex_buffer : nullptr;
}

} // namespace orvex
