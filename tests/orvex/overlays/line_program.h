#pragma once

namespace orvex_test {

/// Draws lines in the colours of their vertices, by generic attributes.
inline constexpr const char* line_program_text = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
out vec4 v_color;
uniform mat4 orvex_ModelViewProjectionMatrix;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;
    v_color = orvex_Color;
}
[Pixel_Shader]
#version 150
in vec4 v_color;
out vec4 pixel;
void main() { pixel = v_color; }
)";

} // namespace orvex_test
