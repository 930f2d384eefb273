// Loads a model with its materials and textures, frames it, lights it with a shader of its own, and
// writes the picture as JPEG. Off screen by default, or in an X11 window.

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include <orvex/assets/texture_mgr.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/gpu/gpu_program_mgr.h>
#include <orvex/kernel/aux.h>
#include <orvex/kernel/core.h>
#include <orvex/kernel/kernel.h>
#include <orvex/renderer/render_window.h>
#include <orvex/renderer/renderer.h>
#include <orvex/scene/camera.h>
#include <orvex/scene/model.h>

#include "model_view.h"
#include "options.h"
#include "progress.h"
#include "shader.h"
#ifdef WITH_X11
#include "x11_host.h"
#endif

using namespace orvex;

namespace {

enum ExitCode { SUCCESS = 0, FAILURE = 1, USAGE = 2 };

int fail(std::string const& message) {
    std::fprintf(stderr, "render_model: %s\n", message.c_str());
    return FAILURE;
}

/// Shows the engine's errors and warnings, without the stamp of the log.
void show_log_line(char const* line, void*) {
    for (char const* marker : {" <*> ", " <!> "})
        if (char const* const found = std::strstr(line, marker))
            std::fprintf(stderr, "  %s\n", found + 1);
}

/// Why a file can't be a model; empty if it may be one.
std::string mistake_of(std::string const& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        return path + ": is a directory";
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (!file)
        return path + ": " + std::strerror(errno);
    const bool empty = std::fgetc(file) == EOF;
    std::fclose(file);
    return empty ? path + ": the file is empty" : std::string();
}

/// The folder of a file, with its slash, as the loaders put it before names.
std::string folder_of(std::string const& path) {
    const std::size_t slash = path.rfind('/');
    return slash == path.npos ? std::string() : path.substr(0, slash + 1);
}

std::string file_name_of(std::string const& path) {
    return path.substr(folder_of(path).size());
}

/// The drawable, the renderer and the program, from start to stop.
class Stage {
public:
    /// @return false, with the reason in `mistake`
    bool open(Options const& options);
    ~Stage();

    Renderer* renderer = nullptr;
    RenderWindow* window = nullptr;
    GpuProgram* program = nullptr;
    std::string mistake;

    /// Whether the next frame is wanted; follows the size of an X11 window.
    bool is_open(int& width, int& height);

private:
    void* connection = nullptr;
    void* view = nullptr;
#ifdef WITH_X11
    std::unique_ptr<X11Host> x11;
#endif

    bool open_x11(Options const& options);
    bool open_window(Options const& options);
    bool load_program(bool gl3);
};

bool Stage::open(Options const& options) {
    if (options.x11 && !open_x11(options))
        return false;
    core::start("", true, show_log_line, nullptr);
    renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    window = renderer->create_render_window();
    if (!open_window(options)) {
        mistake = "no OpenGL context";
        return false;
    }
    if (!renderer->start()) {
        mistake = "the renderer doesn't start";
        return false;
    }
    return load_program(options.gl3);
}

bool Stage::open_x11([[maybe_unused]] Options const& options) {
#ifdef WITH_X11
    x11 = X11Host::open(options.width, options.height, options.model.c_str());
    if (x11) {
        connection = x11->connection();
        view = x11->view();
        return true;
    }
    mistake = "no X11 display; is $DISPLAY set?";
#else
    mistake = "built without libX11: there is no --x11";
#endif
    return false;
}

/// Four samples a pixel where there are any.
bool Stage::open_window(Options const& options) {
    RenderWindow_ExtraData request;
    request.gl_major = options.gl3 ? 3 : 2;
    request.gl_minor = options.gl3 ? 2 : 1;
    request.depth_bits = 24;
    for (char const* msaa : {"4X MSAA", "Off"})
        if (window->initialize(connection, view, options.width, options.height, msaa, nullptr,
                               &request))
            return true;
    return false;
}

bool Stage::load_program(bool gl3) {
    const std::string text = shader_text(gl3);
    program = GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text.c_str(),
                                                                   text.size(), "render_model");
    if (program->is_valid() && program->bind(renderer)) {
        program->unbind(renderer);
        return true;
    }
    mistake = std::string("the shader doesn't compile:") + program->get_shader_error_messages();
    return false;
}

