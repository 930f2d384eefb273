#pragma once

/// @file
/// The vertices of a text.

#include "orvex/overlays/private/font_state.h"
#include "orvex/renderer/records/vertex.h"

namespace orvex {

/// Every glyph is two triangles.
constexpr unsigned long vertices_per_glyph = 6;

/// Writes the quads of a text: positions, colours and the first texture coordinates, front to back,
/// as memory of the GPU wants it.
/// @param vertices  room for six per byte of the text
/// @param scale     units of the object per pixel of the sheet
/// @return where the next text's vertices begin
Vertex* write_bm_quads(Vertex* vertices, const bm_string& string, const BMCharset& charset,
                       float scale);

} // namespace orvex
