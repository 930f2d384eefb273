#include "orvex/renderer/opengl/window/linux/private/glx_context.h"

#include <atomic>

#include "orvex/platform/private/loaded_library.h"

namespace orvex {

namespace {

using GlxDrawable = unsigned long;

/// The few entry points of GLX that adoption needs, with its handles as plain pointers.
struct GlxApi {
    void* (*get_context)() = nullptr;
    void* (*get_display)() = nullptr;
    GlxDrawable (*get_drawable)() = nullptr;
    GlxDrawable (*get_read_drawable)() = nullptr;
    int (*make_current)(void* display, GlxDrawable draw, GlxDrawable read, void* context) = nullptr;

    bool complete() const {
        return get_context && get_display && get_drawable && get_read_drawable && make_current;
    }
};

GlxApi load_glx() {
    const LoadedLibrary library("libGLX.so.0", "libGL.so.1");
    GlxApi api;
    library.look_up("glXGetCurrentContext", api.get_context);
    library.look_up("glXGetCurrentDisplay", api.get_display);
    library.look_up("glXGetCurrentDrawable", api.get_drawable);
    library.look_up("glXGetCurrentReadDrawable", api.get_read_drawable);
    library.look_up("glXMakeContextCurrent", api.make_current);
    return api;
}

using GetContext = void* (*)();

/// Found once the host has loaded GLX, and kept then.
std::atomic<GetContext> get_current = nullptr;

class GlxHostContext : public PlatformContext {
public:
    GlxHostContext(const GlxApi& api, void* host_handle)
        : api(api)
        , host_handle(host_handle)
        , context(api.get_context())
        , display(api.get_display())
        , draw(api.get_drawable())
        , read(api.get_read_drawable()) {}

    void* handle() const override { return host_handle; }
    const void* native() const override { return context; }
    bool is_current() const override { return api.get_context() == context; }
    bool make_current() override { return api.make_current(display, draw, read, context) != 0; }
    bool release_current() override { return api.make_current(display, 0, 0, nullptr) != 0; }
    bool present() override { return true; }
    void set_swap_interval(int) override {}
    bool resize(int, int) override { return true; }

private:
    GlxApi api;
    void* host_handle;
    void* context;
    void* display;
    GlxDrawable draw;
    GlxDrawable read;
};

} // namespace

const void* current_glx_context() {
    if (!get_current)
        get_current = load_glx().get_context;
    const GetContext get = get_current;
    return get ? get() : nullptr;
}

std::unique_ptr<PlatformContext> adopt_current_glx_context(void* handle) {
    const GlxApi api = load_glx();
    if (!api.complete() || !api.get_context())
        return nullptr;
    return std::make_unique<GlxHostContext>(api, handle);
}

} // namespace orvex
