#pragma once

/// @file
/// The texts of the programs that the kit draws with, for either drawing path.

#include <string>

#include "orvex_kit/api.h"

namespace orvex::kit {

/// The text of a program whose two stages are written for both drawing paths, for one of them:
/// POSITION, NORMAL, TEXCOORD and VERTEX_COLOR are the vertex, OUT and IN what the stages share,
/// SAMPLE reads a texture, COLOR is the pixel.
ORVEX_KIT_API std::string program_text(bool gl3, const char* vertex, const char* pixel);

/// The text of the program that lights models, with the uniforms that `Model` sets.
ORVEX_KIT_API std::string model_shader(bool gl3);

/// The text of the program that draws glyphs in the colours of their vertices: the sheet's red is
/// how opaque a pixel is.
ORVEX_KIT_API std::string text_shader(bool gl3);

} // namespace orvex::kit
