// What keeps a picture of the bare engine empty, one cause after the other: how much of it shows
// the sphere, in thousandths, with the cause and without.

#include <cstddef>
#include <functional>
#include <vector>

#include "off_screen.h"

using namespace orvex;

namespace {

constexpr int width = 48;
constexpr int height = 64;

const char* const tinted = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
uniform mat4 orvex_ModelViewProjectionMatrix;
void main() { gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0); }
[Pixel_Shader]
#version 150
uniform vec4 tint;
out vec4 color;
void main() { color = tint; }
)";

const char* const textured = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
uniform mat4 orvex_ModelViewProjectionMatrix;
void main() { gl_Position = orvex_ModelViewProjectionMatrix * vec4(orvex_Position.xyz, 1.0); }
[Pixel_Shader]
#version 150
uniform sampler2D picture;
out vec4 color;
void main() { color = texture(picture, vec2(0.5)); }
)";

/// Has no attribute of the engine's names, and is drawn by the client arrays of OpenGL 2.
const char* const of_gl2 = R"([Vertex_Shader]
#version 120
void main() { gl_Position = ftransform(); }
[Pixel_Shader]
#version 120
void main() { gl_FragColor = vec4(1.0); }
)";

const char* const misspelt = R"([Vertex_Shader]
#version 150
in vec4 orvex_Position;
void main() { gl_Position = orvex_Positoin; }
[Pixel_Shader]
#version 150
out vec4 color;
void main() { color = vec4(1.0); }
)";

/// A frame in which all is right until a cause spoils it.
struct Frame {
    explicit Frame(OffScreen& stage);
    ~Frame();
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    void see(float opening, float aspect, float far, const vec4& target) {
        camera->set_viewport(0, 0, width, height);
        camera->build_projection_persp(opening, aspect, 0.1f, far, true);
        camera->set_view_params(vec4(0, 0, 4, 1), target, vec4(0, 1, 0, 0), true);
    }
    void draw();
    int thousandths_shown();

    Renderer* renderer;
    RenderWindow* window;
    MeshSphere* sphere = new MeshSphere;
    Camera* camera = new Camera;
    GpuProgram* program;
    vec4 tint{1.0f, 0.5f, 0.2f, 1.0f};
    float depth = 1.0f; ///< that the picture is cleared to
};

GpuProgram* make_program(Renderer* renderer, const char* text) {
    return GpuProgramMgr::get()->create_gpu_program_from_memory(renderer, text, std::strlen(text),
                                                                "sphere");
}

Frame::Frame(OffScreen& stage)
    : renderer(stage.renderer)
    , window(stage.window)
    , program(make_program(renderer, tinted)) {
    sphere->set_build_params(1.0f, 24, 24);
    sphere->build(nullptr);
    // A core context has no fixed matrices, and says so at each that is loaded.
    sphere->set_use_fixed_mvp_matrices_state(false, nullptr);
    see(45.0f, float(width) / height, 100.0f, vec4(0, 0, 0, 1));
}

Frame::~Frame() {
    camera->release(nullptr, nullptr);
    sphere->kill(renderer, nullptr);
}

void Frame::draw() {
    camera->bind(renderer, true, true, true, true, false);
    renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, depth);
    program->bind(renderer);
    program->set_uniform_4f(renderer, "tint", tint.x, tint.y, tint.z, tint.w);
    sphere->render(renderer, nullptr);
    program->unbind(renderer);
}

int Frame::thousandths_shown() {
    renderer->set_viewport(0, 0, width, height);
    std::vector<unsigned char> pixels(width * height * 4);
    renderer->get_color_buffer(pixels.data());
    int shown = 0;
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        shown += pixels[i] + pixels[i + 1] + pixels[i + 2] > 0 ? 1 : 0;
    return shown * 1000 / (width * height);
}

/// Draws a frame with a cause, and then one without.
void show(OffScreen& stage, const char* cause, const std::function<void(Frame&)>& spoil,
          const std::function<void(Frame&)>& mend) {
    Frame frame(stage);
    spoil(frame);
    stage.renderer->get_opengl_error();
    frame.draw();
    const unsigned int error = stage.renderer->get_opengl_error();
    const int shown = frame.thousandths_shown();
    mend(frame);
    frame.draw();
    std::printf("%s: %d%s, mended %d\n", cause, shown, error ? " with an error" : "",
                frame.thousandths_shown());
}

void show_programs(OffScreen& stage) {
    GpuProgram* program = make_program(stage.renderer, misspelt);
    if (!program->is_valid()) {
        std::printf("a program that doesn't compile\n");
        std::fprintf(stderr, "%s\n", program->get_shader_error_messages());
    }

    show(
        stage, "a program of the other path",
        [](Frame& frame) { frame.program = make_program(frame.renderer, of_gl2); },
        [](Frame& frame) { frame.program = make_program(frame.renderer, tinted); });
    show(
        stage, "a uniform that nobody set", [](Frame& frame) { frame.tint = vec4(0, 0, 0, 0); },
        [](Frame& frame) { frame.tint = vec4(1, 1, 1, 1); });
}

