#include "encoded_pictures.h"

#include <initializer_list>
#include <iterator>

#include <zlib.h>

namespace orvex_test {

RgbPicture four_colors() {
    return {2, 2, {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255}};
}

RgbPicture colored(int width, int height) {
    RgbPicture picture{width, height, {}};
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            picture.rgb.push_back(static_cast<unsigned char>(x * 3));
            picture.rgb.push_back(static_cast<unsigned char>(y * 5));
            picture.rgb.push_back(static_cast<unsigned char>(200 - x));
        }
    return picture;
}

namespace {

/// Bytes of a file as they come together.
class Writer {
public:
    Bytes bytes;

    /// Room from the start: GCC 12 at -O3 takes the growth of a small vector for an overflow.
    Writer() { bytes.reserve(4096); }

    Writer& text(const std::string& text) {
        bytes.insert(bytes.end(), text.begin(), text.end());
        return *this;
    }
    Writer& put(std::initializer_list<int> values) {
        for (const int value : values)
            bytes.push_back(static_cast<unsigned char>(value));
        return *this;
    }
    Writer& put(const Bytes& values) {
        bytes.insert(bytes.end(), values.begin(), values.end());
        return *this;
    }
    Writer& big(std::uint32_t value, int size) {
        for (int shift = size * 8 - 8; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<unsigned char>(value >> shift));
        return *this;
    }
    Writer& little(std::uint32_t value, int size) {
        for (int i = 0; i < size; ++i)
            bytes.push_back(static_cast<unsigned char>(value >> (i * 8)));
        return *this;
    }
    Writer& zeros(std::size_t count) {
        bytes.resize(bytes.size() + count);
        return *this;
    }
};

void png_chunk(Writer& file, const std::string& type, const Bytes& content) {
    Writer body;
    body.text(type).put(content);
    file.big(static_cast<std::uint32_t>(content.size()), 4).put(body.bytes);
    const auto size = static_cast<uInt>(body.bytes.size());
    file.big(static_cast<std::uint32_t>(crc32(0, body.bytes.data(), size)), 4);
}

Bytes deflated(const Bytes& bytes) {
    Bytes packed(compressBound(bytes.size()));
    uLongf size = packed.size();
    compress2(packed.data(), &size, bytes.data(), bytes.size(), 9);
    packed.resize(size);
    return packed;
}

/// One channel of a picture after the other.
Bytes channel_of(const RgbPicture& picture, std::size_t channel) {
    Bytes values;
    for (std::size_t i = channel; i < picture.rgb.size(); i += 3)
        values.push_back(picture.rgb[i]);
    return values;
}

} // namespace

Bytes png_of(int width, int height, int channels, const Bytes& filtered_rows) {
    Writer header;
    header.big(static_cast<std::uint32_t>(width), 4).big(static_cast<std::uint32_t>(height), 4);
    header.put({8, channels == 4 ? 6 : 2, 0, 0, 0});
    Writer file;
    file.put({0x89, 'P', 'N', 'G', 13, 10, 26, 10});
    png_chunk(file, "IHDR", header.bytes);
    png_chunk(file, "IDAT", deflated(filtered_rows));
    png_chunk(file, "IEND", {});
    return file.bytes;
}

Bytes png(const RgbPicture& picture, int channels) {
    Bytes rows;
    std::size_t from = 0;
    for (int y = 0; y < picture.height; ++y) {
        rows.push_back(0);
        for (int x = 0; x < picture.width; ++x) {
            for (int c = 0; c < 3; ++c)
                rows.push_back(picture.rgb[from++]);
            if (channels == 4)
                rows.push_back(static_cast<unsigned char>(x * 50 + y));
        }
    }
    return png_of(picture.width, picture.height, channels, rows);
}

