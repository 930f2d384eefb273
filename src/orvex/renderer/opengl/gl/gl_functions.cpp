// The prototypes let the compiler compare every row of the table with the real signature.
#define GL_GLEXT_PROTOTYPES

#include "orvex/renderer/opengl/gl/private/gl_functions.h"

#include <cstdio>
#include <string>
#include <type_traits>

#include "orvex/base/log_mgr.h"
#include "orvex/platform/private/loaded_library.h"
#include "orvex/renderer/opengl/gl/private/gl_support.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

namespace orvex {

bool g_orvex_display_gl_func_ptr = false;

#define ORVEX_GL_CHECK(result, name, parameters, support)                                          \
    static_assert(std::is_same_v<decltype(ORVEX_Renderer_OpenGL_Func::name), decltype(&::name)>);
ORVEX_GL_FUNCTIONS(ORVEX_GL_CHECK)
#undef ORVEX_GL_CHECK

// A name with a suffix may be served by an entry without it.
static_assert(
    std::is_same_v<decltype(&::glDrawArraysInstancedARB), decltype(&::glDrawArraysInstanced)>);
static_assert(
    std::is_same_v<decltype(&::glDrawElementsInstancedARB), decltype(&::glDrawElementsInstanced)>);
static_assert(
    std::is_same_v<decltype(&::glVertexAttribDivisorARB), decltype(&::glVertexAttribDivisor)>);

namespace {

bool is_exported(const char* name) {
    static const LoadedLibrary library("libOpenGL.so.0");
    void* address = nullptr;
    library.look_up(name, address);
    return address;
}

void* find_entry(const char* name, const GlCapabilities& capabilities) {
    if (capabilities.major == 0)
        return nullptr;
    if (is_gl_table_name(name)) {
        const std::string served = choose_gl_entry(name, capabilities);
        return served.empty() ? nullptr : window_platform().get_proc_address(served.c_str());
    }
    return is_exported(name) ? window_platform().get_proc_address(name) : nullptr;
}

void tell(const char* name, bool found) {
    char line[256];
    std::snprintf(line, sizeof(line), "OpenGL function pointer - %s %s", name,
                  found ? "FETCHED OK." : "NOT AVAILABLE!");
    LogMgr::get()->tracef("%s", line);
    std::printf("\n%s", line);
}

void* fetch(const char* name, const GlCapabilities& capabilities) {
    void* const address = find_entry(name, capabilities);
    if (g_orvex_display_gl_func_ptr)
        tell(name, address);
    return address;
}

} // namespace

void* _orvex_get_proc_address(const char* name) {
    return name ? fetch(name, read_gl_capabilities()) : nullptr;
}

ORVEX_Renderer_OpenGL_Func::ORVEX_Renderer_OpenGL_Func() {
    clear();
}

void ORVEX_Renderer_OpenGL_Func::clear() {
    ready = false;
    core_profile = false;
    object_label = nullptr;
#define ORVEX_GL_CLEAR(result, name, parameters, support) name = nullptr;
    ORVEX_GL_FUNCTIONS(ORVEX_GL_CLEAR)
#undef ORVEX_GL_CLEAR
}

bool ORVEX_Renderer_OpenGL_Func::init(bool display) {
    g_orvex_display_gl_func_ptr = display;
    // Read once: the capabilities of the context don't change between two names.
    const GlCapabilities capabilities = read_gl_capabilities();
    // NOLINTBEGIN(bugprone-macro-parentheses): the argument is a type.
#define ORVEX_GL_FETCH(result, name, parameters, support)                                          \
    name = reinterpret_cast<result(APIENTRY*) parameters>(fetch(#name, capabilities));
    ORVEX_GL_FUNCTIONS(ORVEX_GL_FETCH)
#undef ORVEX_GL_FETCH
    // NOLINTEND(bugprone-macro-parentheses)
    ready = true;
    return true;
}

} // namespace orvex
