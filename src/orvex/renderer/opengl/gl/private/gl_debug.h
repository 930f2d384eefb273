#pragma once

/// @file
/// Help in the search for mistakes: contexts that check their calls, the driver's messages in the
/// log, and names on GL objects for frame debuggers.
///
/// All of it is off, and no call is made for it, unless the environment says otherwise:
/// `ORVEX_GL_DEBUG=1`. A context without KHR_debug goes on as if it were off.

#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex {

struct ORVEX_Renderer_OpenGL_Func;

/// The entry points that only debugging fetches: X(result, name, parameters).
// clang-format off
#define ORVEX_GL_DEBUG_FUNCTIONS(X) \
    X(void, glDebugMessageCallback, (GLDEBUGPROC callback, const void* userParam)) \
    X(void, glObjectLabel, (GLenum identifier, GLuint name, GLsizei length, const GLchar* label))
// clang-format on

/// Whether `ORVEX_GL_DEBUG` is set, and neither empty nor "0".
bool gl_debug_wanted();

/// Lets the current context send its messages to the log, each while the call that causes it is
/// still running. Does nothing if debugging isn't wanted, without KHR_debug, and in a context whose
/// host listens already. May run more than once.
void start_gl_messages();
/// Undoes `start_gl_messages` in the current context.
void stop_gl_messages();

/// Lets `label_gl_object` work through this table, made for the current context, if debugging is
/// wanted and the context can.
void start_gl_labels(ORVEX_Renderer_OpenGL_Func& gl);

/// Names a GL object after the node that it is made for, and after its use: "teapot (vertices)".
/// Without a node the use stands alone. Does nothing where `start_gl_labels` didn't succeed.
/// @param kind  GL_BUFFER, GL_TEXTURE and so on
/// @param id    an object that exists: a generated name has to have been bound
void label_gl_object(const ORVEX_Renderer_OpenGL_Func& gl, GLenum kind, GLuint id, const char* use);

/// One message of the driver, as it stands in the log: high severity as an error, medium as a
/// warning, low as an information, a notification as a debug line. Breaks in the text become
/// spaces.
void APIENTRY log_gl_message(GLenum source, GLenum type, GLuint id, GLenum severity, GLsizei length,
                             const GLchar* text, const void*);

} // namespace orvex
