#include "fake_gl.h"

#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex_test {

namespace {

FakeGl* current = nullptr;

const char* string_of(GLenum name) {
    if (!current)
        return nullptr;
    if (name == GL_VERSION)
        return current->version;
    return name == GL_EXTENSIONS ? current->extensions : nullptr;
}

void read_integer(GLenum name, GLint* value) {
    if (!current)
        return;
    if (name == GL_MAJOR_VERSION && current->major > 0)
        *value = current->major;
    if (name == GL_MINOR_VERSION && current->major > 0)
        *value = current->minor;
    if (name == GL_NUM_EXTENSIONS)
        *value = static_cast<GLint>(current->indexed.size());
}

const GLubyte* GLAPIENTRY indexed_string(GLenum, GLuint index) {
    return reinterpret_cast<const GLubyte*>(current->indexed.at(index));
}

} // namespace

FakeGl::FakeGl() {
    current = this;
}

FakeGl::~FakeGl() {
    current = nullptr;
}

void* FakeGl::get_string_i() const {
    return reinterpret_cast<void*>(&indexed_string);
}

} // namespace orvex_test

// The program's own definitions go before the library's.
extern "C" {

const GLubyte* GLAPIENTRY glGetString(GLenum name) {
    return reinterpret_cast<const GLubyte*>(orvex_test::string_of(name));
}

void GLAPIENTRY glGetIntegerv(GLenum name, GLint* value) {
    orvex_test::read_integer(name, value);
}

void GLAPIENTRY glFlush() {
    if (orvex_test::current && orvex_test::current->on_flush)
        orvex_test::current->on_flush(orvex_test::current->user_data);
}
}
