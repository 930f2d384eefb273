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
    bool present() override;
    void set_swap_interval(int interval) override;

    EGLDisplay get_display() const { return display; }
    EGLContext get_context() const { return context; }
    const void* native() const override { return context; }
    bool is_current() const override;

protected:
    EglAnyContext(EGLDisplay display, EGLContext context, EGLSurface draw, EGLSurface read);
    /// Lets another surface take the place of both, and the interval be set on it.
    void set_surface(EGLSurface surface);
    /// Makes current again what was before this context had to be.
    void put_back(const EglCurrent& former);
    EGLSurface get_surface() const { return draw; }

private:
    EGLDisplay display;
    EGLContext context;
    EGLSurface draw;
    EGLSurface read;
    std::optional<int> swap_interval;
    bool swap_interval_pending = false;

    void apply_swap_interval();
    bool swap() const;
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
    std::string device() const override;
    bool resize(int width, int height) override;

    /// Ends the surface, so that another context can have one on the same drawable.
    /// @return false when another thread holds the context: the surface stays
    bool give_up_surface();
    /// Makes the surface of the drawable anew.
    void take_surface_back();
    bool is_on(void* drawable) const { return drawable && drawable == view; }

private:
    EGLConfig config;
    void* view; ///< null: off screen
    int width;
    int height;

    EglOwnContext(EGLDisplay display, EGLConfig config, EGLContext context, EGLSurface surface,
                  const ContextRequest& request);
    static std::unique_ptr<EglOwnContext> create(EGLDisplay display, EGLConfig config,
                                                 const ContextRequest& request);
};

/// Frees a request's drawable from the context that the new one replaces: a drawable bears one
/// surface at a time. At the end of the scope the former context has it back, unless it was kept.
class EglDrawableLoan {
public:
    explicit EglDrawableLoan(const ContextRequest& request);
    ~EglDrawableLoan();
    EglDrawableLoan(const EglDrawableLoan&) = delete;
    EglDrawableLoan& operator=(const EglDrawableLoan&) = delete;

    /// The new context stands.
    void keep() { former = nullptr; }

private:
    EglOwnContext* former; ///< null: nothing to give back
    bool was_current;
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
