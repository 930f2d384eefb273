#include "orvex/assets/textures/private/decoded_pixels.h"

#include "orvex/assets/textures/private/texture_mgr_data.h"
#include "orvex/renderer/records/private/pixel_store.h"
#include "orvex/renderer/records/texture_data.h"

namespace orvex {

bool take_over(Image* target, const Image* source) {
    if (!target || !source)
        return false;
    unsigned char* const before = target->pixmap_external;
    *target = *source;
    take_decoded_pixels(*target, before);
    return true;
}

void take_decoded_pixels(Image& image, unsigned char* before) {
    hold_pixels(image);
    if (!before || before == image.pixmap_external)
        return;
    Image replaced;
    replaced.pixmap_external = before;
    give_back_decoded_pixels(replaced);
}

void give_back_decoded_pixels(Image& image) {
    if (end_hold(image))
        image.pixmap_external = nullptr;
    else
        TextureMgr::Access::free_image_resources(image);
}

void give_back_decoded_pixels(TextureData& data) {
    if (data.pixmap_external)
        give_back_decoded_pixels(static_cast<Image&>(data));
    for (TextureCubeMapFace& face : data.cubemap_faces)
        if (face.image.pixmap_external)
            give_back_decoded_pixels(face.image);
}

} // namespace orvex
