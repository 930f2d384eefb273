#version 120
uniform sampler2D tex0;
void main()
{
  vec2 uv = gl_TexCoord[0].xy; 
  uv.y *= -1.0; 
  gl_FragColor = texture2D(tex0, uv); 
}
