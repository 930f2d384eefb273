#pragma once

/// @file
/// Where the API puts the pixels of a read-back, and where it takes those of an upload from.

namespace orvex {

/// How the API packs pixels into memory. The host may have set it for reads of its own: rows
/// longer than the picture, or room left before it.
struct PixelPacking {
    unsigned long alignment;
    unsigned long row_length; ///< 0 for that of the picture
    unsigned long skip_pixels;
    unsigned long skip_rows;

    /// That of the current context.
    static PixelPacking current();

    /// How far a picture of one-byte channels may reach into memory; the largest number where no
    /// memory reaches that far.
    unsigned long size_of(unsigned long width, unsigned long height, unsigned long channels) const;
};

/// How the API finds the pixels of an upload. An upload sets the alignment; the rest is as a host
/// left it.
struct PixelUnpacking {
    unsigned long row_length = 0; ///< in pixels; 0 for that of the picture
    unsigned long skip_pixels = 0;
    unsigned long skip_rows = 0;
    bool from_buffer = false; ///< a buffer is bound, and an address means a place in it

    /// That of the current context.
    static PixelUnpacking current();

    /// How far into memory the API reads for a picture; the largest number where no memory reaches
    /// that far.
    /// @param pixel_size  bytes a pixel
    /// @param alignment   that the upload sets
    unsigned long reach_of(unsigned long width, unsigned long height, unsigned long pixel_size,
                           unsigned long alignment) const;
};

} // namespace orvex
