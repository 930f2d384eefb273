#pragma once

/// @file
/// What must be true of a file before stb_image may read it: the mistakes that it doesn't find by
/// itself.

#include <cstddef>

namespace orvex {

/// An encoded picture in memory.
struct EncodedPicture {
    const unsigned char* bytes;
    std::size_t size;

    /// Whether these bytes stand at an offset.
    bool has(const char* text, std::size_t length, std::size_t at = 0) const;
};

/// Whether this is a Softimage PIC file.
bool is_pic(const EncodedPicture& file);

/// False for a JPEG file with a table of more codes than there are symbols, which would be written
/// past its end, or with more than a thousand scans, each of which goes through the whole picture.
bool is_sound_jpeg(const EncodedPicture& file);

/// Whether this is a Radiance HDR file.
bool is_hdr(const EncodedPicture& file);

/// Whether an HDR file has all the pixels that it announces. The decoder takes endless zeros for
/// what is missing, and waits for ever for a run among them to be of any length.
bool is_whole_hdr(const EncodedPicture& file, int width, int height);

} // namespace orvex
