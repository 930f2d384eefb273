#include "orvex/renderer/opengl/buffers/private/client_arrays.h"

#include <algorithm>
#include <iterator>
#include <utility>

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

bool ClientArrays::resume(State& state, const ClientPlace& place) {
    const ClientPlace& known = state.place;
    if (!state.is_pointed || known.buffer != place.buffer || known.dim != place.dim ||
        known.stride != place.stride || known.offset != place.offset)
        return false;
    state.buffer = place.buffer;
    state.num_vertices = place.num_vertices;
    state.set_by_prepare = true;
    state.is_held = false;
    return true;
}

void ClientArrays::point(State& state, const ClientPlace& place) const {
    state = {place.buffer, place.num_vertices, true, is_keeping, false, place};
}

/// An array that isn't known to stand anywhere is disabled at once.
bool ClientArrays::hold(State& state) {
    state.buffer = 0;
    state.num_vertices = 0;
    state.set_by_prepare = false;
    state.is_held = state.is_pointed;
    return state.is_held;
}

namespace {

bool is_uv(ClientArray array) {
    return array == ClientArray::uv0 || array == ClientArray::uv1;
}

int unit_of(ClientArray array) {
    return array == ClientArray::uv1 ? 1 : 0;
}

} // namespace

void ClientArrays::select_unit(const ORVEX_Renderer_OpenGL_Func& gl, int new_unit) {
    wanted_unit = new_unit;
    unit = new_unit;
    gl.glClientActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(new_unit));
}

bool ClientArrays::resume(ClientArray array, const ClientPlace& place) {
    if (!is_keeping || !resume(fixed[static_cast<int>(array)], place))
        return false;
    if (is_uv(array))
        wanted_unit = unit_of(array);
    return true;
}

bool ClientArrays::resume_generic(int location, const ClientPlace& place) {
    return is_keeping && location < num_generic && resume(generic[location], place);
}

void ClientArrays::enable(ClientArray array, const ClientPlace& place) {
    point(fixed[static_cast<int>(array)], place);
    glEnableClientState(client_state(array));
}

bool ClientArrays::disable(const ORVEX_Renderer_OpenGL_Func& gl, ClientArray array) {
    if (hold(fixed[static_cast<int>(array)])) {
        if (is_uv(array))
            wanted_unit = unit_of(array);
        return true;
    }
    if (is_uv(array)) {
        if (!gl.glClientActiveTexture)
            return false;
        select_unit(gl, unit_of(array));
    }
    glDisableClientState(client_state(array));
    return false;
}

void ClientArrays::enable_generic(const ORVEX_Renderer_OpenGL_Func& gl, int location,
                                  const ClientPlace& place) {
    if (location < num_generic) {
        point(generic[location], place);
        end_of_generic = std::max(end_of_generic, location + 1);
    }
    gl.glEnableVertexAttribArray(static_cast<GLuint>(location));
}

bool ClientArrays::disable_generic(const ORVEX_Renderer_OpenGL_Func& gl, int location) {
    if (location < num_generic && hold(generic[location]))
        return true;
    if (gl.glDisableVertexAttribArray)
        gl.glDisableVertexAttribArray(static_cast<GLuint>(location));
    return false;
}

void ClientArrays::begin_prepare() {
    for (State& state : fixed)
        state.set_by_prepare = false;
    for (int i = 0; i < end_of_generic; ++i)
        generic[i].set_by_prepare = false;
}

template<class Holds>
bool ClientArrays::disable_where(const ORVEX_Renderer_OpenGL_Func& gl, Holds holds) {
    bool is_held = false;
    for (int i = 0; i < num_fixed; ++i)
        if (holds(fixed[i]))
            is_held |= disable(gl, static_cast<ClientArray>(i));
    for (int i = 0; i < end_of_generic; ++i)
        if (holds(generic[i]))
            is_held |= disable_generic(gl, i);
    return is_held;
}

bool ClientArrays::end_prepare(const ORVEX_Renderer_OpenGL_Func& gl, unsigned long num_vertices) {
    return disable_where(gl, [num_vertices](const State& state) {
        return state.buffer != 0 && !state.set_by_prepare && state.num_vertices < num_vertices;
    });
}

void ClientArrays::disable_all(const ORVEX_Renderer_OpenGL_Func& gl) {
    disable_where(gl, [](const State& state) { return state.buffer != 0; });
}

bool ClientArrays::reads(unsigned int buffer) const {
    const auto holds = [buffer](const State& state) { return state.buffer == buffer; };
    return buffer != 0 && (std::any_of(std::begin(fixed), std::end(fixed), holds) ||
                           std::any_of(generic, generic + end_of_generic, holds));
}

void ClientArrays::forget_buffer(const ORVEX_Renderer_OpenGL_Func& gl, unsigned int buffer) {
    if (buffer != 0)
        disable_where(gl, [buffer](const State& state) { return state.buffer == buffer; });
}

// Held arrays

void ClientArrays::set_keeping(bool state) {
    is_keeping = state;
    forget_pointers();
}

void ClientArrays::forget_pointers() {
    for (State& state : fixed)
        state.is_pointed = state.is_held = false;
    for (int i = 0; i < end_of_generic; ++i)
        generic[i].is_pointed = generic[i].is_held = false;
    wanted_unit = no_unit;
    unit = no_unit;
}

void ClientArrays::disable_held(const ORVEX_Renderer_OpenGL_Func& gl) {
    const auto is_left = [](State& state) {
        state.is_pointed = state.is_pointed && !state.is_held;
        return std::exchange(state.is_held, false);
    };
    const int selected = wanted_unit;
    for (int i = 0; i < num_fixed; ++i)
        if (is_left(fixed[i]))
            disable(gl, static_cast<ClientArray>(i));
    for (int i = 0; i < end_of_generic; ++i)
        if (is_left(generic[i]))
            disable_generic(gl, i);
    wanted_unit = selected;
}

void ClientArrays::settle_unit(const ORVEX_Renderer_OpenGL_Func& gl) {
    if (wanted_unit != no_unit && wanted_unit != unit && gl.glClientActiveTexture)
        select_unit(gl, wanted_unit);
}

} // namespace orvex
