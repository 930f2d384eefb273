#include "orvex/renderer/opengl/state/private/context_loss.h"

#include "orvex/base/log_mgr.h"
#include "orvex/renderer/opengl/gl/private/gl_support.h"
#include "orvex/renderer/opengl/state/private/contexts.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

namespace {

/// The entry that tells of a reset; null where the current context has none.
PFNGLGETGRAPHICSRESETSTATUSPROC find_reset_status() {
    const GlCapabilities capabilities = read_gl_capabilities();
    const char* name = nullptr;
    if (capabilities.has_version(45) || capabilities.has_extension("GL_KHR_robustness"))
        name = "glGetGraphicsResetStatus";
    else if (capabilities.has_extension("GL_ARB_robustness"))
        name = "glGetGraphicsResetStatusARB";
    return name ? reinterpret_cast<PFNGLGETGRAPHICSRESETSTATUSPROC>(
                      window_platform().get_proc_address(name))
                : nullptr;
}

const char* reason_of(GLenum status) {
    switch (status) {
    case GL_GUILTY_CONTEXT_RESET:
        return "a reset that its own drawing caused";
    case GL_INNOCENT_CONTEXT_RESET:
        return "a reset that another program caused";
    default:
        return "a reset of unknown cause";
    }
}

} // namespace

bool look_for_loss(ContextState& state) {
    if (state.lost)
        return true;
    if (!state.reset_status)
        state.reset_status = find_reset_status();
    const GLenum status = *state.reset_status ? (*state.reset_status)() : GL_NO_ERROR;
    if (status != GL_NO_ERROR)
        note_loss(state, reason_of(status));
    return state.lost;
}

void note_loss(ContextState& state, const char* reason) {
    if (state.lost)
        return;
    state.lost = true;
    contexts::switched();
    LogMgr::get()->tracef_error(
        "OpenGL context lost by %s: nothing is drawn until the window has another", reason);
}

} // namespace orvex
