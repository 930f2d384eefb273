#include "stage.h"

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>

#include <GL/gl.h>

#include <orvex_kit/program.h>

namespace orvex_test {

using namespace orvex;

std::string program_text(Path path, const char* vertex, const char* pixel) {
    return orvex::kit::program_text_for(
        path == Path::gl3 ? orvex::kit::Path::gl3 : orvex::kit::Path::gl2,
        std::string("[Vertex_Shader]") + vertex + "[Pixel_Shader]" + pixel);
}

std::string digest_of(const void* bytes, std::size_t size) {
    const auto* const byte = static_cast<const unsigned char*>(bytes);
    std::uint64_t sum = 0xcbf29ce484222325u;
    for (std::size_t i = 0; i < size; ++i)
        sum = (sum ^ byte[i]) * 0x100000001b3u;
    char text[40];
    std::snprintf(text, sizeof text, "%zu bytes %016llx", size,
                  static_cast<unsigned long long>(sum));
    return text;
}

std::string digest_of_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return "no file";
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    return digest_of(bytes.data(), bytes.size());
}

Stage::~Stage() {
    if (!engine_runs)
        return;
    // A scenario broke off: what it still holds is lost, and so is the count.
    outcome.broken = true;
    try {
        close();
    } catch (...) {
        complain("close", "the engine can't be stopped");
    }
}

void Stage::start_engine(const char* log) {
    get("core::start", [&] { return core::start(log, true, nullptr, nullptr); });
    engine_runs = true;
}

void Stage::open_window(Path wanted) {
    path = wanted;
    if (!engine_runs)
        start_engine();
    renderer = get("load_core_opengl_renderer_plugin",
                   [] { return Kernel::get()->load_core_opengl_renderer_plugin(true); });
    get("Renderer::initialize", [&] { return renderer->initialize(); });
    window = get("create_render_window", [&] { return renderer->create_render_window(); });
    RenderWindow_ExtraData request;
    request.gl_major = is_gl3() ? 3 : 2;
    request.gl_minor = is_gl3() ? 2 : 1;
    request.depth_bits = 24;
    get("RenderWindow::initialize",
        [&] { return window->initialize(nullptr, nullptr, size, size, "", nullptr, &request); });
    // Whether the context is current is told here, not by `initialize`.
    get("osx_apply_context", [&] { return window->osx_apply_context(true); });
    get("Renderer::start", [&] { return renderer->start(); });
    outcome.calls_of_start = calls_counted();
}

void Stage::close() {
    engine_runs = false;
    if (renderer)
        run_quietly("kill_all_render_targets", [&] { renderer->kill_all_render_targets(); });
    // Materials hold textures and programs.
    run_quietly("MaterialMgr::release_all_resources",
                [&] { MaterialMgr::get()->release_all_resources(renderer, nullptr); });
    run_quietly("release_all_textures",
                [&] { TextureMgr::get()->release_all_textures(renderer, nullptr); });
    run_quietly("GpuProgramMgr::release_all_resources",
                [&] { GpuProgramMgr::get()->release_all_resources(renderer, nullptr); });
    if (renderer) {
        run("Renderer::stop", [&] { renderer->stop(); });
        run("kill_all_render_windows", [&] { renderer->kill_all_render_windows(); });
    }
    run("core::stop", [] { core::stop("done"); });
}

void Stage::end(Node* node) {
    run_quietly("kill", [&] { node->kill(renderer, nullptr); });
}

void Stage::frame(const std::function<void()>& draw) {
    const bool met_before = fault_was_met();
    run("a frame", draw);
    if (!met_before && fault_was_met())
        run("the next frame", draw);
    look();
}

void Stage::tell(const char* what, const std::string& value) {
    outcome.told.push_back(std::string(what) + ": " + value);
}

void Stage::tell(const char* what, double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.9g", value);
    tell(what, std::string(text));
}

void Stage::look() {
    std::vector<unsigned char> pixels(std::size_t{4} * size * size);
    glReadPixels(0, 0, size, size, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    outcome.pictures.push_back(digest_of(pixels.data(), pixels.size()));
}

void Stage::complain(const char* what, const std::string& how) {
    outcome.complaints.push_back(std::string(what) + ": " + how);
}

void Stage::judge_refusal(const char* what, bool met_before) {
    if (met_before || !fault_was_met()) {
        complain(what, met_before ? "fails after the fault" : "fails without a fault");
        throw Broken();
    }
    ++outcome.refusals;
}

void Stage::judge_exception(const char* what, bool met_before, bool may_throw) {
    if (met_before || !fault_was_met()) {
        complain(what, "throws std::bad_alloc without a fault");
        throw Broken();
    }
    ++outcome.exceptions;
    if (!may_throw) {
        complain(what, "lets std::bad_alloc out");
        throw Broken();
    }
}

GpuProgram* Stage::make_program(const char* name, const char* vertex, const char* pixel) {
    const std::string text = program_text(path, vertex, pixel);
    GpuProgram* program = nullptr;
    // A program that doesn't compile is made all the same, and says so.
    get("create_gpu_program_from_memory", [&] {
        if (program)
            run_quietly("release_resource", [&] {
                GpuProgramMgr::get()->release_resource(renderer, program, nullptr);
                program = nullptr;
            });
        program = GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text.c_str(),
                                                                       text.size(), name);
        return program && program->is_valid();
    });
    return program;
}

GpuProgram* Stage::make_colored_program() {
    return make_program("colored",
                        "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
                        "OUT vec4 vertex_color;\n"
                        "void main() {\n"
                        "    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;\n"
                        "    gl_PointSize = 5.0;\n"
                        "    vertex_color = VERTEX_COLOR;\n"
                        "}\n",
                        "IN vec4 vertex_color;\n"
                        "void main() { COLOR = vertex_color; }\n");
}

GpuProgram* Stage::make_normal_program() {
    return make_program("normals",
                        "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
                        "OUT vec3 normal;\n"
                        "void main() {\n"
                        "    normal = NORMAL;\n"
                        "    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;\n"
                        "}\n",
                        "IN vec3 normal;\n"
                        "void main() { COLOR = vec4(0.5 + 0.5 * normal, 1.0); }\n");
}

GpuProgram* Stage::make_textured_program() {
    return make_program("textured",
                        "uniform mat4 orvex_ModelViewProjectionMatrix;\n"
                        "OUT vec2 uv;\n"
                        "void main() {\n"
                        "    uv = TEXCOORD;\n"
                        "    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;\n"
                        "}\n",
                        "uniform sampler2D picture;\n"
                        "IN vec2 uv;\n"
                        "void main() { COLOR = SAMPLE(picture, uv); }\n");
}

Camera* Stage::make_camera(float distance) {
    Camera* const camera = make<Camera>();
    camera->set_viewport(0, 0, size, size);
    camera->build_projection_persp(45.0f, 1.0f, 0.1f, 100.0f, true);
    camera->set_view_params(vec4(0.3f * distance, 0.4f * distance, distance, 1), vec4(0, 0, 0, 1),
                            vec4(0, 1, 0, 0), true);
    return camera;
}

void Stage::begin(Camera* camera) {
    camera->bind(renderer, true, true, true, true, !is_gl3());
    renderer->clear_color_depth_buffers(0.1f, 0.2f, 0.3f, 1.0f, 1.0f);
}

void Stage::draw(GpuProgram* program, Object* object) {
    program->bind(renderer);
    object->render(renderer, nullptr);
    program->unbind(renderer);
}

} // namespace orvex_test
