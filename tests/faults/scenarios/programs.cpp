// GPU programs, their uniforms, and materials.

#include "../scenarios.h"

namespace orvex_test {

using namespace orvex;

void play_uniforms(Stage& stage) {
    stage.open_window(Path::gl3);
    GpuProgram* const program =
        stage.make_program("tinted",
                           "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
                           "void main() {\n"
                           "    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;\n"
                           "}\n",
                           "uniform vec4 tint;\n"
                           "uniform vec4 shades[4];\n"
                           "void main() { COLOR = tint + shades[1] + shades[2]; }\n");
    const vec4 shades[4] = {vec4(0, 0, 0, 0), vec4(0.1f, 0, 0, 0), vec4(0, 0.1f, 0, 0),
                            vec4(0, 0, 0, 0)};
    MeshPlane* const plane = stage.build(stage.make<MeshPlane>());
    Camera* const camera = stage.make_camera();
    // Without a renderer values wait in the program.
    stage.get("set_uniform_4f",
              [&] { return program->set_uniform_4f(nullptr, "tint", 0.2f, 0.3f, 0.4f, 1.0f); });
    stage.get("set_uniform_4fv",
              [&] { return program->set_uniform_4fv(nullptr, "shades", shades, 4); });
    stage.frame([&] {
        stage.begin(camera);
        stage.draw(program, plane);
    });
    stage.end(plane);
    stage.end(camera);
    stage.close();
}

void play_uniform_block(Stage& stage) {
    stage.open_window(Path::gl3);
    GpuProgram* const program = stage.make<GpuProgram>();
    stage.get("shader_load_from_memory", [&] {
        return program->shader_load_from_memory(
            stage.renderer, GPU_SHADER_COMPUTE,
            "#version 430\nlayout(local_size_x = 1) in;\n"
            "layout(std140) uniform Numbers { uvec2 low; uvec2 high; };\n"
            "layout(std430, binding = 0) buffer Out { uvec2 copy[2]; };\n"
            "void main() { copy[0] = low; copy[1] = high; }\n",
            1);
    });
    stage.get("bind", [&] { return program->bind(stage.renderer); });
    stage.get("ub_init", [&] { return program->ub_init(stage.renderer, "Numbers"); });
    stage.get("ub_map", [&] { return program->ub_map(stage.renderer); });
    stage.get("ub_set_value_ui64", [&] { return program->ub_set_value_ui64(nullptr, 0, 77); });
    stage.get("ub_unmap", [&] { return program->ub_unmap(stage.renderer); });
    stage.run_quietly("ub_cleanup", [&] { program->ub_cleanup(stage.renderer); });
    stage.run_quietly("release", [&] { program->release(stage.renderer, nullptr); });
    stage.close();
}

void play_materials(Stage& stage) {
    stage.open_window(Path::gl3);
    Material* const material = stage.get("create_material", [] {
        return MaterialMgr::get()->create_material("a material with a long name");
    });
    Texture* const texture = stage.get(
        "create_texture_2d", [] { return TextureMgr::get()->create_texture_2d(2, 2, PF_RGBA_U8); });
    texture->set_texel_2d(0, 0, vec4(255, 0, 0, 255));
    stage.get("upload_to_renderer",
              [&] { return TextureMgr::get()->upload_to_renderer(stage.renderer, texture, 0); });
    stage.run("add_texture", [&] { material->add_texture(texture); });
    stage.tell("textures", static_cast<double>(material->get_num_textures()));
    GpuProgram* const program = stage.make_textured_program();
    stage.run("set_gpu_program", [&] { material->set_gpu_program(program); });
    MeshBox* const box = stage.build(stage.make<MeshBox>());
    stage.get("add_material", [&] { return box->add_material(material, nullptr); });
    stage.tell("materials", static_cast<double>(box->get_num_materials()));
    Camera* const camera = stage.make_camera();
    stage.frame([&] {
        stage.begin(camera);
        material->bind(stage.renderer);
        box->render(stage.renderer, nullptr);
        material->unbind(stage.renderer);
    });
    stage.end(box);
    stage.end(camera);
    stage.close();
}

} // namespace orvex_test
