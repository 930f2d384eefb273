#version 150
in vec4 orvex_Position;
in vec4 orvex_Color;
out vec4 Vertex_Color;
uniform mat4 orvex_ModelViewProjectionMatrix;
void main()
{
  gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;
  Vertex_Color = orvex_Color;
}
