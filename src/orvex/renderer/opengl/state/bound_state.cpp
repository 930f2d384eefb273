// What is held, and the calls that take it off: those that the full order has, in its order.

#include "orvex/renderer/opengl/state/private/bound_state.h"

#include <bit>
#include <cstring>

#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/opengl/textures/private/texture_unit_family.h"

namespace orvex {

namespace {

thread_local BoundState* keeper = nullptr;

/// Numbers of stretches, of all renderers: programs may be drawn by several.
std::atomic<unsigned long> last_stretch{0};

bool is_same(const void* a, const void* b, std::size_t bytes) {
    return std::memcmp(a, b, bytes) == 0;
}

} // namespace

std::atomic<int> BoundState::keepers{0};

BoundState::~BoundState() {
    drop();
    if (keeping)
        keepers.fetch_sub(1, std::memory_order_relaxed);
    if (keeper == this)
        keeper = nullptr;
}

void BoundState::begin() {
    if (keeping)
        return;
    if (keeper && keeper != this)
        keeper->end();
    keeper = this;
    keepers.fetch_add(1, std::memory_order_relaxed);
    keeping = true;
    state.context().client_arrays.set_keeping(true);
    forget();
}

void BoundState::end() {
    if (!keeping)
        return;
    restore();
    keeping = false;
    state.context().client_arrays.set_keeping(false);
    keepers.fetch_sub(1, std::memory_order_relaxed);
    if (keeper == this)
        keeper = nullptr;
}

void BoundState::restore_keeper() {
    if (keeper)
        keeper->restore();
}

void BoundState::restore() {
    if (!keeping)
        return;
    take_off_held();
    settle_unit();
    state.context().client_arrays.settle_unit(state.gl);
    forget();
}

void BoundState::drop() {
    held = 0;
    units_held = 0;
    if (keeping)
        forget();
}

void BoundState::forget() {
    stretch_number = ++last_stretch;
    program = 0;
    vertices = 0;
    elements = 0;
    for (Unit& unit : units)
        unit = {};
    active_unit = no_unit;
    knows_colors = false;
    knows_projection = false;
    knows_model_view = false;
    knows_viewport = false;
    state.context().client_arrays.forget_pointers();
}

void BoundState::send_held() {
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    if ((held & held_program) != 0) {
        if (gl.glUseProgram)
            gl.glUseProgram(0);
        program = 0;
    }
    send_held_textures();
    if ((held & held_array) != 0)
        state.release_vertex_array();
    send_held_client();
    held = 0;
}

// The program

bool BoundState::resume_program(GLuint id) {
    if ((held & held_program) == 0 || program != id)
        return false;
    held &= ~held_program;
    return true;
}

void BoundState::program_was_bound(GLuint id) {
    program = keeping ? id : 0;
    held &= ~held_program;
}

bool BoundState::hold_program() {
    if (program == 0)
        return false;
    held |= held_program;
    return true;
}

// The vertex array

bool BoundState::resume_array(GLuint id) {
    if ((held & held_array) == 0 || state.context().bound_array != id)
        return false;
    held &= ~held_array;
    return true;
}

bool BoundState::hold_array() {
    if (!keeping || state.context().bound_array == 0)
        return false;
    held |= held_array;
    return true;
}

// Buffers of client arrays

bool BoundState::resume_buffer(GLenum target, GLuint id) {
    const bool is_vertices = target == GL_ARRAY_BUFFER;
    const unsigned int flag = is_vertices ? held_vertices : held_elements;
    if ((held & flag) == 0 || (is_vertices ? vertices : elements) != id)
        return false;
    held &= ~flag;
    return true;
}

void BoundState::buffer_was_bound(GLenum target, GLuint id) {
    const bool is_vertices = target == GL_ARRAY_BUFFER;
    (is_vertices ? vertices : elements) = keeping ? id : 0;
    held &= ~(is_vertices ? held_vertices : held_elements);
}

bool BoundState::hold_buffers() {
    if (vertices == 0)
        return false;
    held |= held_vertices;
    if (elements != 0)
        held |= held_elements;
    else
        state.gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0); // whatever a host left there
    return true;
}

