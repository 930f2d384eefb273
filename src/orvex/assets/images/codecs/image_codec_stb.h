#pragma once

/// @file
/// ImageCodecStb: the built-in image decoder, and the writer of JPEG.

#include "orvex/api.h"
#include "orvex/base/image_codec.h"

namespace orvex {

/// The built-in image codec: reads JPEG, PNG, TGA, BMP, PSD, GIF, HDR and PIC through stb_image,
/// and writes JPEG.
///
/// The kernel makes it, and the plugin registry and `TextureMgr` hold it. Pictures are decoded to
/// red, green and blue with 8 bits each, rows from the top down: an alpha channel is dropped, and
/// HDR pictures are mapped to 8 bits. Any thread may decode and encode, each with an image of its
/// own.
///
/// A picture that can't be decoded, or that needs more memory than its size warrants or the host
/// allows, is refused without a message, and its image stays as it was.
///
/// @code
/// orvex::Image image;
/// if (codec->load_image_from_file(&image, "wood.png", false))
///     ...
/// codec->free_image_resources(&image);
/// @endcode
class ORVEX_API ImageCodecStb : public ImageCodec {
public:
    /// Named and described, not yet registered anywhere.
    ImageCodecStb();
    ~ImageCodecStb() override;

    /// Reads a whole regular file and decodes it as `load_image_from_memory` does, which is given
    /// one byte more than the file has, a 0.
    /// @return false also for a file of 2 GiB or more
    bool load_image_from_file(Image* image, const char* filename, bool mirror) override;

    /// Decodes a picture.
    /// @param image  receives width, height and format 1 (`PF_RGB_U8`)
    /// @param bytes,size  the encoded picture, at most INT_MAX bytes
    /// @param mirror  false: `pixmap_external` points to the decoder's memory, which is to be given
    ///                back with `free_image_resources`. True: the image gets pixels of its own,
    ///                each row turned left to right, as a square of the picture's width: rows
    ///                beyond it are cut, and missing ones are black.
    bool load_image_from_memory(Image* image, unsigned char* bytes, unsigned long size,
                                bool mirror) override;

    /// Writes a JPEG file with quality 90, whatever the name says.
    ///
    /// Bytes go out in memory order, so formats 2 and 4 come out with red and blue exchanged. Of
    /// the float formats 5 and 6 each channel is `trunc(f * 255.0)`, unclamped.
    /// @return false also for other formats, and without pixels for the image's size
    bool save_image_to_file(Image* image, const char* filename) override;

    /// As `free_decoded_pixels`.
    bool free_image_resources(Image* image) override;

    /// Frees `pixmap_external` and nulls it, if this class decoded it. Needs no codec, so that
    /// pixels may outlive every one.
    /// @return false, with nothing changed, for null and for pixels that are not the decoder's, or
    ///         no longer
    static bool free_decoded_pixels(Image* image);

    /// Sets how many bytes a decode may hold at any moment, its result included; 2 GiB at first.
    /// Counts for decodes that begin later, on all threads.
    static void set_memory_limit(unsigned long bytes);
    static unsigned long get_memory_limit(); ///< as set; 2 GiB at first

private:
    bool write(const Image& image, const char* filename) const;
};

} // namespace orvex
