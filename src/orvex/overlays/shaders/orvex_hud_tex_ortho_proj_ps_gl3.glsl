#version 150
uniform sampler2D tex0;
in vec4 Vertex_UV;
out vec4 Out_Color;
void main()
{
  vec2 uv = Vertex_UV.xy; 
  uv.y *= -1.0; 
  Out_Color = texture(tex0, uv); 
}
