#include "orvex/renderer/opengl/buffers/private/client_pointers.h"

namespace orvex::mesh_buffers {

void point_client_generic(const Context& context, ClientArrays& arrays, int location,
                          const Place& place) {
    arrays.enable_generic(context.gl, location, place.buffer, place.num_vertices);
    context.gl.glVertexAttribPointer(static_cast<GLuint>(location), static_cast<GLint>(place.dim),
                                     GL_FLOAT, GL_FALSE, place.stride, place.offset);
}

namespace {

bool select_client_unit(const Context& context, GLenum unit) {
    if (context.gl.glClientActiveTexture)
        context.gl.glClientActiveTexture(unit);
    return context.gl.glClientActiveTexture != nullptr;
}

void point_uv(const Context& context, ClientArrays& arrays, ClientArray array, const Place& place) {
    if (!select_client_unit(context, array == ClientArray::uv0 ? GL_TEXTURE0 : GL_TEXTURE1))
        return;
    glTexCoordPointer(static_cast<GLint>(place.dim), GL_FLOAT, place.stride, place.offset);
    arrays.enable(array, place.buffer, place.num_vertices);
}

} // namespace

void point_client_attribute(const Context& context, ClientArrays& arrays, int index, int location,
                            const Place& place) {
    const auto dim = static_cast<GLint>(place.dim);
    switch (index) {
    case at_position:
        glVertexPointer(dim, GL_FLOAT, place.stride, place.offset);
        arrays.enable(ClientArray::vertex, place.buffer, place.num_vertices);
        return;
    case at_color:
        glColorPointer(dim, GL_FLOAT, place.stride, place.offset);
        arrays.enable(ClientArray::color, place.buffer, place.num_vertices);
        return;
    case at_normal:
        glNormalPointer(GL_FLOAT, place.stride, place.offset);
        arrays.enable(ClientArray::normal, place.buffer, place.num_vertices);
        return;
    case at_uv0:
        point_uv(context, arrays, ClientArray::uv0, place);
        return;
    case at_uv1:
        point_uv(context, arrays, ClientArray::uv1, place);
        return;
    default:
        if (location >= 0)
            point_client_generic(context, arrays, location, place);
    }
}

} // namespace orvex::mesh_buffers
