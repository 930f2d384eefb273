#version 150
in vec4 orvex_Position;
in vec4 orvex_TexCoord0;
out vec4 Vertex_UV;
uniform mat4 orvex_ModelViewProjectionMatrix;
void main()
{
  gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position;
  Vertex_UV = orvex_TexCoord0;
}
