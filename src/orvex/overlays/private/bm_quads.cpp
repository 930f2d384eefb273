#include "orvex/overlays/private/bm_quads.h"

namespace orvex {

namespace {

/// Edges of a quad on screen and on the sheet; `top` is above `bottom` in both.
struct Quad {
    float left, right, top, bottom;
    float u_left, u_right, v_top, v_bottom;
};

Quad quad_of(const BMCharDescriptor& glyph, float cursor, float line_top, float scale,
             float sheet_width, float sheet_height) {
    const float width = glyph.width;
    const float height = glyph.height;
    const float u = glyph.x / sheet_width;
    const float v = glyph.y / sheet_height;
    const float left = cursor + glyph.xoffset * scale;
    const float top = line_top - glyph.yoffset * scale;
    return {left, left + width * scale,    top,      top - height * scale,
            u,    u + width / sheet_width, 1.0f - v, 1.0f - (v + height / sheet_height)};
}

void write_vertex(Vertex& vertex, float x, float y, float z, const vec4& color, float u, float v) {
    vertex.position.set(x, y, z, 1.0f);
    vertex.color = color;
    vertex.uv0.set(u, v, 0.0f, 1.0f);
}

void write_quad(Vertex* vertices, const Quad& q, float z, const vec4& color) {
    write_vertex(vertices[0], q.left, q.top, z, color, q.u_left, q.v_top);
    write_vertex(vertices[1], q.right, q.top, z, color, q.u_right, q.v_top);
    write_vertex(vertices[2], q.right, q.bottom, z, color, q.u_right, q.v_bottom);
    write_vertex(vertices[3], q.right, q.bottom, z, color, q.u_right, q.v_bottom);
    write_vertex(vertices[4], q.left, q.bottom, z, color, q.u_left, q.v_bottom);
    write_vertex(vertices[5], q.left, q.top, z, color, q.u_left, q.v_top);
}

} // namespace

Vertex* write_bm_quads(Vertex* vertices, const bm_string& string, const BMCharset& charset,
                       float scale) {
    const float sheet_width = charset.scale_w;
    const float sheet_height = charset.scale_h;
    const float blank_extra = static_cast<float>(charset.spacing[0]) * scale;
    const vec4 color = string.color;
    float cursor = string.x;
    for (const char byte : string.text) {
        const auto c = static_cast<signed char>(byte);
        const BMCharDescriptor& glyph = charset.glyph(c);
        write_quad(vertices, quad_of(glyph, cursor, string.y, scale, sheet_width, sheet_height),
                   string.z, color);
        vertices += vertices_per_glyph;
        cursor += glyph.xadvance * scale;
        if (c == ' ')
            cursor += blank_extra;
    }
    return vertices;
}

} // namespace orvex
