// The life of a window, its size, and what version its context has. The version is read once, from
// no context but the window's own, and kept until the next initialization or adoption.

#include "orvex/renderer/opengl/window/private/render_window_opengl.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include <GL/gl.h>
#include <GL/glext.h>

#include "orvex/base/log_mgr.h"
#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/window/private/render_window_opengl_data.h"
#include "orvex/renderer/private/render_window_data.h"

namespace orvex {

RenderWindowOpenGL::RenderWindowOpenGL()
    : platform(window_platform())
    , data(std::make_unique<RenderWindowOpenGLData>())
    , data2(std::make_unique<RenderWindowOpenGLData2>())
    , data_osx(std::make_unique<RenderWindowOpenGLData_OSX>()) {
    RenderWindowData::of(*this).opengl = this;
}

RenderWindowOpenGL::~RenderWindowOpenGL() = default;

bool RenderWindowOpenGL::initialize(void* window, void* view, int width, int height,
                                    const char* msaa, RenderWindow* parent,
                                    RenderWindow_ExtraData* extra) {
    data->thread.update();
    update_size(width, height);

    const RenderWindow_ExtraData request = extra ? *extra : RenderWindow_ExtraData();
    data->depth_bits = request.depth_bits;
    data->color_bits = request.color_bits;

    data_osx->display = window;
    data->init_ok = osx_create_cgl_context(view, width, height, msaa, parent, extra);
    if (apply_context(true)) {
        start_gl_messages();
        tell_device();
    }

    // A former context that stays keeps its version too.
    if (data->init_ok || !data_osx->context)
        read_version();
    return data->init_ok;
}

void RenderWindowOpenGL::tell_device() const {
    const std::string device = is_context_current() ? data_osx->context->device() : "";
    const char* const name = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    if (!device.empty() && name)
        LogMgr::get()->tracef_debug("OpenGL device: %s - %s", device.c_str(), name);
}

void RenderWindowOpenGL::read_version() {
    data->gl_major = 0;
    data->gl_minor = 0;
    int major = 0;
    get_opengl_version(&major, nullptr);
    data->api_3d = major >= 2 && major <= 4 ? major : 2;
}

bool RenderWindowOpenGL::terminate() {
    destroy_opengl_extensions_list();
    data->context_current = false;
    data->init_ok = false;
    return osx_kill_context();
}

bool RenderWindowOpenGL::apply_context(bool state) {
    if (!data->init_ok)
        return false;
    osx_apply_context(state);
    data->context_current = state;
    return true;
}

bool RenderWindowOpenGL::display_framebuffer() {
    osx_display_framebuffer();
    return false;
}

bool RenderWindowOpenGL::vsync(bool state) {
    osx_vsync(state);
    return true;
}

bool RenderWindowOpenGL::share_ctx(RenderWindow*) {
    return false;
}

int RenderWindowOpenGL::get_api_3d() {
    return data->api_3d;
}

void RenderWindowOpenGL::update_size(int width, int height) {
    data->width = width;
    data->height = height;
    set_size(width, height);
}

namespace {

const char* version_text() {
    return reinterpret_cast<const char*>(glGetString(GL_VERSION));
}

} // namespace

bool RenderWindowOpenGL::get_opengl_version(int* major, int* minor) {
    if (data->gl_major == 0) {
        // Another context's version says nothing of this window.
        if (!is_context_current())
            return false;
        GLint version[2] = {0, 0};
        glGetIntegerv(GL_MAJOR_VERSION, &version[0]);
        glGetIntegerv(GL_MINOR_VERSION, &version[1]);
        if (version[0] < 3) {
            const char* text = version_text();
            if (!text || std::strlen(text) < 3)
                return false;
            version[0] = text[0] - '0';
            version[1] = text[2] - '0';
        }
        data->gl_major = version[0];
        data->gl_minor = version[1];
    }
    if (major)
        *major = data->gl_major;
    if (minor)
        *minor = data->gl_minor;
    return true;
}

bool RenderWindowOpenGL::is_opengl_version_supported(int major, int minor) {
    const std::pair wanted(major, minor);
    int found_major = 0;
    int found_minor = 0;
    if (get_opengl_version(&found_major, &found_minor) &&
        std::pair(found_major, found_minor) >= wanted)
        return true;
    const char* text = is_context_current() ? version_text() : nullptr;
    return text && std::sscanf(text, "%d.%d", &found_major, &found_minor) == 2 &&
           std::pair(found_major, found_minor) >= wanted;
}

bool RenderWindowOpenGL::told_framebuffer_after(const RenderWindowOpenGL* other) const {
    return get_framebuffer_turn() > (other ? other->get_framebuffer_turn() : 0);
}

void* RenderWindowOpenGL::opengl_get_ctx() {
    return osx_get_cgl_ctx();
}

void* RenderWindowOpenGL::d3d_get_device() {
    return nullptr;
}

void* RenderWindowOpenGL::d3d11_get_device_ctx() {
    return nullptr;
}

} // namespace orvex
