#pragma once

/// @file
/// What all families of the OpenGL back end share.
///
/// One renderer has one of these, and each family holds a reference to it. A field stands here if
/// two families use it; what only one needs is that family's own.

#include <vector>

#include "orvex/api.h"
#include "orvex/fwd.h"
#include "orvex/renderer/opengl/buffers/private/client_arrays.h"
#include "orvex/renderer/opengl/gl/private/gl_functions.h"
#include "orvex/renderer/opengl/state/private/gl_quirks.h"
#include "orvex/renderer/opengl/state/private/renderer_opengl_ctx.h"
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

    ORVEX_Renderer_OpenGL_Func gl; ///< the entry points; render targets point to them
    RendererOpenGLCtx ctx;         ///< what was sent last; render targets point to it

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

    /// @name What a draw reads
    /// @{

    ClientArrays client_arrays; ///< arrays of the fixed pipeline left enabled
    /// Between its prepare and its finish, unless something else was prepared or finished since: an
    /// indexed draw without its buffers bound would read address zero.
    const MeshData* prepared_mesh = nullptr;
    /// @}

private:
    const Renderer* owner;
    std::vector<char> log_buffer;
};

} // namespace orvex
