#include "orvex/renderer/opengl/buffers/private/client_pointers.h"

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

void point_client_generic(GlState& state, int location, const ClientPlace& place) {
    state.context().client_arrays.enable_generic(state.gl, location, place.buffer,
                                                 place.num_vertices);
    state.gl.glVertexAttribPointer(static_cast<GLuint>(location), static_cast<GLint>(place.dim),
                                   GL_FLOAT, GL_FALSE, static_cast<GLsizei>(place.stride),
                                   buffer_offset(place.offset));
}

namespace {

/// Points the texture coordinates of one unit. A context with one unit only has no second set.
void point_uv(GlState& state, ClientArray array, const ClientPlace& place) {
    if (!state.gl.glClientActiveTexture)
        return;
    state.gl.glClientActiveTexture(array == ClientArray::uv0 ? GL_TEXTURE0 : GL_TEXTURE1);
    glTexCoordPointer(static_cast<GLint>(place.dim), GL_FLOAT, static_cast<GLsizei>(place.stride),
                      buffer_offset(place.offset));
    state.context().client_arrays.enable(array, place.buffer, place.num_vertices);
}

} // namespace

void point_client_attribute(GlState& state, int index, int location, const ClientPlace& place) {
    const auto dim = static_cast<GLint>(place.dim);
    const auto stride = static_cast<GLsizei>(place.stride);
    const void* const offset = buffer_offset(place.offset);
    ClientArrays& arrays = state.context().client_arrays;
    switch (index) {
    case at_position:
        glVertexPointer(dim, GL_FLOAT, stride, offset);
        arrays.enable(ClientArray::vertex, place.buffer, place.num_vertices);
        return;
    case at_color:
        glColorPointer(dim, GL_FLOAT, stride, offset);
        arrays.enable(ClientArray::color, place.buffer, place.num_vertices);
        return;
    case at_normal:
        glNormalPointer(GL_FLOAT, stride, offset);
        arrays.enable(ClientArray::normal, place.buffer, place.num_vertices);
        return;
    case at_uv0:
        point_uv(state, ClientArray::uv0, place);
        return;
    case at_uv1:
        point_uv(state, ClientArray::uv1, place);
        return;
    default:
        if (location >= 0)
            point_client_generic(state, location, place);
    }
}

} // namespace orvex
