// From a path to the writer of its format. Each writer stands in a file of its own.

#include "orvex_kit/picture_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>

#include <orvex/assets/images/codecs/image_codec_stb.h>
#include <orvex/renderer/records/image.h>
#include <orvex/renderer/renderer.h>

#include "orvex_kit/files.h"
#include "orvex_kit/frame_stream.h"
#include "orvex_kit/private/exr_writer.h"
#include "orvex_kit/private/jpeg_file.h"
#include "orvex_kit/private/npy_writer.h"
#include "orvex_kit/private/output.h"
#include "orvex_kit/private/png_writer.h"
#include "orvex_kit/private/turn_upside_down.h"

namespace orvex::kit {

namespace {

struct FormatName {
    const char* suffix; ///< with its dot
    PictureFormat format;
};

// The first of a format is its name.
constexpr std::array format_names = {
    FormatName{".png", PictureFormat::png},   FormatName{".jpg", PictureFormat::jpeg},
    FormatName{".jpeg", PictureFormat::jpeg}, FormatName{".npy", PictureFormat::npy},
    FormatName{".exr", PictureFormat::exr},   FormatName{".raw", PictureFormat::raw},
    FormatName{".y4m", PictureFormat::y4m}};

std::string all_suffixes() {
    std::string text;
    for (const FormatName& name : format_names)
        text += (text.empty() ? "" : ", ") + std::string(name.suffix);
    return text;
}

/// The format that was asked for. @return why there is none
Outcome choose_format(const std::string& path, PictureFormat& format) {
    if (format == PictureFormat::by_suffix)
        format = picture_format_of(path);
    if (format != PictureFormat::by_suffix)
        return Outcome::success();
    return cant_write(path, is_standard_output(path)
                                ? "its format has to be named"
                                : "its suffix names no format; there are " + all_suffixes());
}

Outcome write_raw(const Picture& picture, const std::string& path) {
    const auto* const bytes = reinterpret_cast<const char*>(picture.row_data(0));
    return write_whole(path, {bytes, picture.size_bytes()});
}

Outcome write_film(const Picture& picture, const std::string& path) {
    FrameStream film(path, {.format = PictureFormat::y4m});
    Outcome outcome = film.put(picture);
    return outcome ? film.finish() : outcome;
}

Outcome write_as(PictureFormat format, const Picture& picture, const std::string& path,
                 const PictureFileOptions& options) {
    switch (format) {
    case PictureFormat::png:
        return write_png(picture, path);
    case PictureFormat::jpeg:
        return write_jpeg(picture, path, options.jpeg_quality);
    case PictureFormat::npy:
        return write_npy(picture, path);
    case PictureFormat::exr:
        return write_exr({{"", &picture, ""}}, path);
    case PictureFormat::raw:
        return write_raw(picture, path);
    case PictureFormat::y4m:
        return write_film(picture, path);
    case PictureFormat::by_suffix:
        break;
    }
    return cant_write(path, "its format is unknown");
}

} // namespace

const char* name_of(PictureFormat format) noexcept {
    for (const FormatName& known : format_names)
        if (known.format == format)
            return known.suffix + 1;
    return "";
}

PictureFormat picture_format_named(const std::string& name) {
    const auto* const found = std::ranges::find_if(
        format_names, [&](const FormatName& known) { return name == known.suffix + 1; });
    return found != format_names.end() ? found->format : PictureFormat::by_suffix;
}

PictureFormat picture_format_of(const std::string& path) {
    const auto* const found = std::ranges::find_if(
        format_names, [&](const FormatName& known) { return has_suffix(path, known.suffix); });
    return found != format_names.end() ? found->format : PictureFormat::by_suffix;
}

bool can_write_format(PictureFormat format) {
    if (format == PictureFormat::exr)
        return has_exr();
    return std::ranges::any_of(format_names,
                               [&](const FormatName& known) { return known.format == format; });
}

Outcome write_picture(const Picture& picture, const std::string& path,
                      const PictureFileOptions& options) {
    if (picture.is_empty())
        return cant_write(path, "the picture is empty");
    PictureFormat format = options.format;
    if (Outcome chosen = choose_format(path, format); !chosen)
        return chosen;
    return write_as(format, picture, path, options);
}

Outcome write_layers(const std::vector<PictureLayer>& layers, const std::string& path,
                     const PictureFileOptions& options) {
    PictureFormat format = options.format;
    if (Outcome chosen = choose_format(path, format); !chosen)
        return chosen;
    if (format != PictureFormat::exr)
        return cant_write(path, "only OpenEXR files have layers");
    return write_exr(layers, path);
}

Outcome write_screenshot(Renderer* renderer, const std::string& path,
                         const PictureFileOptions& options) {
    if (!renderer)
        return cant_write(path, "there is no renderer");
    int size = 0, width = 0, height = 0;
    renderer->get_color_buffer_size(&size, &width, &height);
    Picture picture;
    if (Outcome made = picture.create(width, height, 4, Sample::u8); !made)
        return cant_write(path, made.reason());
    renderer->get_color_buffer(picture.row_data(0));
    turn_upside_down(picture);
    return write_picture(picture, path, options);
}

namespace {

/// One codec for all, that nobody ends: decoding needs nothing of it, and its own end would look
/// through registries that belong to the main thread.
ImageCodecStb& decoder() {
    static ImageCodecStb& codec = *std::make_unique<ImageCodecStb>().release();
    return codec;
}

/// Gives decoded pixels back at the end.
struct DecodedImage : Image {
    DecodedImage() = default;
    DecodedImage(const DecodedImage&) = delete;
    DecodedImage& operator=(const DecodedImage&) = delete;
    ~DecodedImage() override { ImageCodecStb::free_decoded_pixels(this); }
};

Outcome cant_read(const std::string& path, const std::string& why) {
    return Outcome::failure("can't read " + path + ": " + why);
}

} // namespace

Outcome read_picture(const std::string& path, Picture& picture) {
    if (const std::string mistake = mistake_in_reading(path); !mistake.empty())
        return Outcome::failure("can't read " + mistake);
    DecodedImage image;
    if (!decoder().load_image_from_file(&image, path.c_str(), false))
        return cant_read(path, decoder().get_failure_reason());
    Picture result;
    // More than any side may have is refused as well.
    constexpr unsigned long too_long = Picture::max_side + 1ul;
    if (Outcome made =
            result.create(static_cast<int>(std::min(image.width, too_long)),
                          static_cast<int>(std::min(image.height, too_long)), 3, Sample::u8);
        !made)
        return cant_read(path, made.reason());
    std::memcpy(result.data(), image.get_u8_ptr(), result.size_bytes());
    picture = std::move(result);
    return Outcome::success();
}

} // namespace orvex::kit
