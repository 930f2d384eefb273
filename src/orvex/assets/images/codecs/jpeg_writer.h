#pragma once

#include "orvex/api.h"

namespace orvex {

/// Writes 8-bit pixels as a baseline JPEG file with a JFIF header, Huffman coding and no chroma
/// subsampling. The same pixels and quality give the same bytes on every machine.
///
/// May run on several threads at once, on different files.
///
/// @param filename  a path, taken as given; an existing file is replaced
/// @param data      rows from the top down without padding, `width * height * comp` bytes, of which
///                  the first three per pixel are red, green and blue
/// @param width,height  pixels, 1 to 65,535: the format has room for no more
/// @param comp      bytes per pixel: 1 for grey, 3, or 4 with a byte that is skipped
/// @param quality   1 to 100, clamped; 0 means 90
/// @return false, without a file, for null, a size out of range, another `comp`, or a file that
///         can't be opened. A failure on the way through the file, as of a full disk, is not
///         noticed.
///
/// @code
/// orvex::jo_write_jpg("frame.jpg", pixels, 1920, 1080, 4, 90);
/// @endcode
ORVEX_API bool jo_write_jpg(const char* filename, const void* data, int width, int height, int comp,
                            int quality);

} // namespace orvex
