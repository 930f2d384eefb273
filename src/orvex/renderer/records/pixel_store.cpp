// One table for all decoded pixels. Who holds them stands in a row through the images themselves,
// so that a hold ends without memory and without a search.

#include "orvex/renderer/records/private/pixel_store.h"

#include <mutex>
#include <unordered_map>
#include <utility>

#include "orvex/renderer/records/private/image_access.h"

namespace orvex {

namespace {

/// One block of pixels: lent by a decoder of ours, held by images, or both. Codecs of hosts keep
/// their own books; their pixels come in with the first hold, and go with the last.
struct Entry {
    PixelStore store;
    Image* first_holder = nullptr;

    bool is_needed() const { return store.free_pixels || first_holder; }
};

using Table = std::unordered_map<const unsigned char*, Entry>;

constinit std::mutex mutex;
/// Made by the first loan or hold. Alive until the process ends, as textures may be that hold some.
constinit Table* table = nullptr;

Entry& entry_for(const unsigned char* pixels) {
    if (!table)
        table = new Table;
    return (*table)[pixels];
}

void link(Entry& entry, Image& image) {
    auto& holder = ImageAccess::holder(image);
    holder.pixels = image.pixmap_external;
    holder.previous = nullptr;
    holder.next = std::exchange(entry.first_holder, &image);
    if (holder.next)
        ImageAccess::holder(*holder.next).previous = &image;
}

/// Takes an image out of the row of holders that it stands in, if any.
void unlink(Image& image) {
    auto& holder = ImageAccess::holder(image);
    if (!holder.pixels)
        return;
    const auto found = table->find(holder.pixels);
    if (holder.previous)
        ImageAccess::holder(*holder.previous).next = holder.next;
    else
        found->second.first_holder = holder.next;
    if (holder.next)
        ImageAccess::holder(*holder.next).previous = holder.previous;
    holder = {};
    if (!found->second.is_needed())
        table->erase(found);
}

bool has_holder(const unsigned char* pixels) {
    if (!table)
        return false;
    const auto found = table->find(pixels);
    if (found == table->end())
        return false;
    for (Image* image = found->second.first_holder; image; image = ImageAccess::holder(*image).next)
        if (image->pixmap_external == pixels)
            return true;
    return false;
}

} // namespace

void lend_pixels(Image& image, const PixelStore& store) {
    const std::lock_guard<std::mutex> guard(mutex);
    entry_for(store.pixels).store = store;
    image.pixmap_external = store.pixels;
    ImageAccess::note_external(image, store.bytes);
}

bool take_back_pixels(Image& image, void (*free_pixels)(unsigned char* pixels)) {
    {
        const std::lock_guard<std::mutex> guard(mutex);
        if (!image.pixmap_external || !table)
            return false;
        const auto found = table->find(image.pixmap_external);
        if (found == table->end() || found->second.store.free_pixels != free_pixels)
            return false;
        found->second.store = {};
        if (!found->second.is_needed())
            table->erase(found);
    }
    free_pixels(std::exchange(image.pixmap_external, nullptr));
    return true;
}

void hold_pixels(Image& image) {
    const std::lock_guard<std::mutex> guard(mutex);
    unlink(image);
    if (image.pixmap_external)
        link(entry_for(image.pixmap_external), image);
}

bool end_hold(Image& image) {
    const std::lock_guard<std::mutex> guard(mutex);
    unlink(image);
    return image.pixmap_external && has_holder(image.pixmap_external);
}

} // namespace orvex
