// The built-in codec. Decoded pixels are lent to the image together with what frees them, so that
// they may outlive the codec; every way out of an operation that fails leaves the image as it was
// and keeps a reason.

#include "orvex/assets/images/codecs/image_codec_stb.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "orvex/assets/images/codecs/jpeg_writer.h"
#include "orvex/assets/images/codecs/private/stb_decode.h"
#include "orvex/base/private/memory_out.h"
#include "orvex/base/private/misuse.h"
#include "orvex/math/private/pixel_math.h"
#include "orvex/platform/private/file_bytes.h"
#include "orvex/renderer/records/image.h"
#include "orvex/renderer/records/private/image_access.h"
#include "orvex/renderer/records/private/pixel_store.h"
#include "orvex/renderer/renderer_types.h"

namespace orvex {

namespace {

constexpr int jpeg_quality = 90;
constexpr const char* memory_ran_out = "memory ran out";

std::atomic<unsigned long> memory_limit = 2ul << 30;

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
    clear_failure_reason();
    const auto load = [&] {
        FileBytes file;
        if (!file.read(filename, INT_MAX - 1)) {
            set_failure_reason("no regular file below 2 GiB that can be read, or no memory for it");
            return false;
        }
        return load_image_from_memory(image, const_cast<unsigned char*>(file.data()),
                                      file.size() + 1, mirror);
    };
    return or_undo(load, [&] { set_failure_reason(memory_ran_out); });
}

namespace {

/// Whether the square that a mirrored picture becomes may be had at all.
bool square_fits(int width, unsigned long limit) {
    const auto side = static_cast<unsigned long>(width);
    return side * side * 3 <= limit;
}

/// The image becomes square by its width: more rows than that are cut, missing ones are black.
void become_square(Image& image, const unsigned char* pixels, unsigned long width,
                   unsigned long height) {
    const unsigned long row = width * 3, rows = std::min(width, height);
    auto square = std::make_unique<unsigned char[]>(width * row);
    std::memcpy(square.get(), pixels, rows * row);
    // From here on nothing fails.
    const KeepExternalSize keep(image);
    image.width = image.height = width;
    image.depth = 1;
    image.pixel_format = PF_RGB_U8;
    ImageAccess::adopt_u8(image, square.release(), width * row);
    image.flip_horizontal();
}

/// The image shows the decoder's own memory from now on.
void become_decoded(Image& image, StbPixels pixels, unsigned long width, unsigned long height) {
    lend_pixels(image, {pixels.get(), width * height * 3, stb_free});
    static_cast<void>(pixels.release()); // the image gives them back
    image.width = width;
    image.height = height;
    image.pixel_format = PF_RGB_U8;
    ImageAccess::drop_small_u8(image);
}

} // namespace

bool ImageCodecStb::load_image_from_memory(Image* image, unsigned char* bytes, unsigned long size,
                                           bool mirror) {
    clear_failure_reason();
    if (!image || !bytes || size == 0)
        return misuse("ImageCodecStb::load_image_from_memory", "no image or no bytes");
    const unsigned long limit = memory_limit;
    int width = 0, height = 0;
    StbPixels pixels = stb_decode(bytes, size, limit, &width, &height);
    if (!pixels || (mirror && !square_fits(width, limit))) {
        set_failure_reason("%lu bytes that are no picture of a known format, are damaged, or would "
                           "take more than %lu bytes",
                           size, limit);
        return false;
    }

    const auto hand_over = [&] {
        const auto columns = static_cast<unsigned long>(width);
        const auto rows = static_cast<unsigned long>(height);
        if (mirror)
            become_square(*image, pixels.get(), columns, rows);
        else
            become_decoded(*image, std::move(pixels), columns, rows);
        return true;
    };
    return or_undo(hand_over, [&] { set_failure_reason(memory_ran_out); });
}

bool ImageCodecStb::free_image_resources(Image* image) {
    return free_decoded_pixels(image);
}

bool ImageCodecStb::free_decoded_pixels(Image* image) {
    return image && take_back_pixels(*image, stb_free);
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
    clear_failure_reason();
    if (!image || !filename)
        return misuse("ImageCodecStb::save_image_to_file", "a null image or name");
    if (!has_pixels(*image)) {
        set_failure_reason("the image has fewer pixels than %lu by %lu", image->width,
                           image->height);
        return false;
    }
    return or_undo([&] { return write(*image, filename); },
                   [&] { set_failure_reason(memory_ran_out); });
}

bool ImageCodecStb::write(const Image& image, const char* filename) const {
    bool written = false;
    switch (image.pixel_format) {
    case PF_RGB_U8:
    case PF_BGR_U8:
        written = write_jpeg(image, filename, image.get_u8_ptr(), 3);
        break;
    case PF_RGBA_U8:
    case PF_BGRA_U8:
        written = write_jpeg(image, filename, image.get_u8_ptr(), 4);
        break;
    case PF_RGB_F32:
        written = image.pixmap_f32 && write_jpeg(image, filename, rgba_bytes(image, 3).data(), 4);
        break;
    case PF_RGBA_F32:
        written = image.pixmap_f32 && write_jpeg(image, filename, rgba_bytes(image, 4).data(), 4);
        break;
    default:
        set_failure_reason("pixels of format %d can't be written", image.pixel_format);
        return false;
    }
    if (!written)
        set_failure_reason("%s can't be written", filename);
    return written;
}

} // namespace orvex
