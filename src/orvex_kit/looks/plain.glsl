// The colours of the materials and their textures, without any light.
[Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec2 uv;

void main()
{
    // Images have their first row at the top, texture coordinates their origin at the bottom.
    uv = vec2(TEXCOORD.x, 1.0 - TEXCOORD.y);
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
uniform vec4 diffuse_color;  // w: opacity
uniform float textured;      // 0 or 1
uniform sampler2D diffuse_map;
IN vec2 uv;

void main()
{
    vec4 texel = mix(vec4(1.0), SAMPLE(diffuse_map, uv), textured);
    COLOR = vec4(diffuse_color.rgb * texel.rgb, diffuse_color.a);
}
