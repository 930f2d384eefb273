// A model from a file, lit and textured: first_model folder/ picture.jpg

#include <string>

#include "off_screen.h"

using namespace orvex;

namespace {

const char* const vertex = R"([Vertex_Shader]
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
)";
const char* const pixel = R"([Pixel_Shader]
#version 150
uniform vec4 diffuse;
uniform float textured;
uniform sampler2D picture;
in vec3 normal;
in vec2 uv;
out vec4 color;
void main() {
    float light = max(dot(normalize(normal), normalize(vec3(0.4, 0.7, 0.6))), 0.0);
    vec4 surface = diffuse * mix(vec4(1.0), texture(picture, uv), textured);
    color = vec4(surface.rgb * (0.35 + 0.65 * light), 1.0);
}
)";

/// Each material gets its pictures, and a program that knows its colour.
void dress(Renderer* renderer, Material* material, const char* folder) {
    material->async_loading_process_all_texture_filenames(renderer, folder, PF_NONE, false);
    const std::string text = std::string(vertex) + pixel;
    GpuProgram* program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, text.c_str(), text.size(), material->get_name());
    const vec4 color = material->get_diffuse();
    program->set_uniform_4f(nullptr, "diffuse", color.x, color.y, color.z, color.w);
    program->set_uniform_1f(nullptr, "textured", material->get_num_textures() > 0 ? 1.0f : 0.0f);
    material->set_gpu_program(program);
}

void draw(Renderer* renderer, Model* model) {
    Camera* camera = new Camera;
    camera->set_viewport(0, 0, 480, 360);
    camera->build_projection_persp(40.0f, 480.0f / 360.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(9, 8, 16, 1), vec4(0, 3, 0, 1), vec4(0, 1, 0, 0), true);
    camera->bind(renderer, true, true, true, true, false);
    renderer->clear_color_depth_buffers(0.55f, 0.7f, 0.85f, 1.0f, 1.0f);
    for (unsigned long i = 0; i < model->get_num_children(); ++i)
        model->get_child(i)->render(renderer, model->get_child(i));
    camera->release(nullptr, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(true, 480, 360);
    if (!stage.started || argc < 3)
        return 1;
    Model* model = aux::load_model_from_file("lighthouse.obj", argv[1], argv[1]);
    if (!model)
        return 1;
    for (unsigned long i = 0; i < model->get_num_materials(); ++i)
        dress(stage.renderer, model->get_material_by_index(i), argv[1]);
    draw(stage.renderer, model);
    const bool ok = stage.write(argv[2]);
    model->kill(stage.renderer, nullptr);
    MaterialMgr::get()->release_all_resources(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
