#pragma once

#include <string>
#include <vector>

#include <orvex_kit/layers.h>
#include <orvex_kit/picture_file.h>

#include "batch/batch_options.h"
#include "shared_options.h"

/// What the command line asks for.
struct Options : SharedOptions {
    std::string output; ///< empty: the model's name in the current folder
    orvex::kit::PictureFormat format = orvex::kit::PictureFormat::by_suffix;
    std::vector<orvex::kit::Layer>
        layers;            ///< pictures as data; empty: colours alone, as pictures are
    float distance = 1.0f; ///< of the eye, in parts of the distance at which all is seen
    float zoom = 1.0f;     ///< magnification from there
    int turntable = 0;     ///< pictures of a turn, each in a file of its own; 0: none
    int film = 0;          ///< pictures of a turn, all in one file; 0: none
    std::string track;     ///< a file with the way of the camera, for a film; empty: none
    std::string text;
    std::string text_place = "bottom-left";
    int text_size = 24; ///< height of a line in pixels
    Color text_color{1.0f, 1.0f, 1.0f, 1.0f};
    std::string device;        ///< that draws; empty: as the environment says
    std::string font;          ///< a charset file; empty: the built-in one
    std::string reference;     ///< a picture to compare with; empty: none
    int tolerance = 0;         ///< largest difference of a channel from it
    bool is_thumbnail = false; ///< a picture in which nothing can be seen is none
    bool info = false;
    bool json = false; ///< the way of `info`
    bool gl = false;
    bool list_devices = false;
    batch::BatchOptions batch; ///< of many models, in place of one
};

/// Adds the rules of the command line, which fill `options`.
void add_rules(Arguments& rules, Options& options);

/// Adds those of them that are about one model and its pictures, and not about the program as a
/// whole.
void add_model_rules(Arguments& rules, Options& options);

/// What doesn't go together in options; empty if all does.
std::string mistake_of(const Options& options);

/// Reads the command line. Looks at no file.
/// @return what is wrong with it; empty if nothing is
std::string read_options(const std::vector<std::string>& words, Options& options);

/// What `--help` prints.
std::string help_text();

/// How pictures are written: as asked for, or as the file's suffix says; a film for a film.
orvex::kit::PictureFormat format_of(const Options& options);
/// What a name ends in for a format, as ".png".
std::string suffix_for(orvex::kit::PictureFormat format);
/// The picture's file: as asked for, or the model's name.
std::string output_of(const Options& options);
/// Where a picture of the difference from the reference goes.
std::string difference_of(const Options& options);
/// How many pictures of a turn are drawn, 1 without one.
int pictures_of(const Options& options);
/// Whether there is a turn.
bool is_turn(const Options& options);
/// Whether all pictures go to one file.
bool is_film(const Options& options);
/// The files of all pictures: of a turntable each with its number, counted from 1, before its
/// suffix, with as many digits as the last one needs and at least three; of a film one.
/// @param addition  stands behind the name, before number and suffix
std::vector<std::string> outputs_of(const Options& options, const std::string& addition = "");
