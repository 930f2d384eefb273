#include "orvex/renderer/opengl/buffers/private/client_arrays.h"

#include <algorithm>
#include <iterator>

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
    if (gl.glDisableVertexAttribArray)
        gl.glDisableVertexAttribArray(static_cast<GLuint>(location));
}

void ClientArrays::begin_prepare() {
    for (State& state : fixed)
        state.set_by_prepare = false;
    for (State& state : generic)
        state.set_by_prepare = false;
}

template<class Holds>
void ClientArrays::disable_where(const ORVEX_Renderer_OpenGL_Func& gl, Holds holds) {
    for (int i = 0; i < num_fixed; ++i)
        if (holds(fixed[i]))
            disable(gl, static_cast<ClientArray>(i));
    for (int i = 0; i < num_generic; ++i)
        if (holds(generic[i]))
            disable_generic(gl, i);
}

void ClientArrays::end_prepare(const ORVEX_Renderer_OpenGL_Func& gl, unsigned long num_vertices) {
    disable_where(gl, [num_vertices](const State& state) {
        return state.buffer != 0 && !state.set_by_prepare && state.num_vertices < num_vertices;
    });
}

void ClientArrays::disable_all(const ORVEX_Renderer_OpenGL_Func& gl) {
    disable_where(gl, [](const State& state) { return state.buffer != 0; });
}

bool ClientArrays::reads(unsigned int buffer) const {
    const auto holds = [buffer](const State& state) { return state.buffer == buffer; };
    return buffer != 0 && (std::any_of(std::begin(fixed), std::end(fixed), holds) ||
                           std::any_of(std::begin(generic), std::end(generic), holds));
}

void ClientArrays::forget_buffer(const ORVEX_Renderer_OpenGL_Func& gl, unsigned int buffer) {
    if (buffer != 0)
        disable_where(gl, [buffer](const State& state) { return state.buffer == buffer; });
}

} // namespace orvex
