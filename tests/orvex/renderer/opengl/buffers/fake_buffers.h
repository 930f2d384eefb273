#pragma once

/// @file
/// A function table of buffers and vertex arrays that writes down what is called, for families that
/// are tested without a context.

#include <string>
#include <vector>

#include "orvex/renderer/opengl/state/private/gl_state.h"

namespace orvex_test {

/// The calls since the last `take_fake_calls`.
inline std::vector<std::string> fake_calls;
/// The name that the next object gets.
inline GLuint next_fake_name = 1;

/// @return the calls, which are forgotten
inline std::vector<std::string> take_fake_calls() {
    std::vector<std::string> taken;
    taken.swap(fake_calls);
    return taken;
}

/// Fills the entries of a table that make, fill, bind and delete buffers and vertex arrays.
inline void serve_fake_buffers(orvex::ORVEX_Renderer_OpenGL_Func& gl) {
    fake_calls.clear();
    next_fake_name = 1;
    gl.glGenBuffers = [](GLsizei, GLuint* names) {
        *names = next_fake_name++;
        fake_calls.push_back("gen buffer " + std::to_string(*names));
    };
    gl.glBindBuffer = [](GLenum, GLuint name) {
        fake_calls.push_back("bind buffer " + std::to_string(name));
    };
    gl.glBufferData = [](GLenum, GLsizeiptr size, const void* data, GLenum usage) {
        fake_calls.push_back("store " + std::to_string(size) + (data ? " filled" : " empty") +
                             (usage == GL_DYNAMIC_DRAW ? " dynamic" : " static"));
    };
    gl.glBufferSubData = [](GLenum, GLintptr offset, GLsizeiptr size, const void*) {
        fake_calls.push_back("upload " + std::to_string(size) + " at " + std::to_string(offset));
    };
    gl.glDeleteBuffers = [](GLsizei, const GLuint* names) {
        fake_calls.push_back("delete buffer " + std::to_string(*names));
    };
    gl.glGenVertexArrays = [](GLsizei, GLuint* names) {
        *names = next_fake_name++;
        fake_calls.push_back("gen array " + std::to_string(*names));
    };
    gl.glBindVertexArray = [](GLuint name) {
        fake_calls.push_back("bind array " + std::to_string(name));
    };
    gl.glDeleteVertexArrays = [](GLsizei, const GLuint* names) {
        fake_calls.push_back("delete array " + std::to_string(*names));
    };
    gl.glEnableVertexAttribArray = [](GLuint index) {
        fake_calls.push_back("enable " + std::to_string(index));
    };
    gl.glDisableVertexAttribArray = [](GLuint index) {
        fake_calls.push_back("disable " + std::to_string(index));
    };
    gl.glVertexAttribPointer = [](GLuint index, GLint dim, GLenum, GLboolean, GLsizei stride,
                                  const void* offset) {
        fake_calls.push_back("point " + std::to_string(index) + " to " + std::to_string(dim) +
                             " floats every " + std::to_string(stride) + " from " +
                             std::to_string(reinterpret_cast<unsigned long>(offset)));
    };
}

} // namespace orvex_test