void show_cameras(OffScreen& stage) {
    const auto right = [](Frame& frame) {
        frame.see(45.0f, float(width) / height, 100.0f, vec4(0, 0, 0, 1));
    };
    show(
        stage, "no viewport", [](Frame& frame) { frame.camera->set_viewport(0, 0, 0, 0); }, right);
    show(
        stage, "it looks elsewhere",
        [](Frame& frame) { frame.see(45.0f, 0.75f, 100.0f, vec4(0, 0, 8, 1)); }, right);
    show(
        stage, "the far plane is too near",
        [](Frame& frame) { frame.see(45.0f, 0.75f, 2.0f, vec4(0, 0, 0, 1)); }, right);
    show(
        stage, "the aspect of whole numbers",
        [](Frame& frame) {
            constexpr int aspect = width / height; // 0, where 0.75 is meant
            frame.see(45.0f, float(aspect), 100.0f, vec4(0, 0, 0, 1));
        },
        right);
    show(
        stage, "an opening in radians",
        [](Frame& frame) { frame.see(0.785f, 0.75f, 100.0f, vec4(0, 0, 0, 1)); }, right);
    show(
        stage, "a left-handed projection",
        [](Frame& frame) {
            frame.camera->build_projection_persp(45.0f, 0.75f, 0.1f, 100.0f, false);
        },
        right);
}

void show_objects(OffScreen& stage) {
    show(
        stage, "a mesh that was never built",
        [](Frame& frame) {
            frame.sphere->kill(frame.renderer, nullptr);
            frame.sphere = new MeshSphere;
        },
        [](Frame& frame) {
            frame.sphere->set_build_params(1.0f, 24, 24);
            frame.sphere->build(nullptr);
        });
    show(
        stage, "it is hidden", [](Frame& frame) { frame.sphere->set_render_state(false, nullptr); },
        [](Frame& frame) { frame.sphere->set_render_state(true, nullptr); });
    show(
        stage, "a scale of 0", [](Frame& frame) { frame.sphere->set_scale(0, 0, 0); },
        [](Frame& frame) { frame.sphere->set_scale(1, 1, 1); });
}

void show_states(OffScreen& stage) {
    Renderer* renderer = stage.renderer;
    show(
        stage, "the depth cleared to 0", [](Frame& frame) { frame.depth = 0.0f; },
        [](Frame& frame) { frame.depth = 1.0f; });
    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    show(
        stage, "blended, with an alpha of 0",
        [=](Frame& frame) {
            renderer->set_blend_state(true);
            frame.tint.w = 0.0f;
        },
        [=](Frame&) { renderer->set_blend_state(false); });
    const auto cull = [=](bool state) {
        renderer->rasterizer_set_cull_state(state);
        renderer->rasterizer_set_cull_face(POLYGON_FACE_FRONT_AND_BACK);
        renderer->rasterizer_apply_state();
    };
    show(
        stage, "every side culled", [=](Frame&) { cull(true); }, [=](Frame&) { cull(false); });
}

void show_targets(OffScreen& stage) {
    RenderTarget* target = stage.renderer->create_render_target();
    if (!target->create_target(width, height, PF_RGBA_U8, false, true, false, 0))
        return;
    Frame frame(stage);
    stage.renderer->clear_color_depth_buffers(0.0f, 0.0f, 0.0f, 1.0f, 1.0f);
    target->activate();
    frame.draw();
    std::printf("in the target: %d, ", frame.thousandths_shown());
    target->deactivate();
    std::printf("in the window: %d\n", frame.thousandths_shown());

    Texture* picture = Kernel::get()->create_color_texture_from_render_target(target, 0);
    picture->unbind(stage.renderer, 0);
    show(
        stage, "a texture that nobody bound",
        [](Frame& spoilt) { spoilt.program = make_program(spoilt.renderer, textured); },
        [=](Frame& spoilt) { picture->bind(spoilt.renderer, 0); });
    TextureMgr::get()->release_texture(stage.renderer, picture, nullptr);
    show(
        stage, "no context is current", [](Frame& spoilt) { spoilt.window->apply_context(false); },
        [](Frame& spoilt) { spoilt.window->apply_context(true); });
}

} // namespace

int main() {
    OffScreen stage(true, width, height);
    if (!stage.started)
        return 1;
    show_programs(stage);
    show_cameras(stage);
    show_objects(stage);
    show_states(stage);
    show_targets(stage);
    return 0;
}
