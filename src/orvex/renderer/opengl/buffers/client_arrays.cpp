#include "orvex/renderer/opengl/buffers/private/client_arrays.h"

namespace orvex {

namespace {

GLenum client_state(ClientArray array) {
    switch (array) {
    case ClientArray::vertex:
        return GL_VERTEX_ARRAY;
    case ClientArray::color:
        return GL_COLOR_ARRAY;
    case ClientArray::normal:
        return GL_NORMAL_ARRAY;
    case ClientArray::uv0:
    case ClientArray::uv1:
        break;
    }
    return GL_TEXTURE_COORD_ARRAY;
}

} // namespace

void ClientArrays::enable(ClientArray array, unsigned int buffer, unsigned long num_vertices) {
    fixed[static_cast<int>(array)] = {buffer, num_vertices, true};
    glEnableClientState(client_state(array));
}

void ClientArrays::disable(const ORVEX_Renderer_OpenGL_Func& gl, ClientArray array) {
    fixed[static_cast<int>(array)] = {};
    if (array == ClientArray::uv0 || array == ClientArray::uv1) {
        if (!gl.glClientActiveTexture)
            return;
        gl.glClientActiveTexture(array == ClientArray::uv0 ? GL_TEXTURE0 : GL_TEXTURE1);
    }
    glDisableClientState(client_state(array));
}

void ClientArrays::enable_generic(const ORVEX_Renderer_OpenGL_Func& gl, int location,
                                  unsigned int buffer, unsigned long num_vertices) {
    if (location < num_generic)
        generic[location] = {buffer, num_vertices, true};
    gl.glEnableVertexAttribArray(static_cast<GLuint>(location));
}

void ClientArrays::disable_generic(const ORVEX_Renderer_OpenGL_Func& gl, int location) {
    if (location < num_generic)
        generic[location] = {};
    gl.glDisableVertexAttribArray(static_cast<GLuint>(location));
}

void ClientArrays::begin_prepare() {
    for (State& state : fixed)
        state.set_by_prepare = false;
    for (State& state : generic)
        state.set_by_prepare = false;
}

void ClientArrays::end_prepare(const ORVEX_Renderer_OpenGL_Func& gl, unsigned long num_vertices) {
    const auto too_short = [num_vertices](const State& state) {
        return state.buffer != 0 && !state.set_by_prepare && state.num_vertices < num_vertices;
    };
    for (int i = 0; i < num_fixed; ++i)
        if (too_short(fixed[i]))
            disable(gl, static_cast<ClientArray>(i));
    for (int i = 0; i < num_generic; ++i)
        if (too_short(generic[i]))
            disable_generic(gl, i);
}

void ClientArrays::forget_buffer(const ORVEX_Renderer_OpenGL_Func& gl, unsigned int buffer) {
    if (buffer == 0)
        return;
    for (int i = 0; i < num_fixed; ++i)
        if (fixed[i].buffer == buffer)
            disable(gl, static_cast<ClientArray>(i));
    for (int i = 0; i < num_generic; ++i)
        if (generic[i].buffer == buffer)
            disable_generic(gl, i);
}

} // namespace orvex
