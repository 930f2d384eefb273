#pragma once

/// @file
/// ImageCodec: the interface of image decoders and encoders.

#include "orvex/api.h"
#include "orvex/base/plugin.h"

namespace orvex {

class Image;

/// Turns encoded bytes into an `Image` and back. A plugin of type `PLUGIN_TYPE_IMAGE_CODEC`, which
/// concrete codecs set in their constructor.
///
/// `TextureMgr` holds the registered codecs and asks them in turn. Decoding needs no graphics
/// context and may run on a worker thread.
class ORVEX_API ImageCodec : public Plugin {
public:
    /// As `Plugin`.
    ImageCodec();
    ~ImageCodec() override;

    /// Decodes a file.
    /// @param image     receives size, format and pixels
    /// @param filename  a path, taken as given
    /// @param mirror    mirrors the picture left to right
    /// @return false for null, a file that can't be read and content that can't be decoded
    virtual bool load_image_from_file(Image* image, const char* filename, bool mirror) = 0;

    /// Decodes `size` bytes of memory, which stay the caller's.
    /// @return false for null, no bytes and content that can't be decoded
    virtual bool load_image_from_memory(Image* image, unsigned char* bytes, unsigned long size,
                                        bool mirror) = 0;

    /// Writes an image to a file.
    /// @return false for null, a format that can't be written and a file that can't be opened
    virtual bool save_image_to_file(Image* image, const char* filename) = 0;

    /// Gives back pixels that this codec decoded into memory of its own.
    /// @return false, changing nothing, for null and for pixels that are not this codec's
    virtual bool free_image_resources(Image* image) = 0;
};

} // namespace orvex