Bytes bmp(const RgbPicture& picture) {
    const auto width = static_cast<std::uint32_t>(picture.width);
    const auto height = static_cast<std::uint32_t>(picture.height);
    const std::uint32_t row = (width * 3 + 3) / 4 * 4;
    Writer file;
    file.text("BM").little(54 + row * height, 4).little(0, 4).little(54, 4);
    file.little(40, 4).little(width, 4).little(height, 4).little(1, 2).little(24, 2).zeros(24);
    for (std::uint32_t y = height; y-- > 0;) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const unsigned char* pixel = &picture.rgb[(y * width + x) * 3];
            file.put({pixel[2], pixel[1], pixel[0]});
        }
        file.zeros(row - width * 3);
    }
    return file.bytes;
}

Bytes tga(const RgbPicture& picture) {
    Writer file;
    file.put({0, 0, 2}).zeros(9);
    file.little(static_cast<std::uint32_t>(picture.width), 2);
    file.little(static_cast<std::uint32_t>(picture.height), 2);
    file.put({24, 0x20});
    for (std::size_t i = 0; i < picture.rgb.size(); i += 3)
        file.put({picture.rgb[i + 2], picture.rgb[i + 1], picture.rgb[i]});
    return file.bytes;
}

Bytes psd(const RgbPicture& picture) {
    Writer file;
    file.text("8BPS").big(1, 2).zeros(6).big(3, 2);
    file.big(static_cast<std::uint32_t>(picture.height), 4);
    file.big(static_cast<std::uint32_t>(picture.width), 4);
    file.big(8, 2).big(3, 2).big(0, 4).big(0, 4).big(0, 4).big(0, 2);
    for (std::size_t channel = 0; channel < 3; ++channel)
        file.put(channel_of(picture, channel));
    return file.bytes;
}

Bytes pic(const RgbPicture& picture) {
    Writer file;
    file.put({0x53, 0x80, 0xF6, 0x34}).zeros(84).text("PICT");
    file.big(static_cast<std::uint32_t>(picture.width), 2);
    file.big(static_cast<std::uint32_t>(picture.height), 2);
    file.zeros(8);
    // One packet: not chained, 8 bits, uncompressed, red, green and blue.
    file.put({0, 8, 0, 0xE0}).put(picture.rgb);
    return file.bytes;
}

Bytes gif() {
    Writer file;
    file.text("GIF89a").little(2, 2).little(2, 2).put({0xF1, 0, 0});
    file.put({255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255});
    file.put({0x2C}).little(0, 2).little(0, 2).little(2, 2).little(2, 2).put({0});
    // Clear (4), 0, 1, 2 in three bits; by now there are eight codes, so 3 and the end (5) in four.
    const int codes[][2] = {{4, 3}, {0, 3}, {1, 3}, {2, 3}, {3, 4}, {5, 4}};
    std::uint32_t bits = 0;
    int count = 0;
    for (const auto& code : codes) {
        bits |= static_cast<std::uint32_t>(code[0]) << count;
        count += code[1];
    }
    file.put({2, 3}).little(bits, 3).put({0, 0x3B});
    return file.bytes;
}

Bytes hdr(const RgbPicture& picture) {
    Writer file;
    file.text("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y " + std::to_string(picture.height) +
              " +X " + std::to_string(picture.width) + "\n");
    const auto width = static_cast<std::size_t>(picture.width);
    for (std::size_t from = 0; from < picture.rgb.size(); from += width * 3) {
        const unsigned char* row = &picture.rgb[from];
        if (width < 8) {
            // 128 times 2 to the power of 129 - 136 is 1.
            for (std::size_t x = 0; x < width; ++x)
                file.put({row[x * 3] / 255 * 128, row[x * 3 + 1] / 255 * 128,
                          row[x * 3 + 2] / 255 * 128, 129});
            continue;
        }
        file.put({2, 2}).big(static_cast<std::uint32_t>(width), 2);
        for (std::size_t channel = 0; channel < 3; ++channel) {
            file.put({static_cast<int>(width)});
            for (std::size_t x = 0; x < width; ++x)
                file.put({row[x * 3 + channel] / 255 * 128});
        }
        file.put({128 + static_cast<int>(width), 129});
    }
    return file.bytes;
}

} // namespace orvex_test
