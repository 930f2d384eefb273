#pragma once

#include <string>

/// The text of a program whose two stages are written for both drawing paths, for one of them:
/// POSITION, NORMAL, TEXCOORD and VERTEX_COLOR are the vertex, OUT and IN what the stages share,
/// SAMPLE reads a texture, COLOR is the pixel.
std::string program_text(bool gl3, const char* vertex, const char* pixel);

/// The text of the program that lights models, with the uniforms that `ModelScene` sets.
std::string model_shader(bool gl3);

/// The text of the program that draws glyphs in the colours of their vertices: the sheet's red is
/// how opaque a pixel is.
std::string text_shader(bool gl3);
