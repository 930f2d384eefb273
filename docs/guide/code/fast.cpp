// Many boxes, one by one in a walk and as instances: fast picture.jpg

#include "off_screen.h"

using namespace orvex;

namespace {

constexpr int per_side = 10;

const char* const lit = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Normal;
uniform mat4 orvex_ModelViewProjectionMatrix;
out float light;
void main() {
    light = 0.3 + 0.7 * max(dot(orvex_Normal.xyz, vec3(0.48, 0.6, 0.64)), 0.0);
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
in float light;
out vec4 color;
void main() { color = vec4(vec3(1.0, 0.7, 0.3) * light, 1.0); }
)";

const char* const lit_instances = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Normal;
in vec4 orvex_Instance_Position;
uniform mat4 orvex_ModelViewProjectionMatrix;
out float light;
void main() {
    light = 0.3 + 0.7 * max(dot(orvex_Normal.xyz, vec3(0.48, 0.6, 0.64)), 0.0);
    vec3 place = orvex_Position.xyz + orvex_Instance_Position.xyz;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(place, 1.0);
}
[Pixel_Shader]
#version 150
in float light;
out vec4 color;
void main() { color = vec4(vec3(0.4, 0.7, 1.0) * light, 1.0); }
)";

GpuProgram* make_program(Renderer* renderer, const char* text, const char* name) {
    return GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text, std::strlen(text),
                                                                name);
}

/// The shaders here read the one matrix that they need.
void unset_unused_names(Renderer* renderer, GpuProgram* program) {
    program->bind(renderer);
    GpuProgramData* const data = renderer->gpu_program_get_active_program();
    data->set_model_matrix_uniform_name(nullptr);
    data->set_view_matrix_uniform_name(nullptr);
    data->set_projection_matrix_uniform_name(nullptr);
    data->set_model_view_matrix_uniform_name(nullptr);
    data->set_view_projection_matrix_uniform_name(nullptr);
    data->set_viewport_uniform_name(nullptr);
    program->unbind(renderer);
}

vec4 place_of(int i, float side) {
    return vec4(side + static_cast<float>(i % per_side) * 0.8f - 3.6f, 0.0f,
                static_cast<float>(i / per_side) * 0.8f - 3.6f, 1.0f);
}

MeshBox* make_box() {
    auto* const box = new MeshBox;
    box->set_build_params(0.5f, 0.5f, 0.5f, 1, 1, 1);
    box->build(nullptr);
    return box;
}

/// Boxes below one object: a node each, and one geometry.
Object* make_boxes() {
    auto* const root = new Object;
    MeshBox* const first = make_box();
    root->add_child(first);
    for (int i = 1; i < per_side * per_side; ++i) {
        auto* const box = new Mesh;
        box->share_mesh_data(nullptr, first);
        root->add_child(box);
    }
    for (int i = 0; i < per_side * per_side; ++i)
        static_cast<Mesh*>(root->get_child(static_cast<unsigned long>(i)))
            ->set_position(place_of(i, -4.2f));
    return root;
}

void draw_one_by_one(Renderer* renderer, GpuProgram* program) {
    Object* const boxes = make_boxes();
    renderer->set_elided_binds_state(true);
    // Bound once, around the walk.
    program->bind(renderer);
    boxes->render(renderer, nullptr);
    program->unbind(renderer);
    boxes->kill(renderer, nullptr);
}

void draw_instances(Renderer* renderer, GpuProgram* program) {
    MeshBox* const box = make_box();
    InstancingInitParams arrays;
    arrays.position = true;
    box->instancing_init(per_side * per_side, arrays, 16);
    for (int i = 0; i < per_side * per_side; ++i)
        box->set_instance_position(static_cast<unsigned long>(i), place_of(i, 4.2f));
    program->bind(renderer);
    box->render(renderer, nullptr);
    program->unbind(renderer);
    box->kill(renderer, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(true, 480, 240);
    if (!stage.started)
        return 1;
    Camera* camera = new Camera;
    camera->set_viewport(0, 0, 480, 240);
    camera->build_projection_persp(32.0f, 2.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(0, 9, 15, 1), vec4(0, 0, 0.6f, 1), vec4(0, 1, 0, 0), true);
    camera->bind(stage.renderer, true, true, true, true, false);
    camera->release(nullptr, nullptr);
    stage.renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1.0f, 1.0f);
    GpuProgram* const program = make_program(stage.renderer, lit, "lit");
    GpuProgram* const of_instances = make_program(stage.renderer, lit_instances, "lit instances");
    unset_unused_names(stage.renderer, program);
    unset_unused_names(stage.renderer, of_instances);
    draw_one_by_one(stage.renderer, program);
    draw_instances(stage.renderer, of_instances);
    return stage.write(argc > 1 ? argv[1] : "fast.jpg") ? 0 : 1;
}
