#pragma once

/// @file
/// What textures do with pixels that still belong to a codec, so that they go back to it once and
/// not while another texture shows them. Safe from any thread.

#include "orvex/fwd.h"

namespace orvex {

/// The image of a texture takes over what another image has: a copy of its own pixels, or the
/// codec's as they are. The decoded pixels that it had before are given back.
/// @return true; false for null
bool take_over(Image* target, const Image* source);

/// Says that an image of a texture has had pixels decoded right into it, and gives back those that
/// it held before.
/// @param before  the external pointer as it was; null for none
void take_decoded_pixels(Image& image, unsigned char* before);

/// Ends the hold. The codecs are asked in their order to free the pixels until one says true; if
/// another texture's image holds them too, only this image's pointer is cleared. Codecs are asked
/// about an image without external pixels as well.
void give_back_decoded_pixels(Image& image);

/// The same for the base image and the six faces; images without external pixels are passed over.
void give_back_decoded_pixels(TextureData& data);

} // namespace orvex
