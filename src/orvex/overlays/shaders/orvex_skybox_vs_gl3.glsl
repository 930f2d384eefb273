#version 150
in vec4 orvex_Position;
out vec4 Vertex_UV;
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ProjectionMatrix;
void main() 
{
  mat4 r = orvex_ModelViewMatrix;
  r[3][0] = 0.0;
  r[3][1] = 0.0;
  r[3][2] = 0.0;
  vec4 v = inverse(r) * inverse(orvex_ProjectionMatrix) * orvex_Position;
  Vertex_UV = v;
  gl_Position = orvex_Position;
}
