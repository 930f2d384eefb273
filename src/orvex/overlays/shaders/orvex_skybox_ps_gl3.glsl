#version 150
in vec4 Vertex_UV;
out vec4 Out_Color;
uniform samplerCube cubemap;
void main() 
{
vec3 uv = Vertex_UV.xyz;
uv.x *= -1.0;
  Out_Color = texture(cubemap, normalize(uv.xyz)); 
}
