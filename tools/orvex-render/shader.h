#pragma once

#include <string>

/// The text of the program that lights models, for one of the drawing paths. It takes the lights'
/// directions as the camera sees them, and the uniforms that `ModelScene` sets for each material.
std::string model_shader(bool gl3);

/// The text of the program that draws glyphs: the sheet's red is how opaque a pixel is.
std::string text_shader(bool gl3);
