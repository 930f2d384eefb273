// The engine in a context of the host's, drawing into a widget's framebuffer: host_window
// picture.jpg
//
// `Toolkit` stands for what GLFW, SDL2, GTK or Qt would do, with no window at all.

#include <cstdio>
#include <cstring>

#define EGL_NO_X11
#define GL_GLEXT_PROTOTYPES
#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <orvex/orvex.h>

#include "log_lines.h"

using namespace orvex;

namespace {

constexpr int width = 400;
constexpr int height = 300;

const char* const shader = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
in vec4 orvex_Normal;
uniform mat4 orvex_ModelViewProjectionMatrix;
out vec3 normal;
void main() {
    normal = orvex_Normal.xyz;
    gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0);
}
[Pixel_Shader]
#version 150
in vec3 normal;
out vec4 color;
void main() { color = vec4(0.5 + 0.5 * normalize(normal), 1.0); }
)";

/// The host's context, and a framebuffer with four samples a pixel that stands for its widget.
class Toolkit {
public:
    bool open() {
        display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
        if (!eglInitialize(display, nullptr, nullptr) || !eglBindAPI(EGL_OPENGL_API))
            return false;
        const EGLint core_3_2[] = {EGL_CONTEXT_MAJOR_VERSION, 3, EGL_CONTEXT_MINOR_VERSION, 2,
                                   EGL_NONE};
        context = eglCreateContext(display, EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, core_3_2);
        if (!eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context))
            return false;
        make_widget();
        return true;
    }

    /// What a toolkit does before it asks a widget to draw: its own states, and its framebuffer.
    void begin_frame() const {
        glEnable(GL_BLEND);
        glDisable(GL_DEPTH_TEST);
        glBindFramebuffer(GL_FRAMEBUFFER, widget);
    }

    void close() const {
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(display, context);
    }

    EGLContext context = EGL_NO_CONTEXT;

private:
    void make_widget() {
        GLuint buffers[2];
        glGenRenderbuffers(2, buffers);
        glGenFramebuffers(1, &widget);
        glBindFramebuffer(GL_FRAMEBUFFER, widget);
        attach(buffers[0], GL_RGBA8, GL_COLOR_ATTACHMENT0);
        attach(buffers[1], GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT);
    }

    static void attach(GLuint buffer, GLenum format, GLenum place) {
        glBindRenderbuffer(GL_RENDERBUFFER, buffer);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, 4, format, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, buffer);
    }

    EGLDisplay display = EGL_NO_DISPLAY;
    GLuint widget = 0;
};

/// Adopts the context that is current.
Renderer* start(void* context, RenderWindow*& window) {
    core::start("", true, show_log_line, nullptr);
    Renderer* renderer = Kernel::get()->load_core_opengl_renderer_plugin(true);
    renderer->initialize();
    window = renderer->create_render_window();
    if (!window->osx_init_with_cocoa_nsgl_ctx(context) || !renderer->start())
        return nullptr;
    window->update_size(width, height);
    return renderer;
}

struct Stage {
    MeshTorus* ring = nullptr;
    Camera* camera = nullptr;
    GpuProgram* program = nullptr;
    RenderTarget* target = nullptr; ///< for a pass of its own, and for pictures
};

bool make(Renderer* renderer, Stage& stage) {
    stage.ring = new MeshTorus;
    stage.ring->set_build_params(2.2f, 0.8f, 48);
    stage.ring->build(nullptr);
    stage.camera = new Camera;
    stage.camera->set_viewport(0, 0, width, height);
    stage.camera->build_projection_persp(45.0f, float(width) / height, 0.1f, 100.0f, true);
    stage.camera->set_view_params(vec4(0, 5, 5, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);
    stage.program = GpuProgramMgr::get()->create_gpu_program_from_memory(
        renderer, shader, std::strlen(shader), "normals");
    stage.target = renderer->create_render_target();
    return stage.target->create_target(width, height, PF_RGBA_U8, false, true, false, 0);
}

/// One frame, into the framebuffer that the toolkit has bound.
void draw(Renderer* renderer, RenderWindow* window, const Stage& stage) {
    window->set_framebuffer(renderer->fbo_get_current_bound());
    renderer->reset_render_states();

    // A pass into a target ends at the framebuffer that stands for the window.
    stage.target->activate();
    renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
    stage.target->deactivate();

    stage.camera->bind(renderer, true, true, true, true, false);
    renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1.0f, 1.0f);
    stage.program->bind(renderer);
    stage.ring->render(renderer, nullptr);
    stage.program->unbind(renderer);
}

/// Samples can't be read: they are resolved into a plain target, and that one is read.
bool write_picture(Renderer* renderer, const Stage& stage, const char* path) {
    renderer->fbo_resolve_multisampling(0, width, height, stage.target->get_fbo(), width, height);
    renderer->fbo_bind(stage.target->get_fbo());
    const bool written = TextureMgr::get()->do_screenshot(renderer, path);
    renderer->fbo_bind(0);
    return written;
}

/// Everything that has something on the GPU, then the renderer and its windows, then the log. The
/// context is current all the while.
void stop(Renderer* renderer, const Stage& stage) {
    stage.camera->release(nullptr, nullptr);
    stage.ring->kill(renderer, nullptr);
    renderer->kill_all_render_targets();
    TextureMgr::get()->release_all_textures(renderer, nullptr);
    GpuProgramMgr::get()->release_all_resources(renderer, nullptr);
    renderer->stop();
    renderer->kill_all_render_windows();
    core::stop("done");
}

int fail(const char* reason) {
    std::fprintf(stderr, "host_window: %s\n", reason);
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    Toolkit toolkit;
    if (!toolkit.open())
        return fail("no OpenGL 3.2");
    RenderWindow* window = nullptr;
    Renderer* renderer = start(toolkit.context, window);
    if (!renderer)
        return fail("no context to adopt");
    Stage stage;
    bool ok = make(renderer, stage);
    toolkit.begin_frame();
    draw(renderer, window, stage);
    ok = ok && write_picture(renderer, stage, argc > 1 ? argv[1] : "host_window.jpg");
    stop(renderer, stage);
    toolkit.close();
    return ok ? 0 : 1;
}
