#include "orvex/assets/images/codecs/image_codec_stb.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstring>
#include <mutex>
#include <unordered_set>
#include <vector>

#include "orvex/assets/images/codecs/jpeg_writer.h"
#include "orvex/assets/images/codecs/private/stb_decode.h"
#include "orvex/math/private/pixel_math.h"
#include "orvex/platform/private/file_bytes.h"
#include "orvex/renderer/records/image.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

namespace {

constexpr int jpeg_quality = 90;

std::atomic<unsigned long> memory_limit = 2ul << 30;

/// The pixels that are out with images. Alive until the process ends, as textures may be that hold
/// some.
struct HandedOut {
    std::mutex mutex;
    std::unordered_set<unsigned char*> pixels;
};

HandedOut& handed_out() {
    static HandedOut* const instance = new HandedOut;
    return *instance;
}

void hand_out(Image& image, StbPixels pixels) {
    HandedOut& out = handed_out();
    const std::lock_guard<std::mutex> guard(out.mutex);
    out.pixels.insert(pixels.get());
    image.pixmap_external = pixels.release();
}

bool take_back(unsigned char* pixels) {
    HandedOut& out = handed_out();
    const std::lock_guard<std::mutex> guard(out.mutex);
    return out.pixels.erase(pixels) == 1;
}

} // namespace

ImageCodecStb::ImageCodecStb() {
    set_name("orvex_plugin_core_stb");
    set_description("STB image loader. Supported formats: *.JPEG, *.PNG, *.TGA, *.BMP, *.PSD, "
                    "*.GIF, *.HDR, *.PIC");
    set_author("orvex");
    set_build_info("BUILD_DATE: [" __DATE__ "] - BUILD_TIME: [" __TIME__ "]");
    set_version(0, 1, 0);
    set_type(PLUGIN_TYPE_IMAGE_CODEC);
}

ImageCodecStb::~ImageCodecStb() = default;

void ImageCodecStb::set_memory_limit(unsigned long bytes) {
    memory_limit = bytes;
}

unsigned long ImageCodecStb::get_memory_limit() {
    return memory_limit;
}

// The decoder counts bytes as ints, and gets one more than the file has.
bool ImageCodecStb::load_image_from_file(Image* image, const char* filename, bool mirror) {
    FileBytes file;
    if (!file.read(filename, INT_MAX - 1))
        return false;
    return load_image_from_memory(image, const_cast<unsigned char*>(file.data()), file.size() + 1,
                                  mirror);
}

namespace {

/// Whether the square that a mirrored picture becomes may be had at all.
bool square_fits(int width, unsigned long limit) {
    const auto side = static_cast<unsigned long>(width);
    return side * side * 3 <= limit;
}

/// The image becomes square by its width: more rows than that are cut, missing ones are black.
void copy_square(Image& image, const unsigned char* pixels, unsigned long height) {
    const unsigned long side = image.width;
    image.create(side, side, 1, PF_RGB_U8, false);
    const unsigned long row = side * 3, rows = std::min(side, height);
    std::memcpy(image.pixmap_u8, pixels, rows * row);
    std::memset(image.pixmap_u8 + rows * row, 0, (side - rows) * row);
}

} // namespace

bool ImageCodecStb::load_image_from_memory(Image* image, unsigned char* bytes, unsigned long size,
                                           bool mirror) {
    if (!image || !bytes || size == 0)
        return false;
    const unsigned long limit = memory_limit;
    int width = 0, height = 0;
    StbPixels pixels = stb_decode(bytes, size, limit, &width, &height);
    if (!pixels || (mirror && !square_fits(width, limit)))
        return false;
    image->width = static_cast<unsigned long>(width);
    image->height = static_cast<unsigned long>(height);
    if (mirror) {
        copy_square(*image, pixels.get(), image->height);
        image->flip_horizontal();
        return true;
    }
    image->pixel_format = PF_RGB_U8;
    hand_out(*image, std::move(pixels));
    ImageAccess::note_external(*image, image->width * image->height * 3);
    ImageAccess::drop_small_u8(*image);
    return true;
}

bool ImageCodecStb::free_image_resources(Image* image) {
    return free_decoded_pixels(image);
}

bool ImageCodecStb::free_decoded_pixels(Image* image) {
    if (!image || !image->pixmap_external || !take_back(image->pixmap_external))
        return false;
    stb_free(image->pixmap_external);
    image->pixmap_external = nullptr;
    return true;
}

namespace {

/// The pixels of a float image of three or four channels as bytes, opaque if it has three.
std::vector<unsigned char> rgba_bytes(const Image& image, unsigned long channels) {
    const unsigned long pixels = image.width * image.height;
    std::vector<unsigned char> bytes(pixels * 4, 255);
    for (unsigned long i = 0; i < pixels; ++i)
        for (unsigned long c = 0; c < channels; ++c)
            bytes[i * 4 + c] = byte_from_channel(image.pixmap_f32[i * channels + c]);
    return bytes;
}

/// Whether the image has the pixels that its size announces, and the writer can count them.
bool has_pixels(const Image& image) {
    const unsigned long bytes = saturating_product(
        image.width, image.height, static_cast<unsigned long>(image.get_pixel_format_size()));
    return image.width <= INT_MAX && image.height <= INT_MAX &&
           ImageAccess::readable_bytes(image, image.pixel_format) >= bytes;
}

bool write_jpeg(const Image& image, const char* filename, const unsigned char* pixels, int comp) {
    return jo_write_jpg(filename, pixels, static_cast<int>(image.width),
                        static_cast<int>(image.height), comp, jpeg_quality);
}

} // namespace

bool ImageCodecStb::save_image_to_file(Image* image, const char* filename) {
    if (!image || !filename || !has_pixels(*image))
        return false;
    switch (image->pixel_format) {
    case PF_RGB_U8:
    case PF_BGR_U8:
        return write_jpeg(*image, filename, image->get_u8_ptr(), 3);
    case PF_RGBA_U8:
    case PF_BGRA_U8:
        return write_jpeg(*image, filename, image->get_u8_ptr(), 4);
    case PF_RGB_F32:
        return image->pixmap_f32 && write_jpeg(*image, filename, rgba_bytes(*image, 3).data(), 4);
    case PF_RGBA_F32:
        return image->pixmap_f32 && write_jpeg(*image, filename, rgba_bytes(*image, 4).data(), 4);
    default:
        return false;
    }
}

} // namespace orvex
