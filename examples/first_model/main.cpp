// The shortest road from a model file to a picture: first_model lighthouse.obj picture.jpg

#include <cstring>

#include <orvex/orvex.h>

static char const shader[] = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position, orvex_Normal;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec3 normal;
void main() { normal = orvex_Normal.xyz; gl_Position = orvex_ModelViewProjectionMatrix * orvex_Position; }
[Pixel_Shader]
#version 150
in vec3 normal;
out vec4 color;
void main() { color = vec4(0.5 + 0.5 * normalize(normal), 1.0); }
)";

int main(int argc, char** argv) {
    using namespace orvex;
    core::start("", true, nullptr, nullptr);
    Renderer* renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    RenderWindow* window = renderer->create_render_window();
    RenderWindow_ExtraData request;
    request.gl_major = 3;
    request.gl_minor = 2;
    renderer->initialize();
    bool ok = window->initialize(nullptr, nullptr, 640, 480, "Off", nullptr, &request) &&
              renderer->start();

    Model* model = ok && argc > 2 ? aux::load_model_from_file(argv[1], "", "") : nullptr;
    if ((ok = model != nullptr)) {
        GpuProgram* program = GpuProgramMgr::get()->create_gpu_program_from_memory(
            renderer, shader, std::strlen(shader), "normals");
        for (unsigned long i = 0; i < model->get_num_materials(); ++i)
            model->get_material_by_index(i)->set_gpu_program(program);

        Camera* camera = new Camera;
        camera->set_viewport(0, 0, 640, 480);
        camera->build_projection_persp(40.0f, 640.0f / 480.0f, 0.1f, 100.0f, true);
        camera->set_view_params(vec4(9, 8, 16, 1), vec4(0, 3, 0, 1), vec4(0, 1, 0, 0), true);
        camera->bind(renderer, true, true, true, true, true);
        renderer->clear_color_depth_buffers(0.15f, 0.17f, 0.2f, 1.0f, 1.0f);
        model->render(renderer, nullptr);
        ok = TextureMgr::get()->do_screenshot(renderer, argv[2]);
        camera->release(nullptr, nullptr);
        model->kill(renderer, nullptr);
        MaterialMgr::get()->release_all_resources(renderer, nullptr);
        GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    }
    core::stop("done");
    return ok ? 0 : 1;
}
