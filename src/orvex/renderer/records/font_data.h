#pragma once

/// @file
/// The record of a platform font.

#include "orvex/api.h"

namespace orvex {

/// What `Renderer::font_bitmap_linux_render` wants to know of a font: a plain record, owned by the
/// font that hands it over.
struct FontData {
    char name[128] = "Arial";            ///< typeface asked for; OpenGL has one of its own
    unsigned long size = 14;             ///< height of a line in pixels
    unsigned long renderer_handle = 0;   ///< for a back end
    unsigned int renderer_words[4] = {}; ///< for a back end
    int viewport_x = 0;                  ///< left edge of the area that text is placed in
    int viewport_y = 0;                  ///< lower edge of that area
    int viewport_width = 0;              ///< pixels; OpenGL doesn't read it
    int viewport_height = 0;             ///< pixels, from the lower edge up to where y is 0
    int renderer_id = 0;                 ///< id of the renderer that filled its fields, 0 for none
};

} // namespace orvex
