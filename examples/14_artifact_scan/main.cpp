// Draws one frame again and again into a render target and counts the pixels that change: none on
// healthy hardware. With a number of faults it spoils as many pixels of the last frame, and the
// scanner finds them: artifact_scan [gl2|gl3] [frames] [faults]

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "off_screen.h"

using namespace orvex;

namespace {

constexpr int size = 512;

const char* const vertex = R"(
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 normal;
OUT vec2 uv;
void main() {
    normal = NORMAL;
    uv = TEXCOORD;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
)";
const char* const pixel = R"(
IN vec3 normal;
IN vec2 uv;
void main() {
    float wave = 0.0;
    for (int i = 1; i < 8; ++i)
        wave += sin(float(i) * 9.0 * uv.x + cos(float(i) * 7.0 * uv.y)) / float(i);
    COLOR = vec4(0.5 + 0.5 * normalize(normal) * cos(wave), 1.0);
}
)";

/// The frame that must not vary.
class Frame {
public:
    explicit Frame(OffScreen& on)
        : stage(on)
        , target(on.renderer->create_render_target())
        , program(on.make_program("waves", vertex, pixel))
        , ring(new MeshTorus)
        , camera(new Camera) {
        complete = target->create_target(size, size, PF_RGBA_U8, false, false, true, 0);
        stage.build(ring);
        camera->set_viewport(0, 0, size, size);
        camera->build_projection_persp(60.0f, 1.0f, 0.1f, 100.0f, true);
        camera->set_view_params(vec4(0, 8, 8, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);
    }
    ~Frame() {
        ring->kill(stage.renderer, nullptr);
        camera->release(nullptr, nullptr);
    }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    void draw() {
        target->activate();
        camera->bind(stage.renderer, true, true, true, true, !stage.gl3);
        stage.renderer->clear_color_depth_buffers(0, 0, 0, 1, 1);
        program->bind(stage.renderer);
        ring->render(stage.renderer, nullptr);
        program->unbind(stage.renderer);
        target->deactivate();
    }

    /// Paints single pixels, row by row, in a colour that the frame doesn't have.
    void spoil(int faults) {
        target->activate();
        stage.renderer->set_scissor_state(true);
        for (int i = 0; i < faults; ++i) {
            stage.renderer->set_scissor(i % size, i / size, 1, 1);
            stage.renderer->clear_color_buffer(1, 1, 1, 0);
        }
        stage.renderer->set_scissor_state(false);
        target->deactivate();
    }

    RenderTarget* render_target() { return target; }
    bool complete = false;

private:
    OffScreen& stage;
    RenderTarget* target;
    GpuProgram* program;
    MeshTorus* ring;
    Camera* camera;
};

/// Takes a whole number of at least 0, if its word is there. @return false for another word
bool take_number(int argc, char** argv, int index, int& number) {
    if (argc <= index)
        return true;
    char* end = argv[index];
    const long value = std::strtol(argv[index], &end, 10);
    number = static_cast<int>(value);
    return end != argv[index] && *end == '\0' && value >= 0 && value <= 1000000000L;
}

bool is_path(const char* word) {
    return std::strcmp(word, "gl2") == 0 || std::strcmp(word, "gl3") == 0;
}

} // namespace

int main(int argc, char** argv) {
    int num_frames = 100;
    int num_faults = 0;
    if (argc > 4 || (argc > 1 && !is_path(argv[1])) || !take_number(argc, argv, 2, num_frames) ||
        !take_number(argc, argv, 3, num_faults)) {
        std::fputs("usage: artifact_scan [gl2|gl3] [frames] [faults]\n", stderr);
        return 2;
    }
    num_faults = std::min(num_faults, size * size);
    OffScreen stage(wants_gl3(argc, argv), 64, 64);
    if (!stage.started)
        return 1;
    Frame frame(stage);
    if (!frame.complete) {
        std::fprintf(stderr, "%s", frame.render_target()->get_error_str());
        return 1;
    }
    ArtifactScanner* const scanner = new ArtifactScanner;
    scanner->set_render_target(frame.render_target());
    bool ok = true;
    for (int i = 0; i < num_frames && ok; ++i) {
        frame.draw();
        ok = scanner->run(stage.renderer, false);
    }
    if (ok && num_faults > 0) {
        frame.draw();
        frame.spoil(num_faults);
        ok = scanner->run(stage.renderer, false);
    }
    std::printf("%d artifacts in %d frames, at most %d in one\n",
                scanner->get_total_number_of_artifacts(), num_frames + (num_faults > 0 ? 1 : 0),
                scanner->get_max_number_of_artifacts());
    scanner->kill(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
