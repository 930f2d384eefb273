#pragma once

#include <cmath>
#include <vector>

#include "orvex/assets/images/codecs/private/jpeg_tables.h"

/// @file
/// A JPEG writer as plain as it can be: one pixel, one coefficient, one bit code after another. The
/// engine's writer must give these bytes.

namespace orvex_test {

using namespace orvex;

class PlainJpeg {
public:
    static std::vector<unsigned char> write(const unsigned char* data, int width, int height,
                                            int comp, int quality) {
        PlainJpeg jpeg;
        jpeg.make_tables(quality);
        jpeg.headers(width, height);
        jpeg.blocks(data, width, height, comp);
        jpeg.jo_writeBits({0x7F, 7});
        jpeg.out.insert(jpeg.out.end(), {0xFF, 0xD9});
        return jpeg.out;
    }

private:
    using Code = jpeg::HuffmanCode;

    std::vector<unsigned char> out;
    unsigned char Y[64], UV[64];
    float fdtbl_Y[64], fdtbl_UV[64];
    int buffer = 0, count = 0;

    void make_tables(int quality) {
        if (quality == 0)
            quality = 90;
        if (quality < 1)
            quality = 1;
        if (quality > 100)
            quality = 100;
        const int q = quality < 50 ? 5000 / quality : 200 - quality * 2;
        const float factors[8] = {1.0f, 1.387040f, 1.306563f, 1.175876f,
                                  1.0f, 0.785695f, 0.541196f, 0.275899f};
        float aasf[8];
        for (int i = 0; i < 8; ++i)
            aasf[i] = 2.828427f * factors[i];
        for (int i = 0; i < 64; ++i) {
            Y[jpeg::s_jo_ZigZag[i]] = entry(jpeg::luminance_quantization[i], q);
            UV[jpeg::s_jo_ZigZag[i]] = entry(jpeg::chrominance_quantization[i], q);
        }
        for (int row = 0, k = 0; row < 8; ++row) {
            for (int col = 0; col < 8; ++col, ++k) {
                fdtbl_Y[k] =
                    1 / (static_cast<float>(Y[jpeg::s_jo_ZigZag[k]]) * aasf[row] * aasf[col]);
                fdtbl_UV[k] =
                    1 / (static_cast<float>(UV[jpeg::s_jo_ZigZag[k]]) * aasf[row] * aasf[col]);
            }
        }
    }

    static unsigned char entry(int standard, int q) {
        const int value = (standard * q + 50) / 100;
        return static_cast<unsigned char>(value < 1 ? 1 : value > 255 ? 255 : value);
    }

    template<typename Bytes>
    void append(const Bytes& bytes) {
        out.insert(out.end(), std::begin(bytes), std::end(bytes));
    }
    void append(std::initializer_list<int> bytes) {
        for (const int byte : bytes)
            out.push_back(static_cast<unsigned char>(byte));
    }

    void headers(int width, int height) {
        append({0xFF, 0xD8, 0xFF, 0xE0, 0, 0x10, 0x4A, 0x46, 0x49, 0x46, 0,    1, 1,
                0,    0,    1,    0,    1, 0,    0,    0xFF, 0xDB, 0,    0x84, 0});
        append(Y);
        append({1});
        append(UV);
        append({0xFF, 0xC0, 0, 0x11, 8, height >> 8 & 255, height & 255, width >> 8 & 255,
                width & 255, 3, 1, 0x11, 0, 2, 0x11, 1, 3, 0x11, 1});
        append({0xFF, 0xC4, 0x01, 0xA2, 0});
        append(jpeg::dc_luminance.counts);
        append(jpeg::dc_luminance.symbols);
        append({0x10});
        append(jpeg::ac_luminance.counts);
        append(jpeg::ac_luminance.symbols);
        append({0x01});
        append(jpeg::dc_chrominance.counts);
        append(jpeg::dc_chrominance.symbols);
        append({0x11});
        append(jpeg::ac_chrominance.counts);
        append(jpeg::ac_chrominance.symbols);
        append({0xFF, 0xDA, 0, 0x0C, 3, 1, 0, 2, 0x11, 3, 0x11, 0, 0x3F, 0});
    }

