#pragma once

/// @file
/// Keeps count of which images of textures hold pixels that still belong to a codec, so that they
/// go back to it once and not while another texture shows them. Safe from any thread.

namespace orvex {

class Image;
struct TextureData;

/// Takes down that this image of a texture now holds the pixels behind its external pointer, and
/// gives back those that it held before.
/// @param before  the external pointer as it was; null for none
void take_decoded_pixels(Image& image, unsigned char* before);

/// Ends the hold. The codecs are asked in their order to free the pixels until one says true; if
/// another texture's image holds them too, only this image's pointer is cleared. Codecs are asked
/// about an image without external pixels as well.
void give_back_decoded_pixels(Image& image);

/// The same for the base image and the six faces; images without external pixels are passed over.
void give_back_decoded_pixels(TextureData& data);

/// Forgets a record that ends.
void forget_decoded_pixels(TextureData& data);

} // namespace orvex
