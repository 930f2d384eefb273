#include "orvex/renderer/opengl/buffers/private/client_arrays.h"

#include <bit>
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

bool is_uv(ClientArray array) {
    return array == ClientArray::uv0 || array == ClientArray::uv1;
}

int unit_of(ClientArray array) {
    return array == ClientArray::uv1 ? 1 : 0;
}

} // namespace

bool ClientArrays::resume(int array, const ClientPlace& place) {
    const ClientPlace& known = places[array];
    if ((pointed & bit(array)) == 0 || known.buffer != place.buffer || known.dim != place.dim ||
        known.stride != place.stride || known.offset != place.offset)
        return false;
    set(array, place);
    return true;
}

/// An array that isn't known to stand anywhere is disabled at once.
bool ClientArrays::hold(int array) {
    enabled &= ~bit(array);
    set_by_prepare &= ~bit(array);
    held = (held & ~bit(array)) | (pointed & bit(array));
    return (held & bit(array)) != 0;
}

void ClientArrays::select_unit(const ORVEX_Renderer_OpenGL_Func& gl, int new_unit) {
    wanted_unit = new_unit;
    unit = new_unit;
    gl.glClientActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(new_unit));
}

bool ClientArrays::resume(ClientArray array, const ClientPlace& place) {
    if (!is_keeping || !resume(number_of(array), place))
        return false;
    if (is_uv(array))
        wanted_unit = unit_of(array);
    return true;
}

void ClientArrays::enable(ClientArray array, const ClientPlace& place) {
    point(number_of(array), place);
    glEnableClientState(client_state(array));
}

bool ClientArrays::disable(const ORVEX_Renderer_OpenGL_Func& gl, ClientArray array) {
    if (hold(number_of(array))) {
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
    if (location < num_generic)
        point(number_of(location), place);
    gl.glEnableVertexAttribArray(static_cast<GLuint>(location));
}

bool ClientArrays::disable_generic(const ORVEX_Renderer_OpenGL_Func& gl, int location) {
    if (location < num_generic && hold(number_of(location)))
        return true;
    if (gl.glDisableVertexAttribArray)
        gl.glDisableVertexAttribArray(static_cast<GLuint>(location));
    return false;
}

bool ClientArrays::disable_each(const ORVEX_Renderer_OpenGL_Func& gl, Arrays arrays) {
    bool is_held = false;
    for (; arrays != 0; arrays &= arrays - 1) {
        const int array = std::countr_zero(arrays);
        is_held |= array < num_fixed ? disable(gl, static_cast<ClientArray>(array))
                                     : disable_generic(gl, array - num_fixed);
    }
    return is_held;
}

template<class Holds>
ClientArrays::Arrays ClientArrays::find(Arrays among, Holds holds) const {
    Arrays found = 0;
    for (; among != 0; among &= among - 1) {
        const int array = std::countr_zero(among);
        if (holds(places[array]))
            found |= bit(array);
    }
    return found;
}

bool ClientArrays::disable_shorter(const ORVEX_Renderer_OpenGL_Func& gl,
                                   unsigned long num_vertices) {
    return disable_each(gl,
                        find(enabled & ~set_by_prepare, [num_vertices](const ClientPlace& place) {
                            return place.num_vertices < num_vertices;
                        }));
}

void ClientArrays::disable_all(const ORVEX_Renderer_OpenGL_Func& gl) {
    disable_each(gl, enabled);
}

bool ClientArrays::reads(unsigned int buffer) const {
    return find(enabled, [buffer](const ClientPlace& place) { return place.buffer == buffer; }) !=
           0;
}

void ClientArrays::forget_buffer(const ORVEX_Renderer_OpenGL_Func& gl, unsigned int buffer) {
    disable_each(
        gl, find(enabled, [buffer](const ClientPlace& place) { return place.buffer == buffer; }));
}

// Held arrays

void ClientArrays::set_keeping(bool state) {
    is_keeping = state;
    forget_pointers();
}

void ClientArrays::forget_pointers() {
    pointed = 0;
    held = 0;
    wanted_unit = no_unit;
    unit = no_unit;
}

void ClientArrays::disable_held(const ORVEX_Renderer_OpenGL_Func& gl) {
    const int selected = wanted_unit;
    pointed &= ~held;
    disable_each(gl, std::exchange(held, 0));
    wanted_unit = selected;
}

void ClientArrays::settle_unit(const ORVEX_Renderer_OpenGL_Func& gl) {
    if (wanted_unit != no_unit && wanted_unit != unit && gl.glClientActiveTexture)
        select_unit(gl, wanted_unit);
}

} // namespace orvex
