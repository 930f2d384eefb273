#pragma once

#include <string>

/// The program that lights the model, for one of the two drawing paths.
///
/// Both share their text below a few macros: the older language has built-in vertex arrays and
/// "varying", the newer one generic attributes, "in" and "out". The matrices are the engine's
/// automatic uniforms; material colours are set by `ModelView`.
inline std::string shader_text(bool gl3) {
    char const* const vertex_head = gl3 ? R"(
#version 150
#define OUT out
in vec4 orvex_Position;
in vec4 orvex_Normal;
in vec4 orvex_TexCoord0;
#define POSITION vec4(orvex_Position.xyz, 1.0)
#define NORMAL orvex_Normal.xyz
#define TEXCOORD orvex_TexCoord0.xy
)"
                                        : R"(
#version 120
#define OUT varying
#define POSITION vec4(gl_Vertex.xyz, 1.0)
#define NORMAL gl_Normal
#define TEXCOORD gl_MultiTexCoord0.xy
)";
    char const* const pixel_head = gl3 ? R"(
#version 150
#define IN in
#define SAMPLE texture
#define COLOR color
out vec4 color;
)"
                                       : R"(
#version 120
#define IN varying
#define SAMPLE texture2D
#define COLOR gl_FragColor
)";
    static char const* const vertex_body = R"(
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 eye_position;
OUT vec3 eye_normal;
OUT vec2 uv;

void main()
{
    eye_position = (orvex_ModelViewMatrix * POSITION).xyz;
    eye_normal = mat3(orvex_ModelViewMatrix) * NORMAL;
    // Images have their first row at the top, texture coordinates their origin at the bottom.
    uv = vec2(TEXCOORD.x, 1.0 - TEXCOORD.y);
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
)";
    static char const* const pixel_body = R"(
uniform mat4 orvex_ViewMatrix;
uniform vec4 diffuse_color;
uniform vec4 specular_color;  // w: shininess
uniform float textured;       // 0 or 1
uniform sampler2D diffuse_map;
IN vec3 eye_position;
IN vec3 eye_normal;
IN vec2 uv;

vec3 to_linear(vec3 srgb) { return pow(srgb, vec3(2.2)); }
vec3 to_srgb(vec3 linear) { return pow(linear, vec3(1.0 / 2.2)); }

vec3 world_direction(vec3 direction) { return mat3(orvex_ViewMatrix) * normalize(direction); }

vec3 light(vec3 direction, vec3 strength, vec3 albedo, vec3 normal, vec3 to_eye)
{
    vec3 to_light = world_direction(direction);
    float diffuse = max(dot(normal, to_light), 0.0);
    float shininess = max(specular_color.w, 1.0);
    float lobe = pow(max(dot(normal, normalize(to_light + to_eye)), 0.0), shininess * 4.0);
    vec3 highlight = to_linear(specular_color.rgb) * lobe * diffuse * (shininess + 2.0) * 0.04;
    return strength * (albedo * diffuse + highlight);
}

void main()
{
    vec4 texel = mix(vec4(1.0), SAMPLE(diffuse_map, uv), textured);
    vec3 albedo = to_linear(diffuse_color.rgb * texel.rgb);
    vec3 to_eye = normalize(-eye_position);
    vec3 normal = normalize(eye_normal);
    // Files disagree about which side is the front: both are lit.
    normal = dot(normal, to_eye) < 0.0 ? -normal : normal;

    float up = dot(normal, world_direction(vec3(0.0, 1.0, 0.0))) * 0.5 + 0.5;
    vec3 sum = albedo * mix(vec3(0.05, 0.045, 0.04), vec3(0.17, 0.19, 0.23), up);
    sum += light(vec3(-0.8, 0.8, 0.7), vec3(1.05, 1.0, 0.92), albedo, normal, to_eye);
    sum += light(vec3(1.0, 0.1, 0.2), vec3(0.12, 0.15, 0.2), albedo, normal, to_eye);
    COLOR = vec4(to_srgb(sum), diffuse_color.a);
}
)";
    // A stage begins right after its marker, and the version must be its first line but for blanks.
    return std::string("[Vertex_Shader]") + vertex_head + vertex_body + "[Pixel_Shader]" +
           pixel_head + pixel_body;
}
