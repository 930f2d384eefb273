#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// @file
/// Small encoded pictures made by hand, one for each format that is read.

namespace orvex_test {

using Bytes = std::vector<unsigned char>;

/// Rows of red, green and blue from the top down, and how to put them into files.
struct RgbPicture {
    int width, height;
    Bytes rgb;
};

/// Red and green above blue and white.
RgbPicture four_colors();
/// Any size, with no two pixels of a row alike.
RgbPicture colored(int width, int height);

/// @name Encoders
/// @{
/// `alpha` 3 for RGB, 4 for RGBA with varying alpha.
Bytes png(const RgbPicture& picture, int channels);
/// A PNG that announces one size and holds any bytes in its place.
Bytes png_of(int width, int height, int channels, const Bytes& filtered_rows);
Bytes bmp(const RgbPicture& picture);
Bytes tga(const RgbPicture& picture);
Bytes psd(const RgbPicture& picture);
Bytes pic(const RgbPicture& picture);
/// Only the four colours.
Bytes gif();
/// Values of 0 and 255 only. Flat below a width of 8, else in runs.
Bytes hdr(const RgbPicture& picture);
/// @}

} // namespace orvex_test
