#include "orvex/renderer/opengl/gl/private/opengl_extension.h"

namespace orvex {

OpenGLExtension::OpenGLExtension(const char* name)
    : name(name ? name : "") {}

const char* OpenGLExtension::get_name() const {
    return name.c_str();
}

bool OpenGLExtension::operator==(const OpenGLExtension& other) const {
    return name == other.name;
}

} // namespace orvex
