#include "orvex_kit/host_state.h"

#include <new>
#include <optional>

#include <EGL/egl.h>

#include "orvex_kit/private/gl_states.h"
#include "orvex_kit/private/view_context.h"

namespace orvex::kit {

namespace {

/// The stacks of attributes, which keep what the groups of states don't hold.
class Stacks {
public:
    Stacks() {
        if (has_room(GL_ATTRIB_STACK_DEPTH, GL_MAX_ATTRIB_STACK_DEPTH)) {
            glPushAttrib(GL_ALL_ATTRIB_BITS);
            attributes = true;
        }
        if (has_room(GL_CLIENT_ATTRIB_STACK_DEPTH, GL_MAX_CLIENT_ATTRIB_STACK_DEPTH)) {
            glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
            client_attributes = true;
        }
        glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    }
    ~Stacks() {
        if (client_attributes)
            glPopClientAttrib();
        if (attributes)
            glPopAttrib();
    }
    Stacks(const Stacks&) = delete;
    Stacks& operator=(const Stacks&) = delete;

private:
    bool attributes = false;
    bool client_attributes = false;

    static bool has_room(GLenum depth, GLenum most) {
        GLint used = 0;
        GLint available = 0;
        glGetIntegerv(depth, &used);
        glGetIntegerv(most, &available);
        return used < available;
    }
};

} // namespace

namespace {

constexpr int most_errors = 16;

} // namespace

class HostState::Data {
public:
    Data()
        : version(GlVersion::current()) {
        if (version.number == 0)
            return;
        kept.read(version);
        if (version.compatibility)
            stacks.emplace();
        // The host's framebuffer is what is drawn into.
        GlStates fresh;
        fresh.bindings.draw_framebuffer = kept.bindings.draw_framebuffer;
        fresh.bindings.read_framebuffer = kept.bindings.draw_framebuffer;
        fresh.raster.viewport = kept.raster.viewport;
        fresh.raster.scissor = kept.raster.scissor;
        fresh.apply(version);
    }
    ~Data() {
        stacks.reset();
        if (version.number == 0)
            return;
        kept.apply(version);
        // Some of the engine's calls fail in a core context. A lost one has errors without end.
        for (int i = 0; i < most_errors && glGetError() != GL_NO_ERROR; ++i) {
        }
    }
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;

private:
    GlVersion version;
    GlStates kept;
    std::optional<Stacks> stacks;
};

HostState::HostState() noexcept
    : data(new (std::nothrow) Data) {}

HostState::~HostState() = default;

HostContext::HostContext() noexcept
    : display(eglGetCurrentDisplay())
    , context(eglGetCurrentContext())
    , surfaces{eglGetCurrentSurface(EGL_DRAW), eglGetCurrentSurface(EGL_READ)}
    , api(eglQueryAPI())
    , view(ViewContext::last()) {}

HostContext::~HostContext() {
    if (!context)
        return;
    ViewContext::make_last(view);
    eglBindAPI(api);
    if (eglGetCurrentContext() != context || eglGetCurrentSurface(EGL_DRAW) != surfaces[0] ||
        eglGetCurrentSurface(EGL_READ) != surfaces[1])
        eglMakeCurrent(display, surfaces[0], surfaces[1], context);
}

} // namespace orvex::kit
