#pragma once

/// @file
/// What all families of the OpenGL back end share.
///
/// One renderer has one of these, and each family holds a reference to it. A field stands here if
/// two families use it; what only one needs is that family's own.

#include <memory>
#include <vector>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/opengl/state/private/bound_state.h"
#include "orvex/renderer/opengl/state/private/contexts.h"
#include "orvex/renderer/opengl/state/private/gl_quirks.h"
#include "orvex/renderer/opengl/state/private/renderer_opengl_ctx.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

/// The function table, what the context can do, what was sent last, and what a host forces.
///
/// `RendererOpenGL` is one, so that its fields are the renderer's too. They are filled by its start
/// and stand still after it, but for what says otherwise; whoever calls an entry of the table asks
/// for it first.
struct GlState {
    /// @param owner  the renderer whose name stands in log lines and whose id in records; it
    ///               outlives the state. Null: no name, and the id 0
    explicit GlState(const Renderer* owner = nullptr);
    ~GlState() = default;
    GlState(const GlState&) = delete;
    GlState& operator=(const GlState&) = delete;

    /// @return the number that records take to remember who made their objects
    int renderer_id() const;

    /// @name The context
    /// Which one is current is asked of the window system. That is no call of the API, but it may
    /// cost as much as a draw: what runs once a frame (clears, the viewport, the projection, a
    /// reset of the states), a load or a kill asks; what runs for each object follows the windows,
    /// and trusts that a host who switches contexts by itself does one of these first.
    /// @{

    /// Takes up the context that is current on the calling thread, and deletes what was buried in
    /// it. Without one, the last one stays.
    void look_at_context();
    /// The same, if a window switched contexts since the last look.
    void follow_context() {
        if (contexts::changes() != seen_changes)
            look_at_context();
    }
    /// The same as a look, and asks whether the context was lost: once a frame, since the driver
    /// has to answer.
    void look_for_loss();
    /// Follows the context. Draws that need no entry of the table ask before they are sent.
    /// @return whether it can draw: one that was lost can't
    bool can_draw() {
        follow_context();
        return !current->lost;
    }
    /// @return what is known of the context that was looked at last
    ContextState& context() const { return *current; }
    /// @return what stands bound in it although it was unbound
    BoundState& bound() const { return *bound_state; }
    /// Unbinds the vertex array that a prepare without its finish left bound, or that is held.
    /// Before anything that binds a buffer of elements: it would take the place of the array's own.
    void release_vertex_array() const;
    /// Starts with what is bound and enabled in the current context as a fresh one has it. What
    /// another renderer left there is taken back.
    void begin_context();
    /// Disables the arrays that draws left enabled in the current context.
    void disable_client_arrays();
    /// @}

    /// Empties the table of entry points, and forgets those of contexts that aren't lost.
    void clear_entries();

    /// @name Groups of entry points
    /// An operation of several calls asks for all that it needs before its first.
    /// @{

    /// @return whether buffers can be made, given a store and filled
    bool can_fill_buffers() const {
        return has_entries(gl.glGenBuffers, gl.glBindBuffer, gl.glBufferData, gl.glBufferSubData);
    }
    /// @return whether buffers can be drawn by client arrays
    bool can_draw_client_arrays() const {
        return can_fill_buffers() &&
               has_entries(gl.glEnableVertexAttribArray, gl.glDisableVertexAttribArray,
                           gl.glVertexAttribPointer);
    }
    /// @return whether buffers can be drawn by vertex array objects
    bool can_draw_vertex_arrays() const {
        return can_fill_buffers() &&
               has_entries(gl.glGenVertexArrays, gl.glBindVertexArray, gl.glEnableVertexAttribArray,
                           gl.glVertexAttribPointer);
    }
    /// @}

    /// @name Log lines
    /// printf-style, cut at 16,383 characters, sent as "OpenGL renderer - " and the text.
    /// @{

    void k_log(const char* format, ...) ORVEX_PRINTF(2, 3);
    void k_log_debug(const char* format, ...) ORVEX_PRINTF(2, 3);
    void k_log_warning(const char* format, ...) ORVEX_PRINTF(2, 3);
    void k_log_error(const char* format, ...) ORVEX_PRINTF(2, 3);
    /// @}

    /// The entry points; render targets point to them. A lost context has none, so that each
    /// operation gives the result that it has where it lacks them.
    ORVEX_Renderer_OpenGL_Func gl;
    RendererOpenGLCtx ctx; ///< what was sent last; render targets point to it

    /// @name What the context is
    /// @{

    int gl_major = 0;
    int gl_minor = 0;
    bool gl2_context = false; ///< the major version is exactly 2
    int max_vertex_attribs = 0;
    GlQuirks quirks; ///< the remedies that are at work for its driver
    /// @}

    /// @name Usages that a host forces on new buffers
    /// The default usage forces nothing.
    /// @{

    BUFFER_OBJECT_USAGE forced_vertex_usage = BUFFER_USAGE_DEFAULT;
    BUFFER_OBJECT_USAGE forced_index_usage = BUFFER_USAGE_DEFAULT;
    BUFFER_OBJECT_USAGE forced_storage_usage = BUFFER_USAGE_DEFAULT;
    BUFFER_OBJECT_USAGE forced_atomic_usage = BUFFER_USAGE_DEFAULT;
    BUFFER_OBJECT_USAGE forced_uniform_usage = BUFFER_USAGE_DEFAULT;
    /// @}

private:
    void take_up(std::shared_ptr<ContextState> context);
    void withhold_entries();
    void delete_buried();

    ORVEX_Renderer_OpenGL_Func withheld; ///< the entry points while a lost context is current
    bool withholding = false;
    const Renderer* owner;
    std::vector<char> log_buffer;
    std::shared_ptr<ContextState> current; ///< one of its own until a context is met
    std::unique_ptr<BoundState> bound_state;
    const void* seen_native = nullptr;
    unsigned long seen_changes = 0;
};

} // namespace orvex
