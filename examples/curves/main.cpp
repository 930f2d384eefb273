// Lines of all kinds. Above: one row of corners joined as separate lines, as a strip and as a loop,
// and a curve of a measured value. Below: a line animated by its factors, one column per frame,
// which first grows from its start and then shrinks towards its end: curves [gl2|gl3] [picture.jpg]

#include <cmath>

#include "../common/off_screen.h"

using namespace orvex;

namespace {

constexpr int width = 640;
constexpr int height = 320;
constexpr int num_corners = 8;
constexpr int num_frames = 16;
constexpr unsigned long num_samples = 200;

char const* const vertex = R"(
#if __VERSION__ >= 150
in vec4 orvex_Color;
#define VERTEX_COLOR orvex_Color
#else
#define VERTEX_COLOR gl_Color
#endif
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec4 line_color;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
    line_color = VERTEX_COLOR;
}
)";
char const* const pixel = R"(
IN vec4 line_color;
void main() { COLOR = line_color; }
)";

/// The corners of a ring, coloured from red to green.
Polyline* make_ring(LINE_RENDER_MODE mode, float x) {
    Polyline* const ring = new Polyline;
    ring->initialize(num_corners, mode);
    for (int i = 0; i < num_corners; ++i) {
        const float turn = static_cast<float>(i) / num_corners;
        const float angle = turn * 2.0f * 3.14159265f;
        const auto corner = static_cast<unsigned long>(i);
        ring->set_vertex_position(corner, std::cos(angle), std::sin(angle), 0.0f);
        ring->set_vertex_color(corner, vec4(1.0f - turn, turn, 0.3f, 1.0f));
    }
    ring->set_position(x, 1.3f, 0.0f);
    return ring;
}

/// A value that swings ever faster.
Curve* make_curve(float x) {
    Curve* const curve = new Curve;
    curve->alloc(num_samples);
    for (unsigned long i = 0; i < num_samples; ++i) {
        const float t = static_cast<float>(i) / num_samples;
        curve->set_value(i, vec3(2.0f * t - 1.0f, std::sin(40.0f * t * t) * (1.0f - t), 0.0f));
    }
    curve->set_vertices_color(0.4f, 0.8f, 1.0f, 1.0f);
    curve->set_position(x, 1.3f, 0.0f);
    return curve;
}

/// The frames of one line, drawn side by side.
void draw_frames(OffScreen& stage, Line& line) {
    for (int frame = 0; frame < num_frames; ++frame) {
        const float t = static_cast<float>(frame + 1) / num_frames;
        line.set_end_factor(t < 0.5f ? 1.0f - 2.0f * t : 0.0f);
        line.set_start_factor(t < 0.5f ? 0.0f : 2.0f * t - 1.0f);
        const float column = (static_cast<float>(frame) + 0.5f) / num_frames;
        line.set_position(vec4(9.0f * column - 4.5f, 0.0f, 0.0f, 1.0f));
        line.render(stage.renderer, nullptr);
    }
}

Line* make_line() {
    Line* const line = new Line;
    line->set_start_position(0.0f, -2.2f, 0.0f);
    line->set_end_position(0.3f, -0.2f, 0.0f);
    line->set_start_color(1.0f, 0.8f, 0.2f, 1.0f);
    line->set_end_color(1.0f, 0.2f, 0.6f, 1.0f);
    return line;
}

void bind_camera(OffScreen& stage) {
    Camera* const camera = new Camera;
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_ortho(-5.0f, 5.0f, -2.5f, 2.5f, 0.1f, 10.0f, true);
    camera->set_view_params(vec4(0, 0, 5, 1), vec4(0, 0, 0, 1), vec4(0, 1, 0, 0), true);
    camera->bind(stage.renderer, true, true, true, true, true);
    camera->release(nullptr, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(wants_gl3(argc, argv), width, height);
    if (!stage.started)
        return 1;
    bind_camera(stage);
    stage.renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1.0f, 1.0f);
    stage.make_program("lines", vertex, pixel)->bind(stage.renderer);

    Object* const still = new Object;
    still->add_child(make_ring(LINE_RENDER_MODE_LINES, -3.6f));
    still->add_child(make_ring(LINE_RENDER_MODE_LINE_STRIP, -1.2f));
    still->add_child(make_ring(LINE_RENDER_MODE_LINE_LOOP, 1.2f));
    still->add_child(make_curve(3.6f));
    still->render(stage.renderer, nullptr);
    Line* const line = make_line();
    draw_frames(stage, *line);

    const bool ok = stage.write(argc > 2 ? argv[2] : "curves.jpg");
    line->kill(stage.renderer, nullptr);
    still->kill(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
