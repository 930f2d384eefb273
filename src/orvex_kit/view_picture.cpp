// Pictures of what a view shows, from its surface or from its target.

#include "orvex_kit/private/view_data.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include <orvex/renderer/render_target.h>
#include <orvex/renderer/renderer.h>

#include "orvex_kit/private/turn_upside_down.h"

namespace orvex::kit {

namespace {

/// Rows that lie the last first, with colours multiplied by their alpha, as a picture has them.
void straighten(Picture& picture, bool is_opaque) {
    turn_upside_down(picture);
    for (int y = 0; y < picture.height(); ++y) {
        auto* pixel = picture.row<std::uint8_t>(y);
        for (int x = 0; x < picture.width(); ++x, pixel += 4) {
            const int alpha = is_opaque ? 255 : pixel[3];
            pixel[3] = static_cast<std::uint8_t>(alpha);
            for (int i = 0; alpha < 255 && i < 3; ++i)
                pixel[i] = static_cast<std::uint8_t>(
                    alpha == 0 ? 0 : std::min((pixel[i] * 255 + alpha / 2) / alpha, 255));
        }
    }
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

Outcome View::Data::read(Picture& picture) {
    Picture result;
    if (Outcome made = result.create(width, height, 4, Sample::u8); !made)
        return made;
    const bool is_target_wanted = context->is_adopted || (is_window && target && !is_opaque());
    if (!is_target_wanted)
        read_surface(result.row_data(0));
    else if (!read_target(result.row_data(0)))
        return Outcome::failure("there is no target to read a picture of " + std::to_string(width) +
                                "x" + std::to_string(height) +
                                " pixels by: " + readable->get_error_str());
    straighten(result, is_opaque());
    picture = std::move(result);
    return Outcome::success();
}

} // namespace orvex::kit
