// A look of one's own: a model in a few bands of light, from cold to warm, as comics are drawn. The
// kit compiles the text for either path, and tells the program of materials, textures and lights:
// own_look [gl2]

#include <cstdio>

#include <orvex_kit/kit.h>

using namespace orvex;

static const char comic[] = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 place;
OUT vec3 normal;
OUT vec2 uv;
void main() {
    place = (orvex_ModelViewMatrix * POSITION).xyz;
    normal = mat3(orvex_ModelViewMatrix) * NORMAL;
    uv = vec2(TEXCOORD.x, 1.0 - TEXCOORD.y);
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
[Pixel_Shader]
uniform mat4 orvex_ViewMatrix;
uniform vec4 to_sun;
uniform vec4 diffuse_color;
uniform float textured;
uniform sampler2D diffuse_map;
uniform float bands; // this host's own
IN vec3 place;
IN vec3 normal;
IN vec2 uv;
void main() {
    vec3 paint = diffuse_color.rgb * mix(vec3(1.0), SAMPLE(diffuse_map, uv).rgb, textured);
    vec3 sun = normalize(mat3(orvex_ViewMatrix) * to_sun.xyz);
    vec3 facing = dot(normal, place) > 0.0 ? -normalize(normal) : normalize(normal);
    float light = clamp(0.5 + 0.5 * dot(facing, sun), 0.0, 0.999);
    float band = floor(light * bands) / (bands - 1.0);
    vec3 tint = mix(vec3(0.32, 0.36, 0.62), vec3(1.08, 1.04, 0.94), band);
    COLOR = vec4(paint * tint, diffuse_color.a);
}
)";

int main(int argc, char**) {
    const kit::Engine engine;
    // Edges within faces are smooth by supersampling; samples see those of faces alone.
    kit::View view(640, 480, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3, 0, 3});
    kit::Model model("lighthouse.obj");

    kit::Outcome outcome = view.set_look(kit::Look::from_text(comic, "comic"));
    view.look().set("bands", 4.0);
    view.set_background({0.96f, 0.93f, 0.86f, 1.0f});
    view.draw(model);

    if (outcome)
        outcome = view.write("own_look.jpg");
    if (!model || !outcome)
        std::fprintf(stderr, "%s%s\n", model.reason().c_str(), outcome.reason().c_str());
    return model && outcome ? 0 : 1;
}