    void blocks(const unsigned char* data, int width, int height, int comp) {
        int dc_y = 0, dc_u = 0, dc_v = 0;
        for (int y = 0; y < height; y += 8) {
            for (int x = 0; x < width; x += 8) {
                float Yb[64], Ub[64], Vb[64];
                for (int row = y, pos = 0; row < y + 8; ++row) {
                    for (int col = x; col < x + 8; ++col, ++pos) {
                        int offset = row * width * comp + col * comp;
                        if (row >= height)
                            offset -= width * comp * (row + 1 - height);
                        if (col >= width)
                            offset -= comp * (col + 1 - width);
                        const float R = data[offset];
                        const float G = data[comp >= 2 ? offset + 1 : offset];
                        const float B = data[comp >= 2 ? offset + 2 : offset];
                        Yb[pos] = 0.299f * R + 0.587f * G + 0.114f * B - 128;
                        Ub[pos] = -0.16874f * R - 0.33126f * G + 0.5f * B;
                        Vb[pos] = 0.5f * R - 0.41869f * G - 0.08131f * B;
                    }
                }
                dc_y = jo_processDU(Yb, fdtbl_Y, dc_y, jpeg::luminance_dc_codes,
                                    jpeg::luminance_ac_codes);
                dc_u = jo_processDU(Ub, fdtbl_UV, dc_u, jpeg::chrominance_dc_codes,
                                    jpeg::chrominance_ac_codes);
                dc_v = jo_processDU(Vb, fdtbl_UV, dc_v, jpeg::chrominance_dc_codes,
                                    jpeg::chrominance_ac_codes);
            }
        }
    }

    int jo_processDU(float* block, const float* fdtbl, int previous_dc,
                     const jpeg::HuffmanTable& dc_table, const jpeg::HuffmanTable& ac_table) {
        for (int row = 0; row < 64; row += 8)
            jo_DCT(block + row, 1);
        for (int col = 0; col < 8; ++col)
            jo_DCT(block + col, 8);
        int DU[64];
        for (int i = 0; i < 64; ++i) {
            const float v = block[i] * fdtbl[i];
            DU[jpeg::s_jo_ZigZag[i]] =
                static_cast<int>(v < 0 ? std::ceil(v - 0.5f) : std::floor(v + 0.5f));
        }

        const int diff = DU[0] - previous_dc;
        if (diff == 0) {
            jo_writeBits(dc_table[0]);
        } else {
            const Code bits = jo_calcBits(diff);
            jo_writeBits(dc_table[bits.length]);
            jo_writeBits(bits);
        }

        int last = 63;
        while (last > 0 && DU[last] == 0)
            --last;
        if (last == 0) {
            jo_writeBits(ac_table[0]);
            return DU[0];
        }
        for (int i = 1; i <= last; ++i) {
            int zeroes = 0;
            while (DU[i] == 0) {
                ++i;
                ++zeroes;
            }
            for (; zeroes >= 16; zeroes -= 16)
                jo_writeBits(ac_table[0xF0]);
            const Code bits = jo_calcBits(DU[i]);
            jo_writeBits(ac_table[static_cast<unsigned>((zeroes << 4) + bits.length)]);
            jo_writeBits(bits);
        }
        if (last != 63)
            jo_writeBits(ac_table[0]);
        return DU[0];
    }

    /// The flow graph of the eight-point transform, at every `step`-th entry.
    static void jo_DCT(float* d, int step) {
        float &d0 = d[0], &d1 = d[step], &d2 = d[step * 2], &d3 = d[step * 3], &d4 = d[step * 4],
              &d5 = d[step * 5], &d6 = d[step * 6], &d7 = d[step * 7];
        const float s07 = d0 + d7, t07 = d0 - d7, s16 = d1 + d6, t16 = d1 - d6;
        const float s25 = d2 + d5, t25 = d2 - d5, s34 = d3 + d4, t34 = d3 - d4;

        const float p = s07 + s34, q = s07 - s34, r = s16 + s25, s = s16 - s25;
        d0 = p + r;
        d4 = p - r;
        const float z1 = (s + q) * 0.70710677f;
        d2 = q + z1;
        d6 = q - z1;

        const float a = t34 + t25, b = t25 + t16, c = t16 + t07;
        const float z5 = (a - c) * 0.38268343f;
        const float z2 = a * 0.5411961f + z5;
        const float z4 = c * 1.306563f + z5;
        const float z3 = b * 0.70710677f;
        const float z11 = t07 + z3, z13 = t07 - z3;
        d5 = z13 + z2;
        d3 = z13 - z2;
        d1 = z11 + z4;
        d7 = z11 - z4;
    }

    static Code jo_calcBits(int value) {
        int length = 1;
        for (int rest = (value < 0 ? -value : value) >> 1; rest; rest >>= 1)
            ++length;
        const int bits = (value - (value < 0 ? 1 : 0)) & ((1 << length) - 1);
        return {static_cast<unsigned short>(bits), static_cast<unsigned short>(length)};
    }

    void jo_writeBits(Code code) {
        count += code.length;
        buffer |= code.code << (24 - count);
        while (count >= 8) {
            const auto byte = static_cast<unsigned char>(buffer >> 16 & 255);
            out.push_back(byte);
            if (byte == 255)
                out.push_back(0);
            buffer = static_cast<int>(static_cast<unsigned>(buffer) << 8);
            count -= 8;
        }
    }
};

} // namespace orvex_test
