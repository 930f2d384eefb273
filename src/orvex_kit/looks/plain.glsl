// The colours of the materials and their textures, without any light.
[Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec2 uv;
OUT vec3 tint;

void main()
{
    tint = VERTEX_COLOR.rgb;
    // Images have their first row at the top, texture coordinates their origin at the bottom.
    uv = vec2(TEXCOORD.x, 1.0 - TEXCOORD.y);
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
uniform vec4 diffuse_color;  // w: opacity
uniform float textured;      // 0 or 1
uniform float colored;       // 1: vertices have colours of their own
uniform sampler2D diffuse_map;
IN vec2 uv;
IN vec3 tint;

void main()
{
    vec4 texel = mix(vec4(1.0), SAMPLE(diffuse_map, uv), textured);
    vec3 seen = diffuse_color.rgb * texel.rgb * mix(vec3(1.0), tint, colored);
    COLOR = vec4(seen, diffuse_color.a);
}