void BoundState::send_held_client() {
    const ORVEX_Renderer_OpenGL_Func& gl = state.gl;
    if ((held & held_elements) != 0 && gl.glBindBuffer) {
        gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
        elements = 0;
    }
    if ((held & held_vertices) != 0 && gl.glBindBuffer) {
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        vertices = 0;
    }
    if ((held & held_client_arrays) != 0)
        state.context().client_arrays.disable_held(gl);
    held &= ~(held_elements | held_vertices | held_client_arrays);
}

void BoundState::take_off_client_arrays() {
    if (!keeping)
        return;
    if ((held & (held_elements | held_vertices | held_client_arrays)) != 0) {
        // What buffers and arrays of no object are bound in.
        state.release_vertex_array();
        send_held_client();
    }
    vertices = 0;
    elements = 0;
}

// Textures

void BoundState::activate(unsigned long unit) {
    if (!state.gl.glActiveTexture || active_unit == unit)
        return;
    active_unit = unit;
    state.gl.glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
}

void BoundState::settle_unit() {
    if (active_unit != no_unit)
        activate(state.ctx.active_texture_unit);
}

void BoundState::take_off(unsigned long unit) {
    activate(unit);
    glBindTexture(units[unit].target, 0);
    units[unit].texture = 0;
    units[unit].is_held = false;
    units_held &= ~(1UL << unit);
}

void BoundState::send_held_textures() {
    while (units_held != 0)
        take_off(static_cast<unsigned long>(std::countr_zero(units_held)));
}

bool BoundState::resume_texture(GLenum target, GLuint id, unsigned long unit) {
    Unit* const here = find_unit(unit);
    if (!here || !here->is_held || here->target != target || here->texture != id)
        return false;
    here->is_held = false;
    units_held &= ~(1UL << unit);
    if (units_held == 0)
        held &= ~held_textures;
    return true;
}

void BoundState::make_room(GLenum target, unsigned long unit) {
    const Unit* const here = find_unit(unit);
    if (here && here->is_held && here->target != target)
        take_off(unit);
}

void BoundState::texture_was_bound(GLenum target, GLuint id, unsigned long unit) {
    if (!keeping)
        return;
    active_unit = unit;
    Unit* const here = find_unit(unit);
    if (!here)
        return;
    // What another target had before stays beside it.
    if (here->texture != 0 && here->target != target)
        here->is_alone = false;
    here->target = target;
    here->texture = id;
    here->is_held = false;
    units_held &= ~(1UL << unit);
}

bool BoundState::hold_texture(unsigned long unit) {
    Unit* const here = find_unit(unit);
    if (!here || here->texture == 0)
        return false;
    if (!here->is_alone) {
        activate(unit);
        for (const GLenum target : bound_texture_targets)
            if (target != here->target)
                glBindTexture(target, 0);
        here->is_alone = true;
    }
    here->is_held = true;
    units_held |= 1UL << unit;
    held |= held_textures;
    return true;
}

void BoundState::unit_was_cleared(unsigned long unit) {
    if (!keeping)
        return;
    active_unit = unit;
    if (Unit* const here = find_unit(unit))
        *here = {0, 0, true, false};
}

// Values

bool BoundState::has_colors(const vec4& ambient, const vec4& diffuse, const vec4& specular,
                            float new_shininess) {
    if (!keeping)
        return false;
    const vec4 wanted[] = {ambient, diffuse, specular};
    if (knows_colors && is_same(colors, wanted, sizeof(colors)) &&
        is_same(&shininess, &new_shininess, sizeof(shininess)))
        return true;
    std::memcpy(colors, wanted, sizeof(colors));
    shininess = new_shininess;
    return false;
}

bool BoundState::has_projection(const float* matrix) {
    if (!keeping)
        return false;
    if (knows_projection && is_same(projection.m, matrix, sizeof(projection.m)))
        return true;
    std::memcpy(projection.m, matrix, sizeof(projection.m));
    knows_projection = true;
    return false;
}

bool BoundState::has_model_view(const float* matrix) {
    if (!keeping)
        return false;
    if (knows_model_view && is_same(model_view.m, matrix, sizeof(model_view.m)))
        return true;
    std::memcpy(model_view.m, matrix, sizeof(model_view.m));
    knows_model_view = true;
    return false;
}

void BoundState::viewport_was_read(const int* numbers) {
    if (!keeping)
        return;
    std::memcpy(viewport, numbers, sizeof(viewport));
    knows_viewport = true;
}

} // namespace orvex
