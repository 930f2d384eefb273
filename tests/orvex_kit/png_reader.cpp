#include "tests/orvex_kit/png_reader.h"

#include <cstdio>
#include <memory>
#include <vector>

#include <png.h>

namespace orvex_test {

namespace {

using namespace orvex::kit;

/// What a file is read with. Mistakes in it jump back to who set it up.
struct Reader {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    Reader() = default;
    ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
};

bool read_into(const Reader& reader, std::FILE* file, Picture& picture,
               std::vector<png_bytep>& rows) {
    if (setjmp(png_jmpbuf(reader.png)))
        return false;
    png_init_io(reader.png, file);
    png_read_info(reader.png, reader.info);
    const bool is_wide = png_get_bit_depth(reader.png, reader.info) == 16;
    if (is_wide)
        png_set_swap(reader.png);
    if (!picture.create(static_cast<int>(png_get_image_width(reader.png, reader.info)),
                        static_cast<int>(png_get_image_height(reader.png, reader.info)),
                        png_get_channels(reader.png, reader.info),
                        is_wide ? Sample::u16 : Sample::u8))
        return false;
    for (int y = 0; y < picture.height(); ++y)
        rows.push_back(picture.row_data(y));
    png_read_image(reader.png, rows.data());
    png_read_end(reader.png, reader.info);
    return true;
}

} // namespace

Picture read_png(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               std::fclose);
    Picture picture;
    std::vector<png_bytep> rows;
    const Reader reader;
    if (!file || !read_into(reader, file.get(), picture, rows))
        picture.clear();
    return picture;
}

} // namespace orvex_test
