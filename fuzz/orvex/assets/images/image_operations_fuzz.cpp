#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "fuzz/support/target.h"
#include "orvex/math/vec4.h"
#include "orvex/renderer/records/image.h"

namespace {

using namespace orvex;

/// Takes bytes off the input; zeros once it is used up.
class Input {
public:
    Input(const uint8_t* data, size_t size)
        : data(data)
        , left(size) {}
    bool empty() const { return left == 0; }
    unsigned int next() {
        if (empty())
            return 0;
        --left;
        return *data++;
    }
    unsigned long size() { return next() % 24; }
    PIXEL_FORMAT format() { return static_cast<PIXEL_FORMAT>(next() % 12); }

private:
    const uint8_t* data;
    size_t left;
};

using Memory = std::vector<std::unique_ptr<unsigned char[]>>;

/// What a codec does: pixels of its own memory, which outlives the images here.
void decode(Image& image, Input& input, Memory& decoded) {
    image.width = input.size();
    image.height = input.size();
    image.pixel_format = PF_RGB_U8;
    decoded.push_back(std::make_unique<unsigned char[]>(image.width * image.height * 3 + 1));
    image.pixmap_external = decoded.back().get();
}

/// A host may write the sizes itself. It keeps its hands off pixels that nobody has looked at yet,
/// whose sizes are all that is known of them.
void write_fields(Image& image, Input& input) {
    if (image.pixmap_external)
        image.create(image.width, image.height, 1, PF_R_F32, true);
    image.width = input.size();
    image.height = input.size();
    image.depth = input.size();
    image.pixel_format = input.format();
}

void run_layout_operation(Image& image, Input& input, const float* pixels) {
    using Flip = bool (Image::*)();
    constexpr Flip flips[] = {
        &Image::_flip_vertical_rgb_u8,    &Image::_flip_vertical_rgba_u8,
        &Image::_flip_vertical_rgb_f32,   &Image::_flip_vertical_rgba_f32,
        &Image::_flip_horizontal_rgb_u8,  &Image::_flip_horizontal_rgba_u8,
        &Image::_flip_horizontal_rgb_f32, &Image::_flip_horizontal_rgba_f32,
    };
    using Update = bool (Image::*)(const void*);
    constexpr Update updates[] = {&Image::update_pixmap_rgb_u8, &Image::update_pixmap_rgba_u8,
                                  &Image::update_pixmap_rgb_f32, &Image::update_pixmap_rgba_f32};
    const unsigned int choice = input.next() % 16;
    if (choice < 8)
        (image.*flips[choice])();
    else if (choice < 12)
        (image.*updates[choice - 8])(pixels);
    else if (choice == 12)
        image.fill_color_rgb_u8(1, 2, 3);
    else if (choice == 13)
        image.fill_color_rgba_u8(1, 2, 3, 4);
    else if (choice == 14)
        image.fill_color_rgb_f32(1, 2, 3);
    else
        image.fill_color_rgba_f32(1, 2, 3, 4);
}

void run_operation(Image& image, Image& other, Input& input, Memory& decoded) {
    static const std::vector<float> pixels(24 * 24 * 4, 0.5f);
    const vec4 color(0.5f, 2.0f, -1.0f, 300.0f);
    switch (input.next() % 12) {
    case 0: {
        const unsigned long width = input.size(), height = input.size(), depth = input.size() % 4;
        image.create(width, height, depth, input.format(), input.next() % 2 == 0);
        break;
    }
    case 1:
        image = other;
        break;
    case 2:
        image.update_pixel_format(input.format());
        break;
    case 3:
        image.flip_vertical();
        break;
    case 4:
        image.flip_horizontal();
        break;
    case 5:
        image.fill_with_noise(input.next(), color, color, input.next());
        break;
    case 6:
        image.set_pixel_2d(input.size(), input.next(), color);
        break;
    case 7:
        run_layout_operation(image, input, pixels.data());
        break;
    case 8:
        write_fields(image, input);
        break;
    case 9:
        decode(image, input, decoded);
        break;
    case 10:
        image.cleanup();
        break;
    default:
        image.set_pixel(input.next() * 7, color);
        break;
    }
}

} // namespace

/// Whatever is done to two images, in whatever order, stays inside their pixels.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Input input(data, size);
    Memory decoded;
    std::array<Image, 2> images;
    while (!input.empty()) {
        const unsigned int which = input.next() % 2;
        run_operation(images[which], images[1 - which], input, decoded);
    }
    return 0;
}