Stage::~Stage() {
    if (!renderer)
        return;
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->stop();
    renderer->kill_all_render_windows();
    core::stop("render_model ends.");
}

bool Stage::is_open([[maybe_unused]] int& width, [[maybe_unused]] int& height) {
#ifdef WITH_X11
    if (x11) {
        const bool open = x11->is_open();
        width = x11->width();
        height = x11->height();
        window->update_size(width, height);
        window->osx_update_context_cocoa();
        return open;
    }
#endif
    return true;
}

Model* load(Options const& options) {
    const std::string folder = folder_of(options.model);
    return aux::load_model_from_file(file_name_of(options.model).c_str(), folder.c_str(),
                                     folder.c_str());
}

void draw_frame(Stage& stage, ModelView& view, Camera& camera, bool gl3) {
    stage.renderer->rasterizer_set_msaa_state(true);
    stage.renderer->rasterizer_apply_state();
    // A core context has no fixed matrices to load.
    camera.bind(stage.renderer, true, true, true, true, !gl3);
    stage.renderer->clear_color_depth_buffers(0.17f, 0.19f, 0.22f, 1.0f, 1.0f);
    view.draw();
}

/// Draws the frames, and writes the last one before it is shown.
bool draw_frames(Stage& stage, ModelView& view, Options const& options) {
    auto* const camera = new Camera;
    int width = options.width;
    int height = options.height;
    bool open = true;
    for (int frame = 1; open; ++frame) {
        open = stage.is_open(width, height) && frame != options.frames;
        view.frame(*camera, width, height);
        draw_frame(stage, view, *camera, options.gl3);
        if (open)
            stage.window->display_framebuffer();
    }
    const bool written = TextureMgr::get()->do_screenshot(stage.renderer, options.output.c_str());
    stage.window->display_framebuffer();
    camera->release(nullptr, nullptr);
    return written;
}

void report(ModelView const& view, double seconds) {
    std::fprintf(stderr, "  %lu meshes, %lu materials, %lu triangles in %.2f s\n",
                 view.num_meshes(), view.num_materials(), view.num_faces(), seconds);
    if (view.num_missing_textures() > 0)
        std::fprintf(stderr, "  %lu textures are missing or can't be read\n",
                     view.num_missing_textures());
}

/// One load, the frames, and the release of all of it.
int render(Stage& stage, Options const& options) {
    std::unique_ptr<ModelView> view;
    {
        const Progress progress("loading " + options.model);
        Model* const model = load(options);
        if (!model)
            return fail(options.model + ": no loader can read it as a model");
        view = std::make_unique<ModelView>(stage.renderer, model);
        view->load_textures(folder_of(options.model), stderr);
        report(*view, progress.seconds());
    }
    view->use_program(stage.program, options.gl3);
    if (!draw_frames(stage, *view, options))
        return fail("can't write " + options.output);
    return SUCCESS;
}

int run(Options const& options) {
    const std::string mistake = mistake_of(options.model);
    if (!mistake.empty())
        return fail(mistake);
    Stage stage;
    if (!stage.open(options))
        return fail(stage.mistake);
    for (int i = 0; i < options.loads; ++i)
        if (const int code = render(stage, options); code != SUCCESS)
            return code;
    std::fprintf(stderr, "wrote %s\n", options.output.c_str());
    return SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    const Options options = read_options(argc, argv);
    if (options.help) {
        std::fputs(usage(), stdout);
        return SUCCESS;
    }
    if (!options.mistake.empty()) {
        std::fprintf(stderr, "render_model: %s\n\n%s", options.mistake.c_str(), usage());
        return USAGE;
    }
    return run(options);
}
