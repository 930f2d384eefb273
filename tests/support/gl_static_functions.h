#pragma once

/// @file
/// The OpenGL entry points that the engine links directly, with the names of their arguments, so
/// that the recorder can define and forward each of them.
///
/// X(result, name, parameters, arguments)

// clang-format off
#define ORVEX_GL_STATIC_FUNCTIONS(X) \
    X(void, glBegin, (GLenum mode), (mode)) \
    X(void, glBindTexture, (GLenum target, GLuint texture), (target, texture)) \
    X(void, glBlendFunc, (GLenum sfactor, GLenum dfactor), (sfactor, dfactor)) \
    X(void, glClear, (GLbitfield mask), (mask)) \
    X(void, glClearColor, (GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha), (red, green, blue, alpha)) \
    X(void, glClearDepth, (GLclampd depth), (depth)) \
    X(void, glColor4f, (GLfloat red, GLfloat green, GLfloat blue, GLfloat alpha), (red, green, blue, alpha)) \
    X(void, glColor4fv, (const GLfloat* v), (v)) \
    X(void, glColorMask, (GLboolean red, GLboolean green, GLboolean blue, GLboolean alpha), (red, green, blue, alpha)) \
    X(void, glColorPointer, (GLint size, GLenum type, GLsizei stride, const void* ptr), (size, type, stride, ptr)) \
    X(void, glCullFace, (GLenum mode), (mode)) \
    X(void, glDeleteTextures, (GLsizei n, const GLuint* textures), (n, textures)) \
    X(void, glDepthFunc, (GLenum func), (func)) \
    X(void, glDepthMask, (GLboolean flag), (flag)) \
    X(void, glDisable, (GLenum cap), (cap)) \
    X(void, glDisableClientState, (GLenum cap), (cap)) \
    X(void, glDrawArrays, (GLenum mode, GLint first, GLsizei count), (mode, first, count)) \
    X(void, glDrawBuffer, (GLenum mode), (mode)) \
    X(void, glDrawElements, (GLenum mode, GLsizei count, GLenum type, const void* indices), (mode, count, type, indices)) \
    X(void, glEnable, (GLenum cap), (cap)) \
    X(void, glEnableClientState, (GLenum cap), (cap)) \
    X(void, glEnd, (void), ()) \
    X(void, glFinish, (void), ()) \
    X(void, glFlush, (void), ()) \
    X(void, glFrontFace, (GLenum mode), (mode)) \
    X(void, glGenTextures, (GLsizei n, GLuint* textures), (n, textures)) \
    X(GLenum, glGetError, (void), ()) \
    X(void, glGetFloatv, (GLenum pname, GLfloat* params), (pname, params)) \
    X(void, glGetIntegerv, (GLenum pname, GLint* params), (pname, params)) \
    X(void, glGetPointerv, (GLenum pname, GLvoid** params), (pname, params)) \
    X(const GLubyte*, glGetString, (GLenum name), (name)) \
    X(void, glGetTexImage, (GLenum target, GLint level, GLenum format, GLenum type, void* pixels), (target, level, format, type, pixels)) \
    X(void, glLightfv, (GLenum light, GLenum pname, const GLfloat* params), (light, pname, params)) \
    X(void, glLineStipple, (GLint factor, GLushort pattern), (factor, pattern)) \
    X(void, glLineWidth, (GLfloat width), (width)) \
    X(void, glLoadIdentity, (void), ()) \
    X(void, glLoadMatrixf, (const GLfloat* m), (m)) \
    X(void, glMaterialf, (GLenum face, GLenum pname, GLfloat param), (face, pname, param)) \
    X(void, glMaterialfv, (GLenum face, GLenum pname, const GLfloat* params), (face, pname, params)) \
    X(void, glMatrixMode, (GLenum mode), (mode)) \
    X(void, glMultMatrixf, (const GLfloat* m), (m)) \
    X(void, glNormalPointer, (GLenum type, GLsizei stride, const void* ptr), (type, stride, ptr)) \
    X(void, glPixelStorei, (GLenum pname, GLint param), (pname, param)) \
    X(void, glPolygonMode, (GLenum face, GLenum mode), (face, mode)) \
    X(void, glPolygonOffset, (GLfloat factor, GLfloat units), (factor, units)) \
    X(void, glPopAttrib, (void), ()) \
    X(void, glPushAttrib, (GLbitfield mask), (mask)) \
    X(void, glRasterPos4f, (GLfloat x, GLfloat y, GLfloat z, GLfloat w), (x, y, z, w)) \
    X(void, glReadBuffer, (GLenum mode), (mode)) \
    X(void, glReadPixels, (GLint x, GLint y, GLsizei width, GLsizei height, GLenum format, GLenum type, void* pixels), (x, y, width, height, format, type, pixels)) \
    X(void, glScissor, (GLint x, GLint y, GLsizei width, GLsizei height), (x, y, width, height)) \
    X(void, glTexCoordPointer, (GLint size, GLenum type, GLsizei stride, const void* ptr), (size, type, stride, ptr)) \
    X(void, glTexImage1D, (GLenum target, GLint level, GLint internalFormat, GLsizei width, GLint border, GLenum format, GLenum type, const void* pixels), (target, level, internalFormat, width, border, format, type, pixels)) \
    X(void, glTexImage2D, (GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height, GLint border, GLenum format, GLenum type, const void* pixels), (target, level, internalFormat, width, height, border, format, type, pixels)) \
    X(void, glTexParameterf, (GLenum target, GLenum pname, GLfloat param), (target, pname, param)) \
    X(void, glTexParameteri, (GLenum target, GLenum pname, GLint param), (target, pname, param)) \
    X(void, glTexSubImage1D, (GLenum target, GLint level, GLint xoffset, GLsizei width, GLenum format, GLenum type, const void* pixels), (target, level, xoffset, width, format, type, pixels)) \
    X(void, glTexSubImage2D, (GLenum target, GLint level, GLint xoffset, GLint yoffset, GLsizei width, GLsizei height, GLenum format, GLenum type, const void* pixels), (target, level, xoffset, yoffset, width, height, format, type, pixels)) \
    X(void, glVertex4fv, (const GLfloat* v), (v)) \
    X(void, glVertexPointer, (GLint size, GLenum type, GLsizei stride, const void* ptr), (size, type, stride, ptr)) \
    X(void, glViewport, (GLint x, GLint y, GLsizei width, GLsizei height), (x, y, width, height))
// clang-format on
