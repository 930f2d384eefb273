// A box with a picture on its sides: textures_and_materials stone.png picture.jpg

#include "off_screen.h"

using namespace orvex;

namespace {

const char* const lit_picture = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Normal;
in vec4 orvex_TexCoord0;
uniform mat4 orvex_ModelMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec3 normal;
out vec2 uv;
void main() {
    normal = mat3(orvex_ModelMatrix) * orvex_Normal.xyz;
    uv = orvex_TexCoord0.xy;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
uniform sampler2D stone;
uniform sampler2D checks;
in vec3 normal;
in vec2 uv;
out vec4 color;
void main() {
    float light = 0.3 + 0.7 * max(dot(normalize(normal), normalize(vec3(0.5, 0.9, 0.7))), 0.0);
    vec4 surface = mix(texture(stone, uv), texture(checks, uv), 0.35);
    color = vec4(surface.rgb * light, 1.0);
}
)";

/// From a file. Trilinear filtering is set on the uploaded texture, while it is bound.
Texture* load(Renderer* renderer, const char* filename) {
    Texture* texture = TextureMgr::get()->create_texture_2d_from_file(filename, false);
    if (!texture)
        return nullptr;
    TextureMgr::get()->upload_to_renderer(renderer, texture, 0);
    texture->bind(renderer, 0);
    texture->set_filtering_mode(renderer, FILTERING_TRILINEAR);
    texture->set_anisotropy(renderer, 8.0f);
    texture->unbind(renderer, 0);
    return texture;
}

/// From nothing: 8 by 8 texels, black and white. Eight bits count to 255; and nearest filtering can
/// be set before the upload.
Texture* make_checks(Renderer* renderer) {
    Texture* texture = TextureMgr::get()->create_texture_2d(8, 8, PF_RGB_U8);
    for (unsigned long y = 0; y < 8; ++y)
        for (unsigned long x = 0; x < 8; ++x) {
            const float shade = (x + y) % 2 == 0 ? 255.0f : 0.0f;
            texture->set_texel_2d(x, y, vec4(shade, shade, shade, 255.0f));
        }
    texture->set_filtering_mode(nullptr, FILTERING_NEAREST);
    TextureMgr::get()->upload_to_renderer(renderer, texture, 0);
    return texture;
}

/// A program and the textures of its units 0 and 1.
Material* make_material(Renderer* renderer, Texture* stone, Texture* checks) {
    Material* material = MaterialMgr::get()->create_material("checked stone");
    GpuProgram* program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, lit_picture, std::strlen(lit_picture), "lit picture");
    program->set_uniform_1i(nullptr, "stone", 0);
    program->set_uniform_1i(nullptr, "checks", 1);
    material->set_gpu_program(program);
    material->add_texture(stone);
    material->add_texture(checks);
    return material;
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(true, 360, 320);
    Texture* stone = stage.started && argc > 2 ? load(stage.renderer, argv[1]) : nullptr;
    if (!stone)
        return 1;
    Material* material = make_material(stage.renderer, stone, make_checks(stage.renderer));

    MeshBox* box = new MeshBox;
    box->set_build_params(2.0f, 2.0f, 2.0f, 1, 1, 1);
    box->build(nullptr);
    box->add_material(material, nullptr);
    box->set_orientation_euler_xyz(0.0f, 35.0f, 0.0f);

    Camera* camera = new Camera;
    camera->set_viewport(0, 0, 360, 320);
    camera->build_projection_persp(40.0f, 360.0f / 320.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(0, 3, 5, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);
    camera->bind(stage.renderer, true, true, true, true, false);
    camera->release(nullptr, nullptr);
    stage.renderer->clear_color_depth_buffers(0.75f, 0.77f, 0.8f, 1.0f, 1.0f);
    box->render(stage.renderer, nullptr);
    const bool ok = stage.write(argv[2]);
    box->kill(stage.renderer, nullptr);
    MaterialMgr::get()->release_all_resources(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
