#include "orvex/assets/textures/texture_mgr.h"

#include <algorithm>

#include "orvex/assets/textures/private/texture_mgr_data.h"
#include "orvex/assets/textures/texture.h"
#include "orvex/base/image_codec.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/texture_data.h"
#include "orvex/renderer/renderer.h"

namespace orvex {

bool TextureMgr::write_texture_2d_to_file(Texture* texture, const char* filename) {
    if (!data->default_image_codec || !texture || !filename ||
        texture->get_type() != TEXTURE_TYPE_2D)
        return false;
    return data->default_image_codec->save_image_to_file(texture->get_image_ptr(), filename);
}

namespace {

/// A frame of another size gets another buffer; the same size keeps the one of the last shot.
void fit_screenshot(Image& shot, int size, int width, int height) {
    const auto new_width = static_cast<unsigned long>(std::max(width, 0));
    const auto new_height = static_cast<unsigned long>(std::max(height, 0));
    if (shot.pixmap_u8 && shot.width == new_width && shot.height == new_height)
        return;
    const auto told = static_cast<unsigned long>(std::max(size, 0));
    ImageAccess::allocate_u8(shot, std::max(told, new_width * new_height * 4));
    shot.width = new_width;
    shot.height = new_height;
    shot.depth = 1;
    shot.pixel_format = PF_BGRA_U8;
}

} // namespace

bool TextureMgr::do_screenshot(Renderer* renderer, const char* filename) {
    ImageCodec* const codec = data->default_image_codec;
    if (!renderer || !codec || !filename)
        return false;
    Image& shot = data->screenshot_image;
    int size = 0, width = 0, height = 0;
    renderer->get_color_buffer_size(&size, &width, &height);
    fit_screenshot(shot, size, width, height);
    renderer->get_color_buffer(shot.get_u8_ptr());
    shot.flip_vertical();
    return codec->save_image_to_file(&shot, filename);
}

} // namespace orvex
