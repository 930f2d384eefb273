// The edges of the faces, without those behind other faces. Behind what is blended all is seen.
[Lines]
[Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;

void main()
{
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
uniform float laying_faces;  // 1: the faces are laid down; 0: their edges are drawn
uniform vec4 behind;         // the background, multiplied by its opacity
uniform vec4 diffuse_color;  // w: opacity

void main()
{
    if (laying_faces > 0.5 && diffuse_color.a < 1.0)
        discard;
    bool is_bright = dot(behind.rgb, vec3(0.3, 0.6, 0.1)) > 0.5;
    vec3 ink = is_bright ? vec3(0.12, 0.14, 0.17) : vec3(0.86, 0.89, 0.93);
    COLOR = laying_faces > 0.5 ? behind : vec4(ink, 1.0);
}
