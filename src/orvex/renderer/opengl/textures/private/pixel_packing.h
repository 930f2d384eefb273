#pragma once

/// @file
/// Where the API puts the pixels of a read-back.

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

} // namespace orvex
