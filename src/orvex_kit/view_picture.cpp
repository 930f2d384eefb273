// Pictures of what a view shows, from its surface or from its target.

#include "orvex_kit/private/view_data.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include <orvex/renderer/render_target.h>
#include <orvex/renderer/renderer.h>

namespace orvex::kit {

namespace {

/// Pixels in memory, four bytes each.
struct Rows {
    unsigned char* top;
    std::ptrdiff_t row_bytes;
    int width;
    int height;

    unsigned char* row(int y) const { return top + row_bytes * y; }
    std::ptrdiff_t needed() const { return static_cast<std::ptrdiff_t>(width) * 4; }
    /// Whether nothing lies between them, in whatever order.
    bool are_dense() const { return std::abs(row_bytes) == needed(); }
    /// Where they begin in memory.
    unsigned char* begin() const { return row_bytes > 0 ? top : row(height - 1); }
};

/// Colours that are multiplied by their alpha become straight.
void straighten(unsigned char* pixel, int count, bool is_opaque) {
    for (int x = 0; x < count; ++x, pixel += 4) {
        const int alpha = is_opaque ? 255 : pixel[3];
        pixel[3] = static_cast<std::uint8_t>(alpha);
        for (int i = 0; alpha < 255 && i < 3; ++i)
            pixel[i] = static_cast<std::uint8_t>(
                alpha == 0 ? 0 : std::min((pixel[i] * 255 + alpha / 2) / alpha, 255));
    }
}

/// The renderer gives the last row first.
void turn_over(const Rows& rows) {
    for (int top = 0, bottom = rows.height - 1; top < bottom; ++top, --bottom)
        std::swap_ranges(rows.row(top), rows.row(top) + rows.needed(), rows.row(bottom));
}

} // namespace

bool View::Data::make_readable() {
    if (!readable)
        readable = context->renderer->create_render_target();
    return readable->get_fbo() != 0 ||
           readable->create_target(width, height, PF_RGBA_U8, false, false, true, 0);
}

/// What was drawn, by a target of one sample a pixel: the surface of a host's may have several, or
/// no alpha.
bool View::Data::read_target(unsigned char* pixels) {
    if (!make_readable())
        return false;
    orvex::Renderer& renderer = *context->renderer;
    if (target && !is_opaque())
        resolve(readable->get_fbo());
    else
        renderer.fbo_blit(0, 0, 0, width, height, readable->get_fbo(), 0, 0, width, height, true,
                          false);
    const bool has_read = readable->read_color_pixmap_rgba_u8(pixels);
    renderer.fbo_bind(0);
    return has_read;
}

void View::Data::read_surface(unsigned char* pixels) {
    orvex::Renderer& renderer = *context->renderer;
    int x = 0, y = 0, across = 0, down = 0;
    renderer.get_viewport(&x, &y, &across, &down);
    renderer.set_viewport(0, 0, width, height);
    renderer.get_color_buffer(pixels);
    renderer.set_viewport(x, y, across, down);
}

/// Into memory without gaps, the last row first.
Outcome View::Data::read_pixels(unsigned char* pixels) {
    const bool is_target_wanted = context->is_adopted || (is_window && target && !is_opaque());
    if (!is_target_wanted)
        read_surface(pixels);
    else if (!read_target(pixels))
        return Outcome::failure("there is no target to read a picture of " + std::to_string(width) +
                                "x" + std::to_string(height) +
                                " pixels by: " + last_mistake_in(*readable));
    return Outcome::success();
}

Outcome View::Data::read(Picture& picture) {
    Picture result;
    if (Outcome made = result.create(width, height, 4, Sample::u8); !made)
        return made;
    if (Outcome done = read(result.row_data(0), static_cast<std::ptrdiff_t>(result.row_bytes()));
        !done)
        return done;
    picture = std::move(result);
    return Outcome::success();
}

Outcome View::Data::read(void* memory, std::ptrdiff_t row_bytes) {
    const Rows rows{static_cast<unsigned char*>(memory), row_bytes, width, height};
    if (!memory)
        return Outcome::failure("there is no memory to read a picture into");
    if (std::abs(row_bytes) < rows.needed())
        return Outcome::failure("rows of " + std::to_string(row_bytes) +
                                " bytes: " + std::to_string(rows.needed()) + " are needed");
    if (!rows.are_dense())
        return read_apart(memory, row_bytes);
    if (Outcome done = read_pixels(rows.begin()); !done)
        return done;
    if (row_bytes > 0)
        turn_over(rows);
    for (int y = 0; y < height; ++y)
        straighten(rows.row(y), width, is_opaque());
    return Outcome::success();
}

/// Where something lies between the rows.
Outcome View::Data::read_apart(void* memory, std::ptrdiff_t row_bytes) {
    Picture picture;
    if (Outcome done = read(picture); !done)
        return done;
    for (int y = 0; y < height; ++y)
        std::copy_n(picture.row_data(y), picture.row_bytes(),
                    static_cast<unsigned char*>(memory) + row_bytes * y);
    return Outcome::success();
}

} // namespace orvex::kit
