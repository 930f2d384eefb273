#include "options.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

char const* usage() {
    return "usage: render_model --model FILE [options]\n"
           "\n"
           "Renders a model with its materials and textures, and writes the picture as JPEG.\n"
           "\n"
           "  --model FILE      the model: Wavefront OBJ, with its material library beside it\n"
           "  --size WxH        size of the picture in pixels (800x600)\n"
           "  --output FILE     the picture (model.jpg)\n"
           "  --path gl2|gl3    compatibility context and fixed arrays, or core context and\n"
           "                    generic attributes (gl3)\n"
           "  --frames N        draw N frames; 0 with --x11 draws until the window is closed (1)\n"
           "  --x11             draw into an X11 window instead of off screen\n"
           "  --loads N         load, draw and release the model N times (1)\n"
           "  --help            this text\n";
}

namespace {

/// A whole decimal number within limits; -1 for anything else.
int number_from(char const* text, int least, int most) {
    char* end = nullptr;
    const long value = std::strtol(text, &end, 10);
    const bool whole = end != text && *end == '\0';
    return whole && value >= least && value <= most ? static_cast<int>(value) : -1;
}

bool read_size(char const* text, Options& options) {
    constexpr int largest = 16384;
    int end = 0;
    const bool whole = std::sscanf(text, "%5dx%5d%n", &options.width, &options.height, &end) == 2 &&
                       text[end] == '\0';
    return whole && options.width > 0 && options.height > 0 && options.width <= largest &&
           options.height <= largest;
}

bool read_path(char const* text, Options& options) {
    options.gl3 = std::strcmp(text, "gl3") == 0;
    return options.gl3 || std::strcmp(text, "gl2") == 0;
}

bool read_text(char const* text, std::string& value) {
    value = text;
    return !value.empty();
}

/// Takes an option with a value. @return false when the value is no good
bool read_value(std::string const& option, char const* value, Options& options) {
    if (option == "--model")
        return read_text(value, options.model);
    if (option == "--output")
        return read_text(value, options.output);
    if (option == "--size")
        return read_size(value, options);
    if (option == "--path")
        return read_path(value, options);
    if (option == "--frames")
        return (options.frames = number_from(value, 0, 1000000)) >= 0;
    return (options.loads = number_from(value, 1, 1000000)) >= 1;
}

bool has_value(std::string const& option) {
    for (char const* known : {"--model", "--output", "--size", "--path", "--frames", "--loads"})
        if (option == known)
            return true;
    return false;
}

} // namespace

Options read_options(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (option == "--help") {
            options.help = true;
        } else if (option == "--x11") {
            options.x11 = true;
        } else if (!has_value(option)) {
            options.mistake = "unknown option '" + option + "'";
            return options;
        } else if (++i == argc) {
            options.mistake = option + " needs a value";
            return options;
        } else if (!read_value(option, argv[i], options)) {
            options.mistake = option + " can't be '" + argv[i] + "'";
            return options;
        }
    }
    if (options.model.empty())
        options.mistake = "no model given";
    else if (options.frames == 0 && !options.x11)
        options.mistake = "--frames 0 needs --x11: nobody could end it off screen";
    return options;
}
