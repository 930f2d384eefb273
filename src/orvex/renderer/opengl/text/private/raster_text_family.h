#pragma once

/// @file
/// Raster text in the fixed pipeline.

#include "orvex/fwd.h"
#include "orvex/renderer/opengl/state/private/gl_state.h"
#include "orvex/renderer/opengl/text/private/glut_text.h"

namespace orvex {

/// Draws texts with GLUT's characters. What can't be drawn is told in the log, once.
///
/// Both operations return false for a null font or text, for a length of 0, and without a GLUT
/// library that can be used. The length says only whether there is a text, which is drawn to its
/// terminating zero. They leave blending and the depth test off, and the colour white.
class RasterTextFamily {
public:
    /// @param state  takes the log line; it outlives the object
    explicit RasterTextFamily(GlState& state)
        : state(state) {}

    /// Draws at a pixel of the font's viewport, from the top left corner on.
    bool draw(const FontData* font, int x, int y, const vec4& color, const char* text,
              unsigned long length);
    /// Draws at a point, by the matrices that are loaded.
    bool draw_3d(const FontData* font, float x, float y, float z, const vec4& color,
                 const char* text, unsigned long length);

    GlutText characters; ///< where they come from

private:
    bool prepare();

    GlState& state;
    bool told = false; // why it can't be drawn stands in the log
};

} // namespace orvex
