#include "orvex/renderer/opengl/textures/private/pixel_packing.h"

#include <GL/gl.h>

#include <algorithm>

#include "orvex/math/private/pixel_math.h"

namespace orvex {

namespace {

unsigned long read(GLenum name) {
    GLint value = 0;
    glGetIntegerv(name, &value);
    return static_cast<unsigned long>(std::max(value, 0));
}

} // namespace

PixelPacking PixelPacking::current() {
    return {std::max(read(GL_PACK_ALIGNMENT), 1UL), read(GL_PACK_ROW_LENGTH),
            read(GL_PACK_SKIP_PIXELS), read(GL_PACK_SKIP_ROWS)};
}

unsigned long PixelPacking::size_of(unsigned long width, unsigned long height,
                                    unsigned long channels) const {
    const unsigned long pixels = std::max(row_length, width) + skip_pixels;
    const unsigned long row = (pixels * channels + alignment - 1) / alignment * alignment;
    return saturating_product(row, height + skip_rows);
}

} // namespace orvex
