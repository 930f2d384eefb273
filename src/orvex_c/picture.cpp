// Pictures to files.

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "orvex_c/private/pictures.h"
#include "orvex_c/private/records.h"

namespace orvex::c {

namespace {

kit::Sample sample_of(orvex_type type, const std::string& name) {
    switch (type) {
    case ORVEX_TYPE_DEFAULT:
    case ORVEX_TYPE_U8:
        return kit::Sample::u8;
    case ORVEX_TYPE_U16:
        return kit::Sample::u16;
    case ORVEX_TYPE_F32:
        return kit::Sample::f32;
    case ORVEX_TYPE_I32:
        return kit::Sample::i32;
    default:
        refuse_argument((name + "->type").c_str(), std::to_string(type),
                        "pictures are of ORVEX_TYPE_U8, U16, F32 or I32");
    }
}

/// Without its size, which is looked at by whoever has the record from the caller.
kit::Picture copy_of(const orvex_picture& told, const std::string& name) {
    require_range(told.width, 1, kit::Picture::max_side, (name + "->width").c_str());
    require_range(told.height, 1, kit::Picture::max_side, (name + "->height").c_str());
    require_range(told.channels, 0, 4, (name + "->channels").c_str());
    require_pointer(told.rows, (name + "->rows").c_str());
    kit::Picture picture;
    require(picture.create(told.width, told.height, told.channels == 0 ? 4 : told.channels,
                           sample_of(told.type, name)),
            ORVEX_ERROR_MEMORY);
    const std::ptrdiff_t step =
        row_bytes_or_dense(told.row_bytes, static_cast<std::ptrdiff_t>(picture.row_bytes()),
                           (name + "->row_bytes").c_str());
    for (int y = 0; y < picture.height(); ++y)
        std::copy_n(static_cast<const unsigned char*>(told.rows) + step * y, picture.row_bytes(),
                    picture.row_data(y));
    return picture;
}

} // namespace

kit::Picture picture_of(const orvex_picture* given, const char* name) {
    require_pointer(given, name);
    return copy_of(record_in(given, name), name);
}

kit::PictureFileOptions file_options(const orvex_write_options* given) {
    const orvex_write_options told = record_in(given, "options");
    require_range(told.jpeg_quality, 0, 100, "options->jpeg_quality");
    require_reserved(told.reserved, "options");
    kit::PictureFileOptions options;
    if (told.jpeg_quality != 0)
        options.jpeg_quality = told.jpeg_quality;
    if (!told.format)
        return options;
    options.format = kit::picture_format_named(told.format);
    if (options.format == kit::PictureFormat::by_suffix)
        refuse_argument("options->format", told.format, "it is png, jpeg, npy, exr, raw or y4m");
    return options;
}

std::ptrdiff_t row_bytes_or_dense(std::ptrdiff_t row_bytes, std::ptrdiff_t needed,
                                  const char* name) {
    if (row_bytes == 0)
        return needed;
    if (row_bytes < needed && row_bytes > -needed)
        refuse_argument(name, std::to_string(row_bytes),
                        ("a row has " + std::to_string(needed) + " bytes").c_str());
    return row_bytes;
}

} // namespace orvex::c

using namespace orvex::c;

orvex_result orvex_picture_write(const orvex_picture* picture, const char* path,
                                 const orvex_write_options* options) {
    return guarded([&] {
        const kit::Picture pixels = picture_of(picture, "picture");
        require_pointer(path, "path");
        require(kit::write_picture(pixels, path, file_options(options)), ORVEX_ERROR_FILE);
    });
}

orvex_result orvex_picture_write_layers(const orvex_picture* pictures, size_t count,
                                        const char* path, const orvex_write_options* options) {
    return guarded([&] {
        require_pointer(pictures, "pictures");
        require_pointer(path, "path");
        require_range(static_cast<double>(count), 1, 4096, "count");
        const std::size_t step = size_told_by(pictures, "pictures");
        std::vector<kit::Picture> pixels(count);
        std::vector<kit::PictureLayer> layers(count);
        for (std::size_t i = 0; i < count; ++i) {
            const std::string name = "pictures[" + std::to_string(i) + "]";
            const auto* const place = reinterpret_cast<const unsigned char*>(pictures) + step * i;
            const orvex_picture told =
                record_in(reinterpret_cast<const orvex_picture*>(place), name.c_str());
            pixels[i] = copy_of(told, name);
            layers[i] = {text_or_nothing(told.name), &pixels[i], text_or_nothing(told.letters)};
        }
        require(kit::write_layers(layers, path, file_options(options)), ORVEX_ERROR_FILE);
    });
}

orvex_result orvex_picture_can_write(const char* format, int32_t* can) {
    return guarded([&] {
        require_pointer(format, "format");
        require_pointer(can, "can");
        *can = kit::can_write_format(kit::picture_format_named(format)) ? 1 : 0;
    });
}
