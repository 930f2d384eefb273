#pragma once

/// @file
/// Parameters of the texture that is bound to a target, as loads and render targets set them.

#include <GL/gl.h>
#include <GL/glext.h>

namespace orvex {

inline void set_texture_filters(GLenum target, GLint magnification, GLint minification) {
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, magnification);
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, minification);
}

/// A texture of one level, which is complete without a mip chain.
inline void limit_to_base_level(GLenum target) {
    glTexParameteri(target, GL_TEXTURE_BASE_LEVEL, 0);
    glTexParameteri(target, GL_TEXTURE_MAX_LEVEL, 0);
}

} // namespace orvex
