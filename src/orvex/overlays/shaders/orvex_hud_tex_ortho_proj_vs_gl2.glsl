#version 120
uniform mat4 orvex_ModelViewProjectionMatrix;
void main()
{
  gl_Position = orvex_ModelViewProjectionMatrix * gl_Vertex;
  gl_TexCoord[0] = gl_MultiTexCoord0; 
}
