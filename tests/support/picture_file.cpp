#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>

#include <zlib.h>

#include "picture.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#include <stb_image.h>
#pragma GCC diagnostic pop

namespace orvex_test {

namespace {

using Bytes = std::vector<unsigned char>;

void append_number(Bytes& bytes, std::uint32_t number) {
    for (int shift : {24, 16, 8, 0})
        bytes.push_back(static_cast<unsigned char>(number >> shift));
}

void append_chunk(Bytes& file, const char* type, const Bytes& data) {
    append_number(file, static_cast<std::uint32_t>(data.size()));
    const std::size_t begin = file.size();
    file.insert(file.end(), type, type + 4);
    file.insert(file.end(), data.begin(), data.end());
    append_number(file, static_cast<std::uint32_t>(
                            crc32(0, &file[begin], static_cast<uInt>(file.size() - begin))));
}

Bytes header(const Picture& picture) {
    Bytes data;
    append_number(data, static_cast<std::uint32_t>(picture.width));
    append_number(data, static_cast<std::uint32_t>(picture.height));
    // 8 bits, red green blue alpha, and the only method of each of the rest.
    data.insert(data.end(), {8, 6, 0, 0, 0});
    return data;
}

/// Each row as its differences from the row above, which compresses rendered pictures well.
Bytes filtered_rows(const Picture& picture) {
    constexpr unsigned char difference_from_above = 2;
    const std::size_t stride = static_cast<std::size_t>(picture.width) * 4;
    Bytes rows;
    for (int y = 0; y < picture.height; ++y) {
        rows.push_back(difference_from_above);
        const unsigned char* row = picture.at(0, y);
        for (std::size_t i = 0; i < stride; ++i) {
            const int above =
                y > 0 ? row[static_cast<std::ptrdiff_t>(i) - static_cast<std::ptrdiff_t>(stride)]
                      : 0;
            rows.push_back(static_cast<unsigned char>(row[i] - above));
        }
    }
    return rows;
}

Bytes compressed(const Bytes& data) {
    uLongf size = compressBound(data.size());
    Bytes result(size);
    compress2(result.data(), &size, data.data(), data.size(), Z_BEST_COMPRESSION);
    result.resize(size);
    return result;
}

bool write_file(const std::string& path, const Bytes& bytes) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (!file)
        return false;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && written;
}

} // namespace

bool write_png(const std::string& path, const Picture& picture) {
    Bytes file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    append_chunk(file, "IHDR", header(picture));
    append_chunk(file, "IDAT", compressed(filtered_rows(picture)));
    append_chunk(file, "IEND", {});
    return write_file(path, file);
}

std::optional<Picture> read_picture(const std::string& path) {
    int width = 0, height = 0, channels = 0;
    const std::unique_ptr<stbi_uc, decltype(&stbi_image_free)> pixels(
        stbi_load(path.c_str(), &width, &height, &channels, 4), &stbi_image_free);
    if (!pixels)
        return std::nullopt;
    Picture picture(width, height);
    std::copy_n(pixels.get(), picture.pixels.size(), picture.pixels.begin());
    return picture;
}

} // namespace orvex_test
