#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <orvex_kit/compare.h>
#include <orvex_kit/frame_stream.h>
#include <orvex_kit/picture.h>
#include <orvex_kit/picture_file.h>

/// Where pictures go: each to a file of its own, or all of them to one film.
class Sink {
public:
    /// @param names   of the files; one alone for a film
    /// @param format  of all of them; by the suffix if it isn't named
    /// @param film    whether all pictures go to the first file
    Sink(std::vector<std::string> names, orvex::kit::PictureFormat format, bool film);

    /// Takes the next picture. @return what went wrong; empty if nothing did
    /// @param has_alpha  whether its alpha is kept, where the format has one. That of NPY files is
    ///                   always kept
    std::string put(const orvex::kit::Picture& picture, bool has_alpha = true);
    /// Ends what was begun, after the last picture. @return as `put`
    std::string finish();
    /// "wrote a.png", "wrote 3 pictures, a-001.png to a-003.png".
    std::string told() const;

private:
    std::vector<std::string> names;
    orvex::kit::PictureFormat format;
    std::unique_ptr<orvex::kit::FrameStream> film;
    std::size_t count = 0;

    orvex::kit::Outcome write(const orvex::kit::Picture& picture);
};

/// How a picture compares with a reference, of which the three colours count.
struct Likeness {
    std::string mistake;       ///< why they can't be compared
    std::string difference;    ///< in words; empty if they are equal
    orvex::kit::Picture shown; ///< where they differ; empty without a picture of that
};

/// Compares a picture with a reference.
/// @param largest  difference of a channel that still counts as equal, 0 to 255
Likeness judge(const orvex::kit::Picture& picture, const orvex::kit::Picture& reference,
               int largest);
