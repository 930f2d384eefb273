#pragma once

/// @file
/// Contexts that EGL knows: the engine's own, and those of a host.

#include <memory>
#include <optional>

#include "orvex/renderer/opengl/window/linux/private/egl_api.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

/// What the engine's own and a host's EGL context have in common.
class EglAnyContext : public PlatformContext {
public:
    bool make_current() override;
    bool release_current() override;
    void present() override;
    void set_swap_interval(int interval) override;

    EGLDisplay get_display() const { return display; }
    EGLContext get_context() const { return context; }
    bool is_current() const;

protected:
    EglAnyContext(EGLDisplay display, EGLContext context, EGLSurface draw, EGLSurface read);
    /// Lets another surface take the place of both, and the interval be set on it.
    void set_surface(EGLSurface surface);
    EGLSurface get_surface() const { return draw; }

private:
    EGLDisplay display;
    EGLContext context;
    EGLSurface draw;
    EGLSurface read;
    std::optional<int> swap_interval;
    bool swap_interval_pending = false;

    void apply_swap_interval();
};

/// A context and surface of the engine's. The display is never terminated: that would end the
/// contexts that the host has on it.
class EglOwnContext : public EglAnyContext {
public:
    /// @return null when the display has no such configuration, context or surface, or refuses to
    ///         share with the request's context
    static std::unique_ptr<EglOwnContext> create(EGLDisplay display, const ContextRequest& request);
    ~EglOwnContext() override;

    void* handle() const override { return get_context(); }
    bool resize(int width, int height) override;

private:
    EGLConfig config;
    bool off_screen;
    int width;
    int height;

    EglOwnContext(EGLDisplay display, EGLConfig config, EGLContext context, EGLSurface surface,
                  const ContextRequest& request);
    static std::unique_ptr<EglOwnContext> create(EGLDisplay display, EGLConfig config,
                                                 const ContextRequest& request);
};

/// A context that the host made with EGL and holds current. Nothing of it is destroyed here.
class EglHostContext : public EglAnyContext {
public:
    /// @param host_handle  what the host calls the context
    EglHostContext(const EglCurrent& current, void* host_handle);

    void* handle() const override { return host_handle; }
    bool resize(int, int) override { return true; }

private:
    void* host_handle;
};

} // namespace orvex
