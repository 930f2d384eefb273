#include "orvex/overlays/private/bm_quads.h"

namespace orvex {

namespace {

/// Edges of a quad on screen and on the sheet; `top` is above `bottom` in both.
struct Quad {
    float left, right, top, bottom;
    float u_left, u_right, v_top, v_bottom;
};

Quad quad_of(BMCharDescriptor const& glyph, float cursor, float line_top, float scale,
             float sheet_width, float sheet_height) {
    float const width = glyph.width;
    float const height = glyph.height;
    float const u = glyph.x / sheet_width;
    float const v = glyph.y / sheet_height;
    float const left = cursor + glyph.xoffset * scale;
    float const top = line_top - glyph.yoffset * scale;
    return {left, left + width * scale,    top,      top - height * scale,
            u,    u + width / sheet_width, 1.0f - v, 1.0f - (v + height / sheet_height)};
}

void write_vertex(Vertex& vertex, float x, float y, float z, vec4 const& color, float u, float v) {
    vertex.position.set(x, y, z, 1.0f);
    vertex.color = color;
    vertex.uv0.set(u, v, 0.0f, 1.0f);
}

void write_quad(Vertex* vertices, Quad const& q, float z, vec4 const& color) {
    write_vertex(vertices[0], q.left, q.top, z, color, q.u_left, q.v_top);
    write_vertex(vertices[1], q.right, q.top, z, color, q.u_right, q.v_top);
    write_vertex(vertices[2], q.right, q.bottom, z, color, q.u_right, q.v_bottom);
    write_vertex(vertices[3], q.right, q.bottom, z, color, q.u_right, q.v_bottom);
    write_vertex(vertices[4], q.left, q.bottom, z, color, q.u_left, q.v_bottom);
    write_vertex(vertices[5], q.left, q.top, z, color, q.u_left, q.v_top);
}

} // namespace

Vertex* write_bm_quads(Vertex* vertices, bm_string const& string, BMCharset const& charset,
                       float scale) {
    float const sheet_width = charset.scale_w;
    float const sheet_height = charset.scale_h;
    float const blank_extra = static_cast<float>(charset.spacing[0]) * scale;
    vec4 const color = string.color;
    float cursor = string.x;
    for (char const byte : string.text) {
        auto const c = static_cast<signed char>(byte);
        BMCharDescriptor const& glyph = charset.glyph(c);
        write_quad(vertices, quad_of(glyph, cursor, string.y, scale, sheet_width, sheet_height),
                   string.z, color);
        vertices += vertices_per_glyph;
        cursor += glyph.xadvance * scale;
        if (c == ' ') {
            cursor += blank_extra;
        }
    }
    return vertices;
}

} // namespace orvex
