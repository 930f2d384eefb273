#version 120
uniform samplerCube cubemap;
void main() 
{
vec3 uv = gl_TexCoord[0].xyz;
uv.x *= -1.0;
  gl_FragColor = textureCube(cubemap, normalize(uv.xyz)); 
}
