// Conversions of pixels from one layout to another: a layout is a type of channel and their number,
// and channels go by position. New pixels stand in full before the old ones go.

#include "orvex/renderer/records/image.h"

#include <algorithm>
#include <memory>

#include "orvex/math/private/pixel_math.h"
#include "orvex/renderer/records/private/image_access.h"

namespace orvex {

namespace {

/// A class of formats that hold their pixels alike, apart from the order of the channels.
enum class Layout { none, rgb_u8, rgba_u8, rgb_f32, rgba_f32, r_f32 };

Layout layout_of(PIXEL_FORMAT format) {
    switch (format) {
    case PF_RGB_U8:
    case PF_BGR_U8:
        return Layout::rgb_u8;
    case PF_RGBA_U8:
    case PF_BGRA_U8:
        return Layout::rgba_u8;
    case PF_RGB_F32:
        return Layout::rgb_f32;
    case PF_RGBA_F32:
        return Layout::rgba_f32;
    case PF_R_F32:
        return Layout::r_f32;
    case PF_NONE:
    case PF_RGB_F16:
    case PF_RGBA_F16:
    case PF_R_F16:
        return Layout::none;
    }
    return Layout::none;
}

unsigned char to_byte(unsigned char channel) {
    return channel;
}
unsigned char to_byte(float channel) {
    return byte_from_channel(channel);
}
float to_float(unsigned char channel) {
    return channel_from_byte(channel);
}
float to_float(float channel) {
    return channel;
}

void store(unsigned char& target, auto channel) {
    target = to_byte(channel);
}
void store(float& target, auto channel) {
    target = to_float(channel);
}

/// Channels go by position. Alpha never comes from the source: it is full wherever there is one.
template<int TargetChannels, int SourceChannels, class Target, class Source>
void convert_pixels(Target* target, const Source* source, unsigned long count) {
    constexpr Target full = static_cast<Target>(sizeof(Target) == 1 ? 255 : 1);
    constexpr int color_channels = std::min(TargetChannels, 3);
    for (unsigned long i = 0; i < count; ++i, target += TargetChannels, source += SourceChannels) {
        for (int c = 0; c < color_channels; ++c)
            if (c < SourceChannels)
                store(target[c], source[c]);
            else
                target[c] = Target(0);
        if (TargetChannels == 4)
            target[3] = full;
    }
}

template<int TargetChannels, class Target>
void convert_from(Target* target, const Image& source, unsigned long count) {
    switch (layout_of(source.pixel_format)) {
    case Layout::rgb_u8:
        return convert_pixels<TargetChannels, 3>(target, source.get_u8_ptr(), count);
    case Layout::rgba_u8:
        return convert_pixels<TargetChannels, 4>(target, source.get_u8_ptr(), count);
    case Layout::rgb_f32:
        return convert_pixels<TargetChannels, 3>(target, source.get_f32_ptr(), count);
    case Layout::rgba_f32:
        return convert_pixels<TargetChannels, 4>(target, source.get_f32_ptr(), count);
    case Layout::r_f32:
        return convert_pixels<TargetChannels, 1>(target, source.get_f32_ptr(), count);
    case Layout::none:
        return;
    }
}

bool has_pixels(const Image& image, unsigned long bytes) {
    const bool missing =
        is_u8_format(image.pixel_format) ? !image.get_u8_ptr() : !image.get_f32_ptr();
    return !missing && ImageAccess::readable_bytes(image, image.pixel_format) >= bytes;
}

void delete_store(Image& image, PIXEL_FORMAT format) {
    is_u8_format(format) ? image._delete_u8_ptr() : image._delete_f32_ptr();
}

template<int Channels>
void convert_to_u8(Image& image, unsigned long count) {
    auto pixels = std::make_unique_for_overwrite<unsigned char[]>(count * Channels);
    convert_from<Channels>(pixels.get(), image, count);
    delete_store(image, image.pixel_format);
    ImageAccess::adopt_u8(image, pixels.release(), count * Channels);
}

template<int Channels>
void convert_to_f32(Image& image, unsigned long count) {
    auto pixels = std::make_unique_for_overwrite<float[]>(count * Channels);
    convert_from<Channels>(pixels.get(), image, count);
    delete_store(image, image.pixel_format);
    ImageAccess::adopt_f32(image, pixels.release(), count * Channels * sizeof(float));
}

void convert_to(Image& image, Layout layout, unsigned long count) {
    switch (layout) {
    case Layout::rgb_u8:
        return convert_to_u8<3>(image, count);
    case Layout::rgba_u8:
        return convert_to_u8<4>(image, count);
    case Layout::rgb_f32:
        return convert_to_f32<3>(image, count);
    case Layout::rgba_f32:
        return convert_to_f32<4>(image, count);
    case Layout::r_f32:
        return convert_to_f32<1>(image, count);
    case Layout::none:
        return;
    }
}

} // namespace

bool Image::update_pixel_format(PIXEL_FORMAT format) {
    if (format == pixel_format)
        return true;
    const Layout source = layout_of(pixel_format);
    const Layout target = layout_of(format);
    const unsigned long count = saturating_product(width, height);
    if (source == Layout::none || target == Layout::none ||
        !has_pixels(*this,
                    saturating_product(count, static_cast<unsigned long>(get_pixel_format_size()))))
        return false;
    const KeepExternalSize keep(*this);
    if (source != target)
        convert_to(*this, target, count);
    pixel_format = format;
    return true;
}

} // namespace orvex
