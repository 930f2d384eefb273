#include "orvex/renderer/opengl/state/private/gl_state.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

#include "orvex/base/log_mgr.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/renderer/opengl/buffers/private/buffer_store.h"
#include "orvex/renderer/opengl/state/private/context_loss.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

namespace {

constexpr unsigned long log_buffer_bytes = 16384;

} // namespace

GlState::GlState(const Renderer* owner)
    : owner(owner)
    , log_buffer(log_buffer_bytes)
    , current(std::make_shared<ContextState>(0, false,
                                             std::make_shared<ShareGroup>(0, Kinship::unknown)))
    , bound_state(std::make_unique<BoundState>(*this)) {}

int GlState::renderer_id() const {
    return owner ? owner->getid() : 0;
}

// The context

void GlState::look_at_context() {
    const unsigned long changes = contexts::changes();
    const void* const native = window_platform().current_context();
    if (native && (native != seen_native || changes != seen_changes)) {
        take_up(contexts::looked_at(native, seen_native && native != seen_native));
        seen_native = native;
        withhold_entries();
        delete_buried();
    }
    seen_changes = changes;
}

/// What is held in a context that a host left by itself can't be taken off any more.
void GlState::take_up(std::shared_ptr<ContextState> context) {
    if (context == current)
        return bound_state->restore();
    current->client_arrays.set_keeping(false);
    current = std::move(context);
    current->client_arrays.set_keeping(bound_state->is_keeping());
    bound_state->drop();
}

void GlState::look_for_loss() {
    look_at_context();
    if (current->number != 0 && orvex::look_for_loss(*current))
        withhold_entries();
}

void GlState::withhold_entries() {
    if (current->lost == withholding)
        return;
    std::swap(gl, withheld);
    withholding = current->lost;
}

void GlState::clear_entries() {
    gl.clear();
    withheld.clear();
    withholding = false;
}

namespace {

template<class Entry>
void delete_all(Entry entry, const std::vector<GLuint>& ids) {
    for (const GLuint id : ids)
        if (entry)
            entry(id);
}

template<class Entry>
void delete_each(Entry entry, const std::vector<GLuint>& ids) {
    for (const GLuint id : ids)
        if (entry)
            entry(1, &id);
}

} // namespace

void GlState::delete_buried() {
    BuriedObjects objects;
    BuriedContextObjects unshared;
    {
        const std::lock_guard<std::mutex> guard(current->group->mutex);
        objects = std::exchange(current->group->buried, {});
        unshared = std::exchange(current->buried, {});
    }
    delete_each(gl.glDeleteVertexArrays, unshared.vertex_arrays);
    delete_each(gl.glDeleteFramebuffers, unshared.framebuffers);
    for (GLuint id : objects.buffers)
        if (gl.glDeleteBuffers)
            delete_buffer(*this, id);
    delete_each(glDeleteTextures, objects.textures);
    delete_each(gl.glDeleteRenderbuffers, objects.render_buffers);
    delete_all(gl.glDeleteProgram, objects.programs);
    delete_all(gl.glDeleteShader, objects.shaders);
}

void GlState::release_vertex_array() const {
    bound_state->array_was_bound();
    if (std::exchange(current->bound_array, 0U) != 0 && gl.glBindVertexArray)
        gl.glBindVertexArray(0);
}

void GlState::begin_context() {
    disable_client_arrays();
    release_vertex_array();
    current->prepared_mesh = nullptr;
    current->bound_uniforms = 0;
}

void GlState::disable_client_arrays() {
    // Also at a renderer's end, from which nothing is thrown.
    or_false([this] {
        look_at_context();
        return true;
    });
    current->client_arrays.disable_all(gl);
}

// Log lines

// The four lines differ only in where the text goes.
#define ORVEX_K_LOG(target)                                                                        \
    bound_state->restore(); /* a host may listen */                                                \
    va_list arguments;                                                                             \
    va_start(arguments, format);                                                                   \
    std::vsnprintf(log_buffer.data(), log_buffer.size(), format, arguments);                       \
    va_end(arguments);                                                                             \
    LogMgr::get()->target("%s renderer - %s", owner ? owner->get_api_name() : "", log_buffer.data())

void GlState::k_log(const char* format, ...) {
    ORVEX_K_LOG(tracef);
}

void GlState::k_log_debug(const char* format, ...) {
    ORVEX_K_LOG(tracef_debug);
}

void GlState::k_log_warning(const char* format, ...) {
    ORVEX_K_LOG(tracef_warning);
}

void GlState::k_log_error(const char* format, ...) {
    ORVEX_K_LOG(tracef_error);
}

#undef ORVEX_K_LOG

} // namespace orvex
