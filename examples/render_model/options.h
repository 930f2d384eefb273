#pragma once

#include <string>

/// What the command line asks for.
struct Options {
    std::string model;
    std::string output = "model.jpg";
    int width = 800;
    int height = 600;
    int frames = 1;   ///< 0: until the window is closed
    int loads = 1;    ///< how often the model is loaded, drawn and released
    bool gl3 = true;  ///< core context and generic attributes, or the compatibility way
    bool x11 = false; ///< a window of our own, or no screen at all
    bool help = false;
    std::string mistake; ///< what is wrong with the command line; empty if nothing is
};

/// Reads the command line. Looks at no file.
Options read_options(int argc, char** argv);

/// How the program is called.
char const* usage();
