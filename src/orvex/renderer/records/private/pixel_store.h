#pragma once

/// @file
/// Who owns decoded pixels, kept in one place for the whole process.
///
/// Pixels change hands twice. A decoder lends them to the image that it decodes into, together with
/// what frees them; a texture that takes the image over holds them. When the last texture lets go,
/// they go back to their decoder:
///
///     decoder --lend_pixels--> image --hold_pixels--> texture --end_hold, then take_back_pixels-->
///     decoder
///
/// Images carry no more than a pointer, which hosts may copy and write, so that whether a pointer
/// is a decoder's is asked here. Only a loan and a first hold allocate; what ends one never does,
/// and the destructor of an image that holds nothing does not come here at all. Any thread.

#include "orvex/fwd.h"

namespace orvex {

/// Pixels that a decoder made, and what frees them.
struct PixelStore {
    unsigned char* pixels = nullptr;
    unsigned long bytes = 0;
    void (*free_pixels)(unsigned char* pixels) = nullptr;
};

/// Makes a decoder's pixels the image's external ones. Throws `std::bad_alloc`, with nothing
/// changed: the pixels are still the decoder's.
void lend_pixels(Image& image, const PixelStore& store);

/// Frees the external pixels and nulls the pointer, if a decoder lent them that frees them so.
/// @return false, with nothing changed, if not
bool take_back_pixels(Image& image, void (*free_pixels)(unsigned char* pixels));

/// Says that an image of a texture now holds its external pixels, and no longer those that it held
/// before. Null pixels end the hold.
void hold_pixels(Image& image);

/// Ends the hold of an image, which may end itself then.
/// @return whether another one still holds its external pixels; one whose pointer a host has
/// changed
///         since doesn't
bool end_hold(Image& image);

} // namespace orvex
