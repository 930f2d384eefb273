#pragma once

/// @file
/// A frame in a context of the host's that leaves it as it was.

#include <memory>

#include "orvex_kit/api.h"

namespace orvex::kit {

/// Keeps the OpenGL states of the host's current context for as long as it lives. In the meantime
/// they are those of a fresh context, so that what the engine draws doesn't depend on them; but the
/// framebuffer that is bound stays.
///
/// Kept are: what is enabled, blending, masks, tests, depth and stencil, the rasterizer, viewport
/// and scissor, clear values, how pixels are packed, the program, the vertex array, framebuffers,
/// buffers with the first 8 uniform blocks, textures and samplers of the first 16 units; and in a
/// compatibility context, as long as its stacks of attributes have room, all that they hold, and
/// the matrices. Errors that OpenGL keeps are taken.
///
/// The same context has to be current at its begin and its end; without one it does nothing,
/// nor where memory runs out.
///
/// @code
/// {
///     const kit::HostState kept;
///     // draw by a view on the host's context
/// }
/// @endcode
class ORVEX_KIT_API HostState {
public:
    HostState() noexcept;
    ~HostState();
    HostState(const HostState&) = delete;
    HostState& operator=(const HostState&) = delete;

private:
    class Data;
    std::unique_ptr<Data> data;
};

/// Keeps which OpenGL context is current for as long as it lives: what makes another one current in
/// the meantime, as a view in a window of its own does, gives it back at the end. That of EGL with
/// its surfaces, and with it the view that was drawn in last. Where none is current at the begin,
/// the one at the end stays.
///
/// @code
/// {
///     const kit::HostContext kept;
///     // draw by a view on a context of its own
/// }
/// @endcode
class ORVEX_KIT_API HostContext {
public:
    HostContext() noexcept;
    ~HostContext();
    HostContext(const HostContext&) = delete;
    HostContext& operator=(const HostContext&) = delete;

private:
    void* display;
    void* context;
    void* surfaces[2]; ///< drawn into, read from
    unsigned int api;
    const void* view; ///< what the view drawn in last belongs to; it may have ended since
};

} // namespace orvex::kit
