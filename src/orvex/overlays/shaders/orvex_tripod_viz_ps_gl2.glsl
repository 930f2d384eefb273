#version 120
void main()
{
  gl_FragColor = gl_Color; 
}
