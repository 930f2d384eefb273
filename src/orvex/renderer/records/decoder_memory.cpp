#include "orvex/renderer/records/private/decoder_memory.h"

#include <mutex>
#include <unordered_map>

#include "orvex/assets/textures/private/texture_mgr_data.h"
#include "orvex/base/image_codec.h"
#include "orvex/renderer/records/texture_data.h"

namespace orvex {

namespace {

/// Which pixels each image holds. An entry counts only while the image still points to them: a host
/// may have given them back itself.
struct Holds {
    std::mutex mutex;
    std::unordered_map<Image*, unsigned char*> by_image;
    std::unordered_multimap<unsigned char*, Image*> by_pixels;

    void add(Image& image, unsigned char* pixels) {
        by_image.emplace(&image, pixels);
        by_pixels.emplace(pixels, &image);
    }

    void remove(Image& image) {
        const auto entry = by_image.find(&image);
        if (entry == by_image.end())
            return;
        const auto [first, last] = by_pixels.equal_range(entry->second);
        for (auto i = first; i != last; ++i) {
            if (i->second == &image) {
                by_pixels.erase(i);
                break;
            }
        }
        by_image.erase(entry);
    }

    bool is_held(unsigned char* pixels) const {
        const auto [first, last] = by_pixels.equal_range(pixels);
        for (auto i = first; i != last; ++i)
            if (i->second->pixmap_external == pixels)
                return true;
        return false;
    }
};

/// Alive until the process ends, like the textures that outlive everything else.
Holds& holds() {
    static Holds* const instance = new Holds;
    return *instance;
}

void hold(Image& image) {
    Holds& all = holds();
    const std::lock_guard<std::mutex> guard(all.mutex);
    all.remove(image);
    if (image.pixmap_external)
        all.add(image, image.pixmap_external);
}

/// @return whether somebody else holds what the image held
bool end_hold(Image& image) {
    Holds& all = holds();
    const std::lock_guard<std::mutex> guard(all.mutex);
    all.remove(image);
    return image.pixmap_external && all.is_held(image.pixmap_external);
}

template<class Step>
void for_each_image(TextureData& data, Step step) {
    step(data);
    for (TextureCubeMapFace& face : data.cubemap_faces)
        step(face.image);
}

} // namespace

void give_back_decoded_pixels(Image& image) {
    if (end_hold(image))
        image.pixmap_external = nullptr;
    else
        TextureMgrAccess::free_image_resources(image);
}

void give_back_decoded_pixels(TextureData& data) {
    for_each_image(data, [](Image& image) {
        if (image.pixmap_external)
            give_back_decoded_pixels(image);
    });
}

void take_decoded_pixels(Image& image, unsigned char* before) {
    hold(image);
    if (!before || before == image.pixmap_external)
        return;
    Image replaced;
    replaced.pixmap_external = before;
    give_back_decoded_pixels(replaced);
}

void forget_decoded_pixels(TextureData& data) {
    Holds& all = holds();
    const std::lock_guard<std::mutex> guard(all.mutex);
    if (all.by_image.empty())
        return;
    for_each_image(data, [&all](Image& image) { all.remove(image); });
}

} // namespace orvex
