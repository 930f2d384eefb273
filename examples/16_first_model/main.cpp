// The shortest road from a model file to a picture: first_model lighthouse.obj picture.jpg
#include <orvex/orvex.h>

using namespace orvex;

static const char shader[] =
    "[Vertex_Shader]\nvarying vec3 n; void main() { n = gl_Normal; gl_Position = ftransform(); }\n"
    "[Pixel_Shader]\nvarying vec3 n; void main() { gl_FragColor.rgb = 0.5 + 0.5 * normalize(n); }";

int main(int argc, char** argv) {
    core::start("", true, nullptr, nullptr);
    Renderer* renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    RenderWindow* window = renderer->create_render_window();
    if (argc < 3 || !window->initialize(nullptr, nullptr, 640, 480, "", nullptr, nullptr) ||
        !renderer->start())
        return 1;
    Model* model = aux::load_model_from_file(argv[1], "", "");
    if (!model)
        return 1;
    Camera* camera = new Camera;
    camera->set_viewport(0, 0, 640, 480);
    camera->build_projection_persp(40.0f, 640.0f / 480.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(10, 9, 18, 1), vec4(0, 2, 0, 1), vec4(0, 1, 0, 0), true);
    RenderTarget* samples = renderer->create_render_target();
    samples->create_render_buffer_target(640, 480, PF_RGBA_U8, false, 1, true, 4);
    samples->activate();
    camera->bind(renderer, true, true, true, true, true);
    renderer->clear_color_depth_buffers(0.15f, 0.17f, 0.2f, 1.0f, 1.0f);
    GpuProgramMgr::get()
        ->create_gpu_program_from_memory(renderer, shader, sizeof shader, "normals")
        ->bind(renderer);
    model->render_geometry(renderer);
    samples->deactivate();
    renderer->fbo_resolve_multisampling(samples->get_fbo(), 640, 480, 0, 640, 480);
    bool ok = TextureMgr::get()->do_screenshot(renderer, argv[2]);
    camera->release(renderer, nullptr);
    model->kill(renderer, nullptr);
    renderer->kill_render_target(samples);
    core::stop("done");
    return ok ? 0 : 1;
}
