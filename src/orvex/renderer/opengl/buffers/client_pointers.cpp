#include "orvex/renderer/opengl/buffers/private/client_pointers.h"

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex {

void point_client_generic(GlState& state, int location, const ClientPlace& place) {
    ClientArrays& arrays = state.context().client_arrays;
    if (arrays.resume_generic(location, place))
        return;
    arrays.enable_generic(state.gl, location, place);
    state.gl.glVertexAttribPointer(static_cast<GLuint>(location), static_cast<GLint>(place.dim),
                                   GL_FLOAT, GL_FALSE, static_cast<GLsizei>(place.stride),
                                   buffer_offset(place.offset));
}

namespace {

/// Points the texture coordinates of one unit. A context with one unit only has no second set.
void point_uv(GlState& state, ClientArray array, const ClientPlace& place) {
    if (!state.gl.glClientActiveTexture)
        return;
    ClientArrays& arrays = state.context().client_arrays;
    if (arrays.resume(array, place))
        return;
    arrays.select_unit(state.gl, array == ClientArray::uv0 ? 0 : 1);
    glTexCoordPointer(static_cast<GLint>(place.dim), GL_FLOAT, static_cast<GLsizei>(place.stride),
                      buffer_offset(place.offset));
    arrays.enable(array, place);
}

} // namespace

void point_client_attribute(GlState& state, int index, int location, const ClientPlace& place) {
    const auto dim = static_cast<GLint>(place.dim);
    const auto stride = static_cast<GLsizei>(place.stride);
    const void* const offset = buffer_offset(place.offset);
    ClientArrays& arrays = state.context().client_arrays;
    switch (index) {
    case at_position:
        if (arrays.resume(ClientArray::vertex, place))
            return;
        glVertexPointer(dim, GL_FLOAT, stride, offset);
        arrays.enable(ClientArray::vertex, place);
        return;
    case at_color:
        if (arrays.resume(ClientArray::color, place))
            return;
        glColorPointer(dim, GL_FLOAT, stride, offset);
        arrays.enable(ClientArray::color, place);
        return;
    case at_normal:
        if (arrays.resume(ClientArray::normal, place))
            return;
        glNormalPointer(GL_FLOAT, stride, offset);
        arrays.enable(ClientArray::normal, place);
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
