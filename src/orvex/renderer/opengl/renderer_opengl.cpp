// The back end's own life: what it starts and stops with, and its windows. Everything else is
// forwarded to a family, in renderer_opengl_<family>.cpp beside that family.

#include "orvex/renderer/opengl/private/renderer_opengl.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "orvex/base/log_mgr.h"
#include "orvex/renderer/opengl/gl/private/gl_debug.h"
#include "orvex/renderer/opengl/window/private/render_window_opengl.h"

namespace orvex {

RendererOpenGL::RendererOpenGL()
    : GlState(this)
    , rasterizer_state(states.live)
    , pending_rasterizer_state(states.pending)
    , meshes(*this)
    , points(*this)
    , polylines(*this)
    , buffers(*this)
    , uniform_buffers(*this)
    , frame(*this)
    , states(*this)
    , fixed_pipeline(*this)
    , shadows(*this)
    , queries(*this) {
    ctx.windows = &render_windows;
    set_name("plugin_core_opengl");
    set_description("OpenGL renderer (OpenGL 2, 3.x and 4.x supported).");
    set_author("orvex");
    set_version(0, 1, 0);
    set_type(PLUGIN_TYPE_RENDERER);
    set_api_name("OpenGL");
    set_api_type(1);
    char build_info[128] = {};
    std::snprintf(build_info, sizeof(build_info), "BUILD_DATE: [%s] - BUILD_TIME: [%s]", __DATE__,
                  __TIME__);
    set_build_info(build_info);
}

RendererOpenGL::~RendererOpenGL() {
    if (started)
        disable_client_arrays();
    RendererOpenGL::kill_all_render_windows();
}

void RendererOpenGL::log_life_cycle(const char* operation) {
    LogMgr::get()->tracef_debug("plugin %s (id=%d) - %s()", get_name(), getid(), operation);
}

bool RendererOpenGL::initialize() {
    if (!initialized) {
        log_life_cycle("initialize");
        initialized = true;
    }
    return true;
}

bool RendererOpenGL::terminate() {
    if (initialized) {
        log_life_cycle("terminate");
        initialized = false;
    }
    return true;
}

namespace {

bool is_core_version_text(const char* version, const GlQuirks& quirks) {
    const char* const word = quirks.profile_word_case ? "ompatibility" : "Compatibility";
    return version && !std::strstr(version, word);
}

} // namespace

bool RendererOpenGL::start() {
    if (started)
        return true;
    log_life_cycle("start");
    update_thread();
    quirks = GlQuirks::from_environment();
    gl_major = 0;
    gl_minor = 0;
    get_opengl_version(&gl_major, &gl_minor);
    gl2_context = gl_major == 2;
    started = gl.init(display_gl_func_ptr);
    begin_context();
    start_gl_messages();
    start_gl_labels(gl);
    gl.core_profile = gl_major >= 3 && is_core_version_text(get_api_version(), quirks);
    reset_render_states();
    return started;
}

bool RendererOpenGL::start_v2(bool display_function_pointers) {
    display_gl_func_ptr = display_function_pointers;
    return start();
}

bool RendererOpenGL::stop() {
    if (!started)
        return true;
    log_life_cycle("stop");
    disable_client_arrays();
    stop_gl_messages();
    clear_entries();
    started = false;
    return true;
}

bool RendererOpenGL::keep_binds(bool state) {
    const bool was_keeping = bound().is_keeping();
    if (state && can_keep_binds && get_elided_binds_state())
        bound().begin();
    else
        bound().end();
    note_kept_binds(bound().is_keeping());
    return was_keeping;
}

RenderWindow* RendererOpenGL::create_render_window() {
    render_windows.push_back(std::make_unique<RenderWindowOpenGL>());
    return render_windows.back().get();
}

bool RendererOpenGL::kill_render_window(RenderWindow* window) {
    const auto found = std::find_if(render_windows.begin(), render_windows.end(),
                                    [window](const auto& own) { return own.get() == window; });
    if (found == render_windows.end())
        return false;
    window->terminate();
    render_windows.erase(found);
    return true;
}

bool RendererOpenGL::kill_all_render_windows() {
    // One after the other: a window is gone, from the list too, before the next one is terminated.
    while (!render_windows.empty()) {
        render_windows.front()->terminate();
        render_windows.erase(render_windows.begin());
    }
    return false;
}

} // namespace orvex
