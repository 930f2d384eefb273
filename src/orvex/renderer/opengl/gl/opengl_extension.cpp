#include "orvex/renderer/opengl/gl/private/opengl_extension.h"

namespace orvex {

OpenGLExtension::OpenGLExtension(char const* name)
    : name(name ? name : "") {}

char const* OpenGLExtension::get_name() const {
    return name.c_str();
}

bool OpenGLExtension::operator==(OpenGLExtension const& other) const {
    return name == other.name;
}

} // namespace orvex
