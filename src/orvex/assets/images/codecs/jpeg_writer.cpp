// The JPEG writer: head and tables, then block by block from pixels to coefficients (jpeg_block.h)
// and from those to bits (jpeg_bits.h). The bytes are the same on every machine.

#include "orvex/assets/images/codecs/jpeg_writer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "orvex/assets/images/codecs/private/jpeg_bits.h"
#include "orvex/assets/images/codecs/private/jpeg_block.h"
#include "orvex/assets/images/codecs/private/jpeg_tables.h"
#include "orvex/math/private/lanes.h"

namespace orvex {

namespace {

using namespace jpeg;

struct Picture {
    const unsigned char* data;
    int width, height, comp;
};

/// What a quality makes of the standard tables: in zig-zag order as the file holds them, and as
/// factors for the coefficients in row order.
struct Quantisation {
    unsigned char Y[64], UV[64];
    float fdtbl_Y[64], fdtbl_UV[64];
};

/// The quality as a percentage to scale the tables with.
int table_scale(int quality) {
    quality = std::clamp(quality ? quality : 90, 1, 100);
    return quality < 50 ? 5000 / quality : 200 - quality * 2;
}

void fill_table(unsigned char* table, const unsigned char* standard, int scale) {
    for (int i = 0; i < 64; ++i)
        table[s_jo_ZigZag[i]] =
            static_cast<unsigned char>(std::clamp((standard[i] * scale + 50) / 100, 1, 255));
}

/// The fast transform leaves each coefficient scaled by a factor of its row and one of its column,
/// which is taken back here.
void fill_factors(float* factors, const unsigned char* table) {
    constexpr float aasf[8] = {1.0f * 2.828427f,      1.387040f * 2.828427f, 1.306563f * 2.828427f,
                               1.175876f * 2.828427f, 1.0f * 2.828427f,      0.785695f * 2.828427f,
                               0.541196f * 2.828427f, 0.275899f * 2.828427f};
    for (int row = 0, k = 0; row < 8; ++row)
        for (int col = 0; col < 8; ++col, ++k)
            factors[k] = 1.0f / (static_cast<float>(table[s_jo_ZigZag[k]]) * aasf[row] * aasf[col]);
}

Quantisation quantisation_for(int quality) {
    Quantisation q;
    const int scale = table_scale(quality);
    fill_table(q.Y, luminance_quantization, scale);
    fill_table(q.UV, chrominance_quantization, scale);
    fill_factors(q.fdtbl_Y, q.Y);
    fill_factors(q.fdtbl_UV, q.UV);
    return q;
}

template<std::size_t N>
void put(unsigned char*& next, const unsigned char (&bytes)[N]) {
    std::memcpy(next, bytes, N);
    next += N;
}

template<int N>
void put(unsigned char*& next, const HuffmanSpec<N>& table) {
    put(next, table.counts);
    put(next, table.symbols);
}

void put_big_endian(unsigned char*& next, int value) {
    *next++ = static_cast<unsigned char>(value >> 8);
    *next++ = static_cast<unsigned char>(value);
}

unsigned char* put_headers(unsigned char* next, const Picture& picture, const Quantisation& q) {
    // SOI, JFIF 1.1 without a unit of density, and the quantisation tables 0 and 1.
    put(next, {0xFF, 0xD8, 0xFF, 0xE0, 0, 0x10, 'J', 'F',  'I',  'F', 0,    1, 1,
               0,    0,    1,    0,    1, 0,    0,   0xFF, 0xDB, 0,   0x84, 0});
    put(next, q.Y);
    *next++ = 1;
    put(next, q.UV);
    // The frame: three components, none subsampled, the last two on table 1.
    put(next, {0xFF, 0xC0, 0, 0x11, 8});
    put_big_endian(next, picture.height);
    put_big_endian(next, picture.width);
    put(next, {3, 1, 0x11, 0, 2, 0x11, 1, 3, 0x11, 1});
    // The Huffman tables.
    put(next, {0xFF, 0xC4, 0x01, 0xA2, 0});
    put(next, dc_luminance);
    *next++ = 0x10;
    put(next, ac_luminance);
    *next++ = 0x01;
    put(next, dc_chrominance);
    *next++ = 0x11;
    put(next, ac_chrominance);
    // The one scan.
    put(next, {0xFF, 0xDA, 0, 0x0C, 3, 1, 0, 2, 0x11, 3, 0x11, 0, 0x3F, 0});
    return next;
}

std::uint32_t pixel_at(const unsigned char* bytes, int comp) {
    if (comp == 1)
        return bytes[0] * 0x010101u;
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16;
}

/// Eight pixels of three bytes, each with anything in its fourth, which nobody reads. The last one
/// is taken from the byte before it: behind it the picture may end.
void fetch_rgb_row(const unsigned char* from, std::uint32_t* out) {
    const auto four_bytes = [from](int place) {
        std::int32_t bytes = 0;
        std::memcpy(&bytes, from + place, sizeof bytes);
        return bytes;
    };
    lanes::store(out, ints4{four_bytes(0), four_bytes(3), four_bytes(6), four_bytes(9)});
    lanes::store(out + 4,
                 ints4{four_bytes(12), four_bytes(15), four_bytes(18), four_bytes(20) >> 8});
}

/// Fetches the block at (x, y). Beyond the picture its last row and column repeat.
void fetch_block(const Picture& picture, int x, int y, PixelBlock& block) {
    const auto comp = static_cast<std::size_t>(picture.comp);
    const std::size_t stride = static_cast<std::size_t>(picture.width) * comp;
    const bool whole = picture.width - x >= 8;
    std::uint32_t* out = block.pixels;
    for (int row = 0; row < 8; ++row, out += 8) {
        const int from_row = row < picture.height - y ? y + row : picture.height - 1;
        const unsigned char* from = picture.data + static_cast<std::size_t>(from_row) * stride +
                                    static_cast<std::size_t>(x) * comp;
        if (whole && picture.comp == 4) {
            std::memcpy(out, from, 32);
            continue;
        }
        if (whole && picture.comp == 3) {
            fetch_rgb_row(from, out);
            continue;
        }
        for (int col = 0; col < 8; ++col) {
            const int from_col = col < picture.width - x ? col : picture.width - 1 - x;
            out[col] = pixel_at(from + static_cast<std::size_t>(from_col) * comp, picture.comp);
        }
    }
}

/// Transforms, quantises and writes one component of a block.
/// @return its DC value
int jo_processDU(BitStream& stream, const PlaneBlock& block, const float* fdtbl, int previous_dc,
                 const HuffmanTable& dc_table, const HuffmanTable& ac_table) {
    std::int32_t quantised[64];
    Coefficients coefficients;
    transform_columns(block, fdtbl, quantised);
    collect(quantised, coefficients);
    return write_block(stream, coefficients, previous_dc, dc_table, ac_table);
}

struct PreviousDC {
    int Y = 0, U = 0, V = 0;
};

void write_pixels(BitStream& stream, const PixelBlock& pixels, const Quantisation& q,
                  PreviousDC& dc) {
    PlaneBlock y, u, v;
    for (int rows = 0; rows < 64; rows += 32) {
        const ColorColumns colors(pixels.pixels + rows);
        transform_rows<Luminance>(colors, y.values + rows);
        transform_rows<ChrominanceU>(colors, u.values + rows);
        transform_rows<ChrominanceV>(colors, v.values + rows);
    }
    dc.Y = jo_processDU(stream, y, q.fdtbl_Y, dc.Y, luminance_dc_codes, luminance_ac_codes);
    dc.U = jo_processDU(stream, u, q.fdtbl_UV, dc.U, chrominance_dc_codes, chrominance_ac_codes);
    dc.V = jo_processDU(stream, v, q.fdtbl_UV, dc.V, chrominance_dc_codes, chrominance_ac_codes);
}

/// More than the headers take.
constexpr std::size_t max_header_size = 1024;

void write_picture(std::FILE* file, const Picture& picture, const Quantisation& q) {
    ByteBuffer buffer(file);
    buffer.take_plain(put_headers(buffer.room_for(max_header_size), picture, q));
    BitStream stream{0, 0, buffer.begin()};
    PreviousDC dc;
    PixelBlock pixels;
    for (long y = 0; y < picture.height; y += 8) {
        for (long x = 0; x < picture.width; x += 8) {
            stream.next = buffer.make_room(stream.next);
            fetch_block(picture, static_cast<int>(x), static_cast<int>(y), pixels);
            write_pixels(stream, pixels, q, dc);
        }
    }
    // Ones fill the last byte; the end marker follows.
    stream.jo_writeBits(0x7F, 7);
    stream.next = buffer.make_room(stream.next);
    stream.store_bytes();
    buffer.take_coded(stream.next);
    unsigned char* last = buffer.room_for(2);
    put(last, {0xFF, 0xD9});
    buffer.take_plain(last);
    buffer.flush();
}

/// Whether the 16 bits of the header hold a side; what they cut would be read as another picture.
bool has_room_for(int side) {
    return side >= 1 && side <= 65535;
}

} // namespace

bool jo_write_jpg(const char* filename, const void* data, int width, int height, int comp,
                  int quality) {
    if (!data || !filename || !has_room_for(width) || !has_room_for(height) ||
        (comp != 1 && comp != 3 && comp != 4))
        return false;
    std::FILE* file = std::fopen(filename, "wb");
    if (!file)
        return false;
    write_picture(file, {static_cast<const unsigned char*>(data), width, height, comp},
                  quantisation_for(quality));
    std::fclose(file);
    return true;
}

} // namespace orvex
