#pragma once

/// @file
/// FrameStream: pictures one after another, as films are fed to encoders.

#include <memory>
#include <string>

#include "orvex_kit/api.h"
#include "orvex_kit/outcome.h"
#include "orvex_kit/picture.h"
#include "orvex_kit/picture_file.h"

namespace orvex::kit {

/// How much colour a film keeps.
enum class Chroma {
    c420, ///< one colour for two by two pixels, as every player takes it
    c444, ///< one colour a pixel
};

/// How a film is written. All but the format is of YUV4MPEG2 alone.
struct FrameStreamOptions {
    /// `PictureFormat::raw` or `PictureFormat::y4m`; has to be named for standard output.
    PictureFormat format = PictureFormat::by_suffix;
    Chroma chroma = Chroma::c420; ///< how much colour is kept
    bool full_range = false;      ///< 0 to 255 in place of 16 to 235, which players expect
    int rate = 25;                ///< frames in `rate_seconds` seconds, from 1
    int rate_seconds = 1;         ///< as 30,000 frames in 1,001 seconds; from 1
};

/// Writes pictures of one size and kind one after another: raw samples, or YUV4MPEG2, which
/// encoders and players read from a pipe. To "-", standard output, and to pipes frame by frame; to
/// a file whole or not at all, as `WholeFile` does.
///
/// YUV4MPEG2 takes 8-bit pictures; alpha is left out, and the colours stay as they stand. They
/// become Y'CbCr by BT.601, 16 to 235 and 240 unless full range is asked for, which the header
/// tells as XCOLORRANGE. Chroma of 4:2:0 is the mean of its pixels and lies between them
/// (C420jpeg); the last column and row of odd sizes count twice.
///
/// One thread at a time.
///
/// @code
/// kit::FrameStream film("-", {kit::PictureFormat::y4m});
/// kit::Picture frame;
/// kit::Outcome outcome = frame.create(640, 480, 3, kit::Sample::u8);
/// for (int i = 0; i < 100 && outcome; ++i)
///     outcome = film.put(frame);
/// if (outcome)
///     outcome = film.finish();
/// @endcode
class ORVEX_KIT_API FrameStream {
public:
    /// Does nothing yet.
    /// @param path  as `write_picture` takes it
    explicit FrameStream(std::string path, const FrameStreamOptions& options = {});
    /// Removes what isn't finished, where that can be.
    ~FrameStream();
    FrameStream(const FrameStream&) = delete;
    FrameStream& operator=(const FrameStream&) = delete;

    /// Appends a picture. The first one begins the file, and settles size and kind.
    /// @return why it can't, with the file's name, as `write_picture`; also for another size or
    ///         kind, a format that holds no films, a rate below 1, and after `finish`. Once a frame
    ///         couldn't be written whole, every later call fails with that reason
    Outcome put(const Picture& picture);
    /// Ends the file, after the last `put`. @return as `put`; also for no frame
    Outcome finish();
    /// Pictures so far.
    long frames() const;

private:
    struct FrameStreamData;
    std::unique_ptr<FrameStreamData> data;
};

} // namespace orvex::kit
