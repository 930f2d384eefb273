#pragma once

/// @file
/// How much memory lies behind the pointers of an `Image`, which hosts may write.
///
/// Whoever changes a pointer or the sizes goes through here: the note beside a pointer counts only
/// while the field still holds that pointer.

#include <memory>

#include "orvex/renderer/records/image.h"

namespace orvex {

/// Bytes per pixel of a format, 0 outside 1 to 7.
int bytes_per_pixel(PIXEL_FORMAT format);

/// Whether a format's pixels are bytes.
bool is_u8_format(PIXEL_FORMAT format);

/// What the rest of the engine may know of how much memory lies behind an image's pointers.
///
/// Sizes that nobody noted are those that the image claims, for external pixels; an owned buffer
/// that a host stored is trusted to hold anything.
struct Image::Access {
    /// @name Bytes that may be written behind the owned buffers; 0 without one.
    /// @{
    static unsigned long u8_capacity(const Image& image);
    static unsigned long f32_capacity(const Image& image);
    /// @}

    /// Bytes of all `width * height * depth` pixels in the image's format.
    static unsigned long claimed_bytes(const Image& image);
    /// @name Bytes that a copy may read behind the owned buffers, of which a host's own holds what
    /// the image claims.
    /// @{
    static unsigned long held_u8_bytes(const Image& image);
    static unsigned long held_f32_bytes(const Image& image);
    /// @}

    /// Bytes that may be read behind `pixmap_external`; 0 without it.
    static unsigned long external_bytes(const Image& image);
    /// Bytes that may be read behind `get_u8_ptr`.
    static unsigned long readable_u8_bytes(const Image& image);
    /// Bytes that may be read behind what holds pixels of `format`.
    static unsigned long readable_bytes(const Image& image, PIXEL_FORMAT format);

    /// Memory that isn't an image's, for what is read back and then cut; null if there is none.
    static std::unique_ptr<unsigned char[]> zeroed_bytes(unsigned long bytes);

    /// Replaces `pixmap_u8` by `bytes` fresh ones. The field is null while the allocation runs.
    static void allocate_u8(Image& image, unsigned long bytes);
    /// Replaces `pixmap_f32` by at least `bytes` fresh bytes.
    static void allocate_f32(Image& image, unsigned long bytes);
    /// Makes a buffer from `new[]` the image's own in place of the present one.
    static void adopt_u8(Image& image, unsigned char* buffer, unsigned long bytes);
    static void adopt_f32(Image& image, float* buffer, unsigned long bytes);

    /// Notes how many bytes lie behind the external pixels, whatever sizes the image has.
    static void note_external(Image& image, unsigned long bytes);
    /// The same for pixels that a codec has just written: as many as the image claims now.
    static void note_decoded(Image& image);
    /// Frees an owned 8-bit buffer that is too small for the image's sizes and would hide the
    /// external pixels.
    static void drop_small_u8(Image& image);

    /// The image's place among those that hold decoded pixels; see pixel_store.h.
    static Holder& holder(Image& image) { return image.holder; }
};

using ImageAccess = Image::Access;

/// External pixels outlive a change of the image's sizes; their own size goes with them.
class KeepExternalSize {
public:
    explicit KeepExternalSize(Image& image)
        : image(image)
        , bytes(ImageAccess::external_bytes(image)) {}
    KeepExternalSize(const KeepExternalSize&) = delete;
    KeepExternalSize& operator=(const KeepExternalSize&) = delete;
    ~KeepExternalSize() { ImageAccess::note_external(image, bytes); }

    void replace(unsigned long new_bytes) { bytes = new_bytes; }

private:
    Image& image;
    unsigned long bytes;
};

} // namespace orvex
