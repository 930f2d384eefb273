#pragma once

/// @file
/// Decoding of pictures through stb_image, compiled into this library alone, with a budget of
/// memory for each picture. Any thread may decode.

#include <memory>

namespace orvex {

/// Gives pixels back to the decoder's memory; null is passed over.
void stb_free(unsigned char* pixels);

struct StbFree {
    void operator()(unsigned char* pixels) const { stb_free(pixels); }
};

using StbPixels = std::unique_ptr<unsigned char, StbFree>;

/// Decodes to three 8-bit channels, rows from the top down without padding.
///
/// The memory that may be held at any moment is in proportion to the size that the picture
/// announces, so that a small lie can't ask for gigabytes.
/// @param bytes,size  the encoded picture; at most INT_MAX bytes
/// @param limit  bytes that may be held, whatever the picture announces
/// @param[out] width @param[out] height  written on success only
/// @return null for what can't be decoded
StbPixels stb_decode(const unsigned char* bytes, unsigned long size, unsigned long limit,
                     int* width, int* height);

} // namespace orvex
