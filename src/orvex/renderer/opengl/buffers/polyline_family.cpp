#include "orvex/renderer/opengl/buffers/private/polyline_family.h"

#include <array>
#include <optional>

#include "orvex/renderer/opengl/buffers/private/mesh_buffers.h"
#include "orvex/renderer/opengl/buffers/private/record_buffers.h"
#include "orvex/renderer/records/polyline_data.h"

// A prepare leaves the buffer (gl2) or the vertex array (gl3) bound. The finish goes by whether the
// record has a vertex array, not by the path that ran.

namespace orvex {

using mesh_buffers::any_vertex_flag;
using mesh_buffers::set_vertex_flags;

namespace {

bool has_vertices(const PolylineData& polyline) {
    return polyline.num_vertices > 0 && polyline.vertices;
}

/// One attribute of a record.
struct Attribute {
    bool present;
    int location;
    unsigned long offset;
};

/// In the order of the records, which is that of `AttributeIndex`.
std::array<Attribute, at_tangent + 1> attributes_of(const PolylineData& polyline) {
    return {{{true, polyline.position.attrib_location, offsetof(Vertex, position)},
             {polyline.has_color, polyline.color.attrib_location, offsetof(Vertex, color)},
             {polyline.has_normal, polyline.normal.attrib_location, offsetof(Vertex, normal)},
             {polyline.has_uv0, polyline.uv0.attrib_location, offsetof(Vertex, uv0)},
             {polyline.has_uv1, polyline.uv1.attrib_location, offsetof(Vertex, uv1)},
             {polyline.has_tangent, polyline.tangent.attrib_location, offsetof(Vertex, tangent)}}};
}

/// Makes the buffer when there is none that fits, and leaves it bound then.
/// @return true if it was made
bool make_buffer(const GlState& state, PolylineData& polyline) {
    const unsigned long bytes = record_bytes(polyline);
    if (vertex_store_of(state, polyline).fits(bytes))
        return false;
    allocate_vertices(state, polyline, bytes, nullptr,
                      mesh_buffers::vertex_usage(state, polyline.vertex_buffer_usage));
    set_vertex_flags(polyline, true);
    return true;
}

/// Uploads all records into the bound buffer.
void upload_records(const GlState& state, PolylineData& polyline) {
    vertex_store_of(state, polyline).upload_bound(0, record_bytes(polyline), polyline.vertices);
    set_vertex_flags(polyline, false);
}

} // namespace

bool PolylineFamily::prepare_gl3(PolylineData* polyline) {
    if (!polyline || !has_vertices(*polyline) || !state.can_draw_vertex_arrays())
        return false;
    begin_other_prepare(state, *polyline);
    const BufferStore store = vertex_store_of(state, *polyline);
    const bool is_new = make_buffer(state, *polyline);
    if (!store.exists())
        return refuse_draws(state, polyline);
    if (is_new)
        store.unbind();
    if (any_vertex_flag(*polyline)) {
        store.bind();
        upload_records(state, *polyline);
        store.unbind();
    }

    if (!bind_vertex_array(state, *polyline))
        return polyline->vertex_array_id != 0 || refuse_draws(state, polyline);
    for (const Attribute& attribute : attributes_of(*polyline))
        if (attribute.present && attribute.location >= 0)
            point_attribute(state.gl, attribute.location, 4, sizeof(Vertex), attribute.offset);
    return true;
}

bool PolylineFamily::prepare_gl2(PolylineData* polyline) {
    if (!polyline || !has_vertices(*polyline) || !state.can_draw_client_arrays())
        return false;
    begin_other_prepare(state, *polyline);
    state.release_vertex_array();
    const BufferStore store = vertex_store_of(state, *polyline);
    const bool is_new = make_buffer(state, *polyline);
    if (!store.exists())
        return refuse_draws(state, polyline);
    if (!is_new)
        store.bind();
    if (any_vertex_flag(*polyline))
        upload_records(state, *polyline);

    state.context().client_arrays.begin_prepare();
    int index = at_position;
    for (const Attribute& attribute : attributes_of(*polyline)) {
        if (attribute.present)
            point_client_attribute(state, index, attribute.location,
                                   {polyline->vertex_buffer_id, polyline->num_vertices, 4,
                                    sizeof(Vertex), attribute.offset});
        ++index;
    }
    state.context().client_arrays.end_prepare(state.gl, polyline->num_vertices);
    return true;
}

namespace {

/// The primitive of a polyline, or none, which draws nothing.
std::optional<GLenum> primitive_of(const PolylineData& polyline) {
    if (polyline.tessellation_state)
        return GL_PATCHES;
    switch (polyline.render_mode) {
    case LINE_RENDER_MODE_LINES:
        return GL_LINES;
    case LINE_RENDER_MODE_LINE_STRIP:
        return GL_LINE_STRIP;
    case LINE_RENDER_MODE_LINE_LOOP:
        return GL_LINE_LOOP;
    }
    return std::nullopt; // a value that a host converted
}

} // namespace

bool PolylineFamily::draw(PolylineData* polyline, int start, int count) {
    if (!polyline || !state.can_draw() || is_refused(state, polyline))
        return false;
    if (const std::optional<GLenum> primitive = primitive_of(*polyline))
        glDrawArrays(*primitive, start,
                     count < 1 ? static_cast<GLsizei>(polyline->num_vertices) : count);
    return true;
}

bool PolylineFamily::finish(PolylineData* polyline) {
    if (!polyline)
        return false;
    state.context().prepared_mesh = nullptr;
    // A prepare that was refused left nothing bound.
    if (is_refused(state, polyline))
        return false;
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    if (polyline->vertex_array_id != 0) {
        // Whichever path ran: after the one of client arrays those stay enabled until the next
        // prepare points them elsewhere.
        state.context().bound_array = 0;
        if (!gl.glBindVertexArray)
            return false;
        gl.glBindVertexArray(0);
        return true;
    }
    if (!has_entries(gl.glBindBuffer, gl.glDisableVertexAttribArray))
        return false;
    state.release_vertex_array();
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    ClientArrays& arrays = state.context().client_arrays;
    arrays.disable(gl, ClientArray::vertex);
    arrays.disable(gl, ClientArray::color);
    arrays.disable(gl, ClientArray::normal);
    if (polyline->tangent.attrib_location >= 0)
        arrays.disable_generic(gl, polyline->tangent.attrib_location);
    arrays.disable(gl, ClientArray::uv1);
    arrays.disable(gl, ClientArray::uv0);
    return true;
}

bool PolylineFamily::kill(PolylineData* polyline) {
    // Objects are deleted on the thread of their context only.
    if (!polyline || Thread() != polyline->thread || !can_delete_objects(state, *polyline))
        return false;
    delete_objects(state, *polyline);
    return true;
}

} // namespace orvex
