#pragma once

/// @file
/// The OpenGL entry points that are fetched at run time.

#include <GL/gl.h>
#include <GL/glext.h>

#include "orvex/renderer/opengl/gl/private/gl_function_table.h"

namespace orvex {

/// Whether every look-up of an entry point is told in the log and on standard output.
extern bool g_orvex_display_gl_func_ptr;

/// Returns the address of an OpenGL entry point, or null.
///
/// A name of the function table is served only if the context that is current on the calling thread
/// supports it, by its version or its extension list; where the table says so, by an entry with
/// another suffix and the same signature. Any other name is served if the OpenGL library exports
/// it. Without a current context, and for a null name, the result is null.
void* _orvex_get_proc_address(const char* name);

/// The entry points, each in a field named after it. A field is null where the running context
/// doesn't have the function; whoever calls it asks first.
///
/// `RendererOpenGL` holds the one table; render targets get a pointer to it. All windows share it:
/// it is made for the context that is current when the renderer starts.
struct ORVEX_Renderer_OpenGL_Func {
    bool ready;                        ///< `init` has run
    bool core_profile;                 ///< of the context at the renderer's start
    PFNGLOBJECTLABELPROC object_label; ///< while objects are labelled, see `start_gl_labels`

    // NOLINTBEGIN(bugprone-macro-parentheses): the arguments are types and declarators.
#define ORVEX_GL_FIELD(result, name, parameters, support) result(APIENTRY* name) parameters;
    ORVEX_GL_FUNCTIONS(ORVEX_GL_FIELD)
#undef ORVEX_GL_FIELD
    // NOLINTEND(bugprone-macro-parentheses)

    /// An empty table.
    ORVEX_Renderer_OpenGL_Func();

    /// Makes every field false or null.
    void clear();

    /// Fetches every entry point, in the order of the fields.
    /// @param display  told in `g_orvex_display_gl_func_ptr`
    /// @return true, whatever was found
    bool init(bool display);
};

/// Whether the context has all of these entry points. An operation of several calls asks for all of
/// them before its first, so that nothing is left half made.
template<class... Entries>
constexpr bool has_entries(Entries... entries) {
    return (... && entries);
}

} // namespace orvex
