#include "orvex/renderer/opengl/textures/private/pixel_packing.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>

#include "orvex/math/private/sizes.h"
#include "orvex/renderer/opengl/window/private/window_platform.h"

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

PixelUnpacking PixelUnpacking::current() {
    // Every context has the entry, so that the address alone is enough.
    using GetIntegerv = void (*)(GLenum name, GLint * value);
    const auto get =
        reinterpret_cast<GetIntegerv>(window_platform().get_proc_address("glGetIntegerv"));
    if (!get)
        return {};
    const auto ask = [get](GLenum name) {
        GLint value = 0;
        get(name, &value);
        return static_cast<unsigned long>(std::max(value, 0));
    };
    return {ask(GL_UNPACK_ROW_LENGTH), ask(GL_UNPACK_SKIP_PIXELS), ask(GL_UNPACK_SKIP_ROWS),
            ask(GL_PIXEL_UNPACK_BUFFER_BINDING) != 0};
}

unsigned long PixelUnpacking::reach_of(unsigned long width, unsigned long height,
                                       unsigned long pixel_size, unsigned long alignment) const {
    if (width == 0 || height == 0)
        return 0;
    const unsigned long pixels = row_length != 0 ? row_length : width;
    const unsigned long row_bytes = saturating_product(pixels, pixel_size);
    const unsigned long rows = skip_rows + height - 1;
    const unsigned long padding = (alignment - row_bytes % alignment) % alignment;
    const unsigned long before = saturating_product(saturating_sum(row_bytes, padding), rows);
    return saturating_sum(before, saturating_product(skip_pixels + width, pixel_size));
}

} // namespace orvex
