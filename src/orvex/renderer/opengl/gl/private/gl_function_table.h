#pragma once

/// @file
/// The one table of OpenGL entry points that are fetched by name. Declaration, loading and the
/// recording of calls in tests all expand it.
///
/// X(result, name, parameters, support): the rows stand in the order of the fields; `support` names
/// a list of sources in gl_support.cpp, which tells since when a context has the entry.

// clang-format off
#define ORVEX_GL_FUNCTIONS(X) \
    /* Instancing */ \
    X(void, glDrawArraysInstancedARB, (GLenum mode, GLint first, GLsizei count, GLsizei primcount), instanced_draw) \
    X(void, glDrawElementsInstancedARB, (GLenum mode, GLsizei count, GLenum type, const void* indices, GLsizei primcount), instanced_draw) \
    X(void, glVertexAttribDivisorARB, (GLuint index, GLuint divisor), instanced_arrays) \
    /* Buffer objects */ \
    X(void, glDeleteBuffers, (GLsizei n, const GLuint* buffers), buffer_objects) \
    X(void, glGenBuffers, (GLsizei n, GLuint* buffers), buffer_objects) \
    X(void, glBindBuffer, (GLenum target, GLuint buffer), buffer_objects) \
    X(void, glBufferData, (GLenum target, GLsizeiptr size, const void* data, GLenum usage), buffer_objects) \
    X(void, glBufferSubData, (GLenum target, GLintptr offset, GLsizeiptr size, const void* data), buffer_objects) \
    X(void, glGetBufferSubData, (GLenum target, GLintptr offset, GLsizeiptr size, void* data), buffer_objects) \
    X(void*, glMapBuffer, (GLenum target, GLenum access), buffer_objects) \
    X(GLboolean, glUnmapBuffer, (GLenum target), buffer_objects) \
    X(void, glGetBufferParameteriv, (GLenum target, GLenum pname, GLint* params), buffer_objects) \
    X(void, glBindBufferBase, (GLenum target, GLuint index, GLuint buffer), indexed_buffers) \
    X(void*, glMapBufferRange, (GLenum target, GLintptr offset, GLsizeiptr length, GLbitfield access), map_range) \
    X(void, glFlushMappedBufferRange, (GLenum target, GLintptr offset, GLsizeiptr length), map_range) \
    /* Programs */ \
    X(GLuint, glCreateProgram, (void), core_2_0) \
    X(void, glDeleteProgram, (GLuint program), core_2_0) \
    X(void, glUseProgram, (GLuint program), core_2_0) \
    X(void, glAttachShader, (GLuint program, GLuint shader), core_2_0) \
    X(void, glDetachShader, (GLuint program, GLuint shader), core_2_0) \
    X(void, glLinkProgram, (GLuint program), core_2_0) \
    X(void, glGetProgramiv, (GLuint program, GLenum pname, GLint* params), core_2_0) \
    X(void, glValidateProgram, (GLuint program), core_2_0) \
    X(void, glGetShaderInfoLog, (GLuint shader, GLsizei bufSize, GLsizei* length, GLchar* infoLog), core_2_0) \
    X(GLint, glGetUniformLocation, (GLuint program, const GLchar* name), core_2_0) \
    /* Uniforms by type */ \
    X(void, glUniform1i, (GLint location, GLint v0), core_2_0) \
    X(void, glUniform2i, (GLint location, GLint v0, GLint v1), core_2_0) \
    X(void, glUniform3i, (GLint location, GLint v0, GLint v1, GLint v2), core_2_0) \
    X(void, glUniform4i, (GLint location, GLint v0, GLint v1, GLint v2, GLint v3), core_2_0) \
    X(void, glUniform1iv, (GLint location, GLsizei count, const GLint* value), core_2_0) \
    X(void, glUniform2iv, (GLint location, GLsizei count, const GLint* value), core_2_0) \
    X(void, glUniform3iv, (GLint location, GLsizei count, const GLint* value), core_2_0) \
    X(void, glUniform4iv, (GLint location, GLsizei count, const GLint* value), core_2_0) \
    X(void, glUniform1f, (GLint location, GLfloat v0), core_2_0) \
    X(void, glUniform2f, (GLint location, GLfloat v0, GLfloat v1), core_2_0) \
    X(void, glUniform3f, (GLint location, GLfloat v0, GLfloat v1, GLfloat v2), core_2_0) \
    X(void, glUniform4f, (GLint location, GLfloat v0, GLfloat v1, GLfloat v2, GLfloat v3), core_2_0) \
    X(void, glUniform1d, (GLint location, GLdouble x), double_uniforms) \
    X(void, glUniform2d, (GLint location, GLdouble x, GLdouble y), double_uniforms) \
    X(void, glUniform3d, (GLint location, GLdouble x, GLdouble y, GLdouble z), double_uniforms) \
    X(void, glUniform4d, (GLint location, GLdouble x, GLdouble y, GLdouble z, GLdouble w), double_uniforms) \
    X(void, glUniform1fv, (GLint location, GLsizei count, const GLfloat* value), core_2_0) \
    X(void, glUniform2fv, (GLint location, GLsizei count, const GLfloat* value), core_2_0) \
    X(void, glUniform3fv, (GLint location, GLsizei count, const GLfloat* value), core_2_0) \
    X(void, glUniform4fv, (GLint location, GLsizei count, const GLfloat* value), core_2_0) \
    X(void, glUniform1dv, (GLint location, GLsizei count, const GLdouble* value), double_uniforms) \
    X(void, glUniform2dv, (GLint location, GLsizei count, const GLdouble* value), double_uniforms) \
    X(void, glUniform3dv, (GLint location, GLsizei count, const GLdouble* value), double_uniforms) \
    X(void, glUniform4dv, (GLint location, GLsizei count, const GLdouble* value), double_uniforms) \
    X(void, glUniformMatrix3fv, (GLint location, GLsizei count, GLboolean transpose, const GLfloat* value), core_2_0) \
    X(void, glUniformMatrix4fv, (GLint location, GLsizei count, GLboolean transpose, const GLfloat* value), core_2_0) \
    /* Attributes */ \
    X(GLint, glGetAttribLocation, (GLuint program, const GLchar* name), core_2_0) \
    X(void, glVertexAttrib1f, (GLuint index, GLfloat x), core_2_0) \
    X(void, glVertexAttrib1fv, (GLuint index, const GLfloat* v), core_2_0) \
    X(void, glVertexAttrib2fv, (GLuint index, const GLfloat* v), core_2_0) \
    X(void, glVertexAttrib3fv, (GLuint index, const GLfloat* v), core_2_0) \
    X(void, glVertexAttrib4fv, (GLuint index, const GLfloat* v), core_2_0) \
    X(void, glEnableVertexAttribArray, (GLuint index), core_2_0) \
    X(void, glDisableVertexAttribArray, (GLuint index), core_2_0) \
    X(void, glBindAttribLocation, (GLuint program, GLuint index, const GLchar* name), core_2_0) \
    X(GLboolean, glIsProgram, (GLuint program), core_2_0) \
    /* Program log, unsigned uniforms */ \
    X(void, glGetProgramInfoLog, (GLuint program, GLsizei bufSize, GLsizei* length, GLchar* infoLog), core_2_0) \
    X(void, glUniform1ui, (GLint location, GLuint v0), integer_shaders) \
    X(void, glUniform2ui, (GLint location, GLuint v0, GLuint v1), integer_shaders) \
    X(void, glUniform3ui, (GLint location, GLuint v0, GLuint v1, GLuint v2), integer_shaders) \
    X(void, glUniform4ui, (GLint location, GLuint v0, GLuint v1, GLuint v2, GLuint v3), integer_shaders) \
    /* Attribute pointers */ \
    X(void, glVertexAttribIPointer, (GLuint index, GLint size, GLenum type, GLsizei stride, const void* pointer), integer_shaders) \
    X(void, glVertexAttribPointer, (GLuint index, GLint size, GLenum type, GLboolean normalized, GLsizei stride, const void* pointer), core_2_0) \
    /* Shaders */ \
    X(GLuint, glCreateShader, (GLenum type), core_2_0) \
    X(void, glDeleteShader, (GLuint shader), core_2_0) \
    X(void, glShaderSource, (GLuint shader, GLsizei count, const GLchar* const* string, const GLint* length), core_2_0) \
    X(void, glCompileShader, (GLuint shader), core_2_0) \
    X(void, glGetShaderiv, (GLuint shader, GLenum pname, GLint* params), core_2_0) \
    /* Texture units, drawing, blending, mipmaps */ \
    X(void, glClientActiveTexture, (GLenum texture), compatibility_1_3) \
    X(void, glActiveTexture, (GLenum texture), core_1_3) \
    X(void, glDrawRangeElements, (GLenum mode, GLuint start, GLuint end, GLsizei count, GLenum type, const void* indices), core_1_2) \
    X(void, glSampleCoverage, (GLfloat value, GLboolean invert), core_1_3) \
    X(void, glBlendEquation, (GLenum mode), blend_equation) \
    X(void, glGenerateMipmap, (GLenum target), framebuffers) \
    /* Clearing of buffers */ \
    X(void, glClearBufferiv, (GLenum buffer, GLint drawbuffer, const GLint* value), core_3_0) \
    X(void, glClearBufferuiv, (GLenum buffer, GLint drawbuffer, const GLuint* value), core_3_0) \
    X(void, glClearBufferfv, (GLenum buffer, GLint drawbuffer, const GLfloat* value), core_3_0) \
    X(void, glClearBufferfi, (GLenum buffer, GLint drawbuffer, GLfloat depth, GLint stencil), core_3_0) \
    /* Framebuffers and renderbuffers */ \
    X(void, glBindFramebuffer, (GLenum target, GLuint framebuffer), framebuffers) \
    X(void, glGenFramebuffers, (GLsizei n, GLuint* framebuffers), framebuffers) \
    X(void, glDeleteFramebuffers, (GLsizei n, const GLuint* framebuffers), framebuffers) \
    X(void, glGenRenderbuffers, (GLsizei n, GLuint* renderbuffers), framebuffers) \
    X(void, glBindRenderbuffer, (GLenum target, GLuint renderbuffer), framebuffers) \
    X(void, glRenderbufferStorage, (GLenum target, GLenum internalformat, GLsizei width, GLsizei height), framebuffers) \
    X(void, glFramebufferRenderbuffer, (GLenum target, GLenum attachment, GLenum renderbuffertarget, GLuint renderbuffer), framebuffers) \
    X(void, glDeleteRenderbuffers, (GLsizei n, const GLuint* renderbuffers), framebuffers) \
    X(void, glFramebufferTexture2D, (GLenum target, GLenum attachment, GLenum textarget, GLuint texture, GLint level), framebuffers) \
    X(GLenum, glCheckFramebufferStatus, (GLenum target), framebuffers) \
    X(void, glBlitFramebuffer, (GLint srcX0, GLint srcY0, GLint srcX1, GLint srcY1, GLint dstX0, GLint dstY0, GLint dstX1, GLint dstY1, GLbitfield mask, GLenum filter), framebuffers) \
    X(void, glRenderbufferStorageMultisample, (GLenum target, GLsizei samples, GLenum internalformat, GLsizei width, GLsizei height), framebuffers) \
    X(void, glDrawBuffers, (GLsizei n, const GLenum* bufs), core_2_0) \
    /* Compute and images */ \
    X(void, glDispatchCompute, (GLuint num_groups_x, GLuint num_groups_y, GLuint num_groups_z), compute) \
    X(void, glDispatchComputeIndirect, (GLintptr indirect), compute) \
    X(void, glBindImageTexture, (GLuint unit, GLuint texture, GLint level, GLboolean layered, GLint layer, GLenum access, GLenum format), images) \
    X(void, glMemoryBarrier, (GLbitfield barriers), images) \
    /* Vertex array objects */ \
    X(void, glBindVertexArray, (GLuint array), vertex_arrays) \
    X(void, glDeleteVertexArrays, (GLsizei n, const GLuint* arrays), vertex_arrays) \
    X(void, glGenVertexArrays, (GLsizei n, GLuint* arrays), vertex_arrays) \
    X(GLboolean, glIsVertexArray, (GLuint array), vertex_arrays) \
    /* Multisample textures, extension strings */ \
    X(void, glTexImage2DMultisample, (GLenum target, GLsizei samples, GLenum internalformat, GLsizei width, GLsizei height, GLboolean fixedsamplelocations), multisample_textures) \
    X(const GLubyte *, glGetStringi, (GLenum name, GLuint index), core_3_0) \
    /* Bindless textures */ \
    X(GLuint64, glGetTextureHandleARB, (GLuint texture), bindless) \
    X(GLuint64, glGetTextureSamplerHandleARB, (GLuint texture, GLuint sampler), bindless) \
    X(void, glMakeTextureHandleResidentARB, (GLuint64 handle), bindless) \
    X(void, glMakeTextureHandleNonResidentARB, (GLuint64 handle), bindless) \
    X(GLuint64, glGetImageHandleARB, (GLuint texture, GLint level, GLboolean layered, GLint layer, GLenum format), bindless) \
    X(void, glMakeImageHandleResidentARB, (GLuint64 handle, GLenum access), bindless) \
    X(void, glMakeImageHandleNonResidentARB, (GLuint64 handle), bindless) \
    X(void, glUniformHandleui64ARB, (GLint location, GLuint64 value), bindless) \
    X(void, glUniformHandleui64vARB, (GLint location, GLsizei count, const GLuint64* value), bindless) \
    X(void, glProgramUniformHandleui64ARB, (GLuint program, GLint location, GLuint64 value), bindless) \
    X(void, glProgramUniformHandleui64vARB, (GLuint program, GLint location, GLsizei count, const GLuint64* values), bindless) \
    X(GLboolean, glIsTextureHandleResidentARB, (GLuint64 handle), bindless) \
    X(GLboolean, glIsImageHandleResidentARB, (GLuint64 handle), bindless) \
    X(void, glVertexAttribL1ui64ARB, (GLuint index, GLuint64EXT x), bindless) \
    X(void, glVertexAttribL1ui64vARB, (GLuint index, const GLuint64EXT* v), bindless) \
    X(void, glGetVertexAttribLui64vARB, (GLuint index, GLenum pname, GLuint64EXT* params), bindless) \
    /* Uniform blocks, indexed queries */ \
    X(GLuint, glGetUniformBlockIndex, (GLuint program, const GLchar* uniformBlockName), uniform_blocks) \
    X(void, glGetActiveUniformBlockiv, (GLuint program, GLuint uniformBlockIndex, GLenum pname, GLint* params), uniform_blocks) \
    X(void, glUniformBlockBinding, (GLuint program, GLuint uniformBlockIndex, GLuint uniformBlockBinding), uniform_blocks) \
    X(void, glGetIntegeri_v, (GLenum target, GLuint index, GLint* data), indexed_buffers)
// clang-format on
