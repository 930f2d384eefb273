#pragma once

#include <string>

#include <orvex/math/vec4.h>
#include <orvex_kit/layers.h>
#include <orvex_kit/model_parts.h>
#include <orvex_kit/picture.h>

/// What layers look like on a screen.
struct FalseColors {
    orvex::vec4 background;    ///< where nothing is; opaque
    orvex::kit::Bounds bounds; ///< of the model in the world: corner to corner of the colours of
                               ///< positions
};

/// A layer as colours. Depths go from light, the nearest, to dark; the parts of normals and of
/// positions are red, green and blue; each object, material or face has a colour of its own as far
/// as there are enough.
/// @param shown    receives four 8-bit channels, opaque; stays as it was on failure
/// @param caption  receives what the colours mean, as "2.1 to 8.5"; empty where nothing is to tell
/// @return that memory ran out
orvex::kit::Outcome show_in_false_colors(orvex::kit::Layer layer, const orvex::kit::Picture& data,
                                         const FalseColors& colors, orvex::kit::Picture& shown,
                                         std::string& caption);
