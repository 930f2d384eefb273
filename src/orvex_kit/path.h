#pragma once

/// @file
/// The engine's two ways to draw.

namespace orvex::kit {

/// How models are drawn, and on what kind of context.
enum class Path {
    gl3, ///< generic attributes, on a core context of OpenGL 3.2 or later
    gl2, ///< client arrays and the fixed matrices, on a compatibility context of OpenGL 2.1 or
         ///< later
};

} // namespace orvex::kit
