#pragma once

/// @file
/// Pictures to files, and from them.

#include <string>
#include <vector>

#include <orvex/fwd.h>

#include "orvex_kit/api.h"
#include "orvex_kit/outcome.h"
#include "orvex_kit/picture.h"

namespace orvex::kit {

/// How a picture lies in a file.
enum class PictureFormat {
    by_suffix, ///< as the suffix of the file's name says, in any case
    png,       ///< `.png`: 8-bit and 16-bit, with straight alpha, losslessly
    jpeg,      ///< `.jpg`, `.jpeg`: 8-bit, by the engine's writer; without alpha
    npy,       ///< `.npy`: any samples as they are, an array of NumPy
    exr,       ///< `.exr`: any samples, several layers a file; where the kit was built with OpenEXR
    raw,       ///< `.raw`: the samples alone, as they lie in memory
    y4m,       ///< `.y4m`: 8-bit, a film of one picture; `FrameStream` takes more
};

/// What a format is called, which is also the suffix of its files without the dot: "png", "jpg",
/// "npy", "exr", "raw", "y4m"; empty for `PictureFormat::by_suffix` and a value outside the list.
ORVEX_KIT_API const char* name_of(PictureFormat format) noexcept;
/// The format of a name as people type it: "png", "jpg" or "jpeg", "npy", "exr", "raw", "y4m".
/// @return `PictureFormat::by_suffix` for any other
ORVEX_KIT_API PictureFormat picture_format_named(const std::string& name);
/// The format that a file's suffix stands for. @return `PictureFormat::by_suffix` if it is none
ORVEX_KIT_API PictureFormat picture_format_of(const std::string& path);
/// Whether this build writes that format; false for `PictureFormat::by_suffix`.
ORVEX_KIT_API bool can_write_format(PictureFormat format);

/// How a picture is written.
struct PictureFileOptions {
    PictureFormat format = PictureFormat::by_suffix; ///< has to be named for standard output
    int jpeg_quality = 90;                           ///< 1 to 100, clamped
};

/// Writes a picture, whole or not at all, as `WholeFile` does. The path "-" is standard output,
/// which gets the bytes by the system's `write`: flush before what was printed.
///
/// PNG: one to four channels as grey, grey with alpha, RGB, RGBA; the colours are as they stand,
/// and no profile is told. NPY: shape (height, width), or (height, width, channels) from two on,
/// little-endian, row by row. OpenEXR: as one layer without a name, see `write_layers`. JPEG:
/// colours as they stand, whatever their alpha; the second of two channels is left out. YUV4MPEG2:
/// as `FrameStream` writes it unless told otherwise.
/// @return why it can't be written, with the file's name: an empty picture, a suffix that is no
///         format, samples that the format can't hold, memory, a disk that is full, a folder that
///         isn't there. What stood there stays then. Any thread; never throws but for a short text
ORVEX_KIT_API Outcome write_picture(const Picture& picture, const std::string& path,
                                    const PictureFileOptions& options = {});

/// One layer of a file of several.
struct PictureLayer {
    std::string name;                 ///< as "depth"; empty for the layer that viewers show first
    const Picture* picture = nullptr; ///< the caller's, which has to live until the file is written
    std::string channels;             ///< a letter a channel, as "XYZ"; empty: Y, YA, RGB or RGBA
};

/// Writes pictures of one size into one OpenEXR file, each as channels of the name "layer.R", or
/// "R" for a layer without a name. Floats lie there as they are, 32-bit integers as unsigned ones
/// of the same bits (-1 reads 4,294,967,295), 16-bit samples as floats and 8-bit ones as halves of
/// 0 to
/// 1. Colours and alpha stay as they stand: neither linear nor multiplied unless they are so.
/// Compressed without a loss (ZIP).
/// @return as `write_picture`; also for no layer, null, an empty picture, other sizes, letters that
///         don't fit, a name that comes twice, and every format but OpenEXR
ORVEX_KIT_API Outcome write_layers(const std::vector<PictureLayer>& layers, const std::string& path,
                                   const PictureFileOptions& options = {});

/// Writes what stands in the back buffer, in the size of the viewport, with its alpha. On the
/// renderer's thread.
/// @return as `write_picture`; also for null
ORVEX_KIT_API Outcome write_screenshot(Renderer* renderer, const std::string& path,
                                       const PictureFileOptions& options = {});

/// Reads a picture as a reference, by the engine's decoder: PNG, JPEG, TGA, BMP, PSD, GIF, HDR and
/// PIC, as three 8-bit channels. An alpha channel is left out, and 16 bits become 8.
/// @param picture  receives it; stays as it was if it can't be read
/// @return why it can't be read, with the file's name. Any thread
ORVEX_KIT_API Outcome read_picture(const std::string& path, Picture& picture);

} // namespace orvex::kit
