#pragma once

/// @file
/// The OpenGL back end's render window.

#include <memory>

#include "orvex/renderer/render_window.h"

namespace orvex {

class PlatformContext;
class WindowPlatform;
struct ContextRequest;
struct RenderWindowOpenGLData;
struct RenderWindowOpenGLData2;
struct RenderWindowOpenGLData_OSX;

/// A render window whose context comes from a window platform.
///
/// Made by `RendererOpenGL::create_render_window`. What each operation does is told in
/// `RenderWindow`; this class keeps the context, the cached version and the extension list, and
/// leaves everything native to the platform.
class RenderWindowOpenGL : public RenderWindow {
public:
    /// Uses the platform that `window_platform` gives at this moment.
    RenderWindowOpenGL();
    ~RenderWindowOpenGL() override;

    bool initialize(void* window, void* view, int width, int height, const char* msaa,
                    RenderWindow* parent, RenderWindow_ExtraData* extra) override;
    bool terminate() override;
    bool apply_context(bool state) override;
    bool display_framebuffer() override;
    bool vsync(bool state) override;
    bool share_ctx(RenderWindow* window) override;
    int get_api_3d() override;
    bool is_opengl_version_supported(int major, int minor) override;
    bool get_opengl_version(int* major, int* minor) override;
    bool check_opengl_extension(const char* name) override;
    bool build_opengl_extensions_list() override;
    bool destroy_opengl_extensions_list() override;
    unsigned long get_num_opengl_extensions() override;
    int get_num_GL_extensions() override;
    int get_num_WGL_extensions() override;
    int get_num_GLX_extensions() override;
    const char* get_opengl_extension(unsigned long index) override;
    void* opengl_get_ctx() override;
    void* d3d_get_device() override;
    void* d3d11_get_device_ctx() override;
    void update_size(int width, int height) override;

    bool osx_kill_context() override;
    bool osx_init_with_cocoa_nsgl_ctx(void* context) override;
    bool osx_apply_context(bool state) override;
    bool osx_display_framebuffer() override;
    bool osx_vsync(bool state) override;
    bool osx_update_current_virtual_screen_ctx() override;
    int osx_get_current_virtual_screen() override;
    bool osx_set_current_virtual_screen(int screen) override;
    int osx_get_num_of_virtual_screens() override;
    void* osx_get_cgl_ctx() override;
    bool osx_enable_multi_threaded_gl_engine(bool state) override;
    bool osx_lock_context(bool state) override;
    bool osx_create_cgl_context(void* view, int width, int height, const char* msaa,
                                RenderWindow* parent, RenderWindow_ExtraData* extra) override;
    bool osx_create_cocoa_nsgl_context(void* view, int width, int height, const char* msaa,
                                       RenderWindow* parent,
                                       RenderWindow_ExtraData* extra) override;
    bool osx_apply_context_cocoa(bool state) override;
    bool osx_update_context_cocoa() override;
    bool osx_display_framebuffer_cocoa() override;
    bool osx_vsync_cocoa(bool state) override;
    void* osx_get_nsgl_ctx() override;

    bool is_context_current() const;
    /// @return whether `set_framebuffer` was called, and later than another window's; null for none
    bool told_framebuffer_after(const RenderWindowOpenGL* other) const;

private:
    bool create_context(ContextRequest& request, RenderWindow* parent);
    bool adopt_context(void* context);
    void set_context(std::unique_ptr<PlatformContext> context, bool adopted);
    void read_version();
    void tell_device() const;

    WindowPlatform& platform;
    // The last one holds the context, and ends first.
    std::unique_ptr<RenderWindowOpenGLData> data;
    std::unique_ptr<RenderWindowOpenGLData2> data2;
    std::unique_ptr<RenderWindowOpenGLData_OSX> data_osx;
};

} // namespace orvex
