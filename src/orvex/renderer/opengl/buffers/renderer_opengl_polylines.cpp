#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <array>
#include <optional>

#include "orvex/renderer/opengl/buffers/private/client_pointers.h"
#include "orvex/renderer/opengl/buffers/private/point_buffers.h"
#include "orvex/renderer/records/polyline_data.h"

// Polylines: always records of 96 bytes, which travel whole whenever any part of them changed.

namespace orvex {

using namespace point_buffers;
using mesh_buffers::any_vertex_flag;
using mesh_buffers::buffer_offset;
using mesh_buffers::set_vertex_flags;
using mesh_buffers::upload;

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
std::array<Attribute, 6> attributes_of(const PolylineData& polyline) {
    return {{{true, polyline.position.attrib_location, offsetof(Vertex, position)},
             {polyline.has_color, polyline.color.attrib_location, offsetof(Vertex, color)},
             {polyline.has_normal, polyline.normal.attrib_location, offsetof(Vertex, normal)},
             {polyline.has_uv0, polyline.uv0.attrib_location, offsetof(Vertex, uv0)},
             {polyline.has_uv1, polyline.uv1.attrib_location, offsetof(Vertex, uv1)},
             {polyline.has_tangent, polyline.tangent.attrib_location, offsetof(Vertex, tangent)}}};
}

/// Makes the buffer when there is none that fits, and leaves it bound then.
/// @return true if it was made
bool make_buffer(const Context& context, PolylineData& polyline, int renderer_id) {
    const unsigned long bytes = record_bytes(polyline);
    if (!needs_storage(objects_of(polyline), bytes))
        return false;
    allocate(context, objects_of(polyline), bytes, nullptr,
             mesh_buffers::vertex_usage(context, polyline.vertex_buffer_usage), renderer_id);
    set_vertex_flags(polyline, true);
    return true;
}

/// Uploads all records into the bound buffer.
void upload_records(const Context& context, PolylineData& polyline) {
    upload(context, 0, record_bytes(polyline), polyline.vertices);
    set_vertex_flags(polyline, false);
}

} // namespace

bool RendererOpenGL::polyline_vb_prepare(PolylineData* polyline) {
    if (!polyline)
        return false;
    if (!polyline->use_generic_vertex_attribs)
        return polyline_vb_prepare_gl2(polyline);
    if (!has_vertices(*polyline) || !has_gl3_entries(gl))
        return false;
    prepared_mesh = nullptr;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    if (make_buffer(context, *polyline, getid()))
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    if (any_vertex_flag(*polyline)) {
        gl.glBindBuffer(GL_ARRAY_BUFFER, polyline->vertex_buffer_id);
        upload_records(context, *polyline);
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
    if (!bind_vertex_array(context, objects_of(*polyline)))
        return true;
    for (const Attribute& attribute : attributes_of(*polyline))
        if (attribute.present && attribute.location >= 0)
            point_attribute(context, attribute.location, 4, sizeof(Vertex), attribute.offset);
    return true;
}

bool RendererOpenGL::polyline_vb_prepare_gl2(PolylineData* polyline) {
    if (!polyline || !has_vertices(*polyline) || !has_gl2_entries(gl))
        return false;
    prepared_mesh = nullptr;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    if (!make_buffer(context, *polyline, getid()))
        gl.glBindBuffer(GL_ARRAY_BUFFER, polyline->vertex_buffer_id);
    if (any_vertex_flag(*polyline))
        upload_records(context, *polyline);

    client_arrays.begin_prepare();
    int index = mesh_buffers::at_position;
    for (const Attribute& attribute : attributes_of(*polyline)) {
        if (attribute.present)
            mesh_buffers::point_client_attribute(context, client_arrays, index, attribute.location,
                                                 {polyline->vertex_buffer_id,
                                                  polyline->num_vertices, 4, sizeof(Vertex),
                                                  buffer_offset(attribute.offset)});
        ++index;
    }
    client_arrays.end_prepare(gl, polyline->num_vertices);
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

bool RendererOpenGL::polyline_vb_draw(PolylineData* polyline, int start, int count) {
    if (!polyline)
        return false;
    if (const std::optional<GLenum> primitive = primitive_of(*polyline))
        glDrawArrays(*primitive, start,
                     count < 1 ? static_cast<GLsizei>(polyline->num_vertices) : count);
    return true;
}

bool RendererOpenGL::polyline_vb_finish(PolylineData* polyline) {
    if (!polyline)
        return false;
    prepared_mesh = nullptr;
    if (polyline->vertex_array_id != 0) {
        // Whichever path ran: after the one of client arrays those stay enabled until the next
        // prepare points them elsewhere.
        if (gl.glBindVertexArray)
            gl.glBindVertexArray(0);
        return gl.glBindVertexArray != nullptr;
    }
    if (!gl.glBindBuffer || !gl.glDisableVertexAttribArray)
        return false;
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    client_arrays.disable(gl, ClientArray::vertex);
    client_arrays.disable(gl, ClientArray::color);
    client_arrays.disable(gl, ClientArray::normal);
    if (polyline->tangent.attrib_location >= 0)
        client_arrays.disable_generic(gl, polyline->tangent.attrib_location);
    client_arrays.disable(gl, ClientArray::uv1);
    client_arrays.disable(gl, ClientArray::uv0);
    return true;
}

bool RendererOpenGL::polyline_vb_kill(PolylineData* polyline) {
    if (!polyline || Thread() != polyline->thread || !gl.glDeleteBuffers ||
        (polyline->vertex_array_id != 0 && !gl.glDeleteVertexArrays))
        return false;
    const Context context{gl, forced_vertex_usage, forced_index_usage};
    delete_vertex_array(context, objects_of(*polyline));
    polyline->vertex_buffer_id = delete_buffer(polyline->vertex_buffer_id);
    polyline->gpu_state = {};
    return true;
}

} // namespace orvex
