// Lines of all kinds. Above: one row of corners joined as separate lines, as a strip and as a loop,
// and a curve of a measured value. In the middle: splines. One through its keys, which are marked
// and joined by a line; one with marks at equal steps of time, whose keys lie closer in time
// towards the end; a closed one; and one whose middle key moves from frame to frame. Below: a line
// animated by its factors, one column per frame, which first grows from its start and then shrinks
// towards its end: curves [gl2|gl3] [picture.jpg]

#include <cmath>
#include <vector>

#include "off_screen.h"

using namespace orvex;

namespace {

constexpr int width = 640;
constexpr int height = 480;
constexpr int num_corners = 8;
constexpr int num_frames = 16;
constexpr unsigned long num_samples = 200;
constexpr float upper_row = 2.55f;
constexpr float middle_row = 0.1f;

// A spline gives its points no colour.
const char* const spline_vertex = R"(
uniform mat4 orvex_ModelViewProjectionMatrix;
void main() { gl_Position = orvex_ModelViewProjectionMatrix * POSITION; }
)";
const char* const spline_pixel = R"(
uniform vec4 tint;
void main() { COLOR = tint; }
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
    ring->set_position(x, upper_row, 0.0f);
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
    curve->set_position(x, upper_row, 0.0f);
    return curve;
}

const vec4 marks_color(1.0f, 0.9f, 0.5f, 1.0f);
const vec4 joint_color(0.4f, 0.42f, 0.48f, 1.0f);

/// Keys of a path from left to right, their times in place of w.
std::vector<vec4> path_keys(float x, float time_power) {
    const vec3 places[] = {vec3(-1.0f, -0.6f, 0.0f), vec3(-0.7f, 0.7f, 0.0f),
                           vec3(-0.2f, -0.2f, 0.0f), vec3(0.2f, 0.8f, 0.0f),
                           vec3(0.6f, -0.7f, 0.0f),  vec3(1.0f, 0.3f, 0.0f)};
    std::vector<vec4> keys;
    for (const vec3& place : places) {
        const float step = static_cast<float>(keys.size()) / 5.0f;
        keys.emplace_back(x + place.x, middle_row + place.y, place.z, std::pow(step, time_power));
    }
    return keys;
}

/// Keys on three leaves, the last one where the first one is.
std::vector<vec4> closed_keys(float x) {
    std::vector<vec4> keys;
    for (int i = 0; i <= 24; ++i) {
        const float angle = static_cast<float>(i % 24) * 3.14159265f / 12.0f;
        const float radius = 0.6f + 0.4f * std::cos(3.0f * angle);
        keys.emplace_back(x + radius * std::cos(angle), middle_row + radius * std::sin(angle), 0.0f,
                          static_cast<float>(i) / 24.0f);
    }
    return keys;
}

/// Draws from time 0 to time 1. Its keys are where it shows: no transform moves a spline.
MiniSpline* make_spline(const std::vector<vec4>& keys) {
    MiniSpline* const spline = new MiniSpline;
    for (const vec4& key : keys)
        spline->add_keyframe(key.w, key.x, key.y, key.z);
    return spline;
}

Polyline* make_joints(const std::vector<vec4>& keys) {
    Polyline* const joints = new Polyline;
    joints->initialize(keys.size(), LINE_RENDER_MODE_LINE_STRIP);
    for (unsigned long i = 0; i < keys.size(); ++i)
        joints->set_vertex_position(i, keys[i].x, keys[i].y, keys[i].z);
    joints->set_vertices_color(joint_color);
    return joints;
}

VertexPool* make_marks(const std::vector<vec4>& places) {
    VertexPool* const marks = new VertexPool;
    marks->init_pool(places.size(), false);
    for (unsigned long i = 0; i < places.size(); ++i) {
        marks->set_vertex_position(i, places[i].get_vec3());
        marks->set_vertex_color(i, marks_color);
    }
    return marks;
}

/// Where a spline is at equal steps of time.
std::vector<vec4> places_in_time(MiniSpline& spline, int steps) {
    std::vector<vec4> places;
    for (int i = 0; i <= steps; ++i) {
        vec4 place;
        spline.get_value(static_cast<float>(i) / static_cast<float>(steps), &place.x);
        places.push_back(place);
    }
    return places;
}

/// Shows a spline with the tinting program.
void draw_spline(OffScreen& stage, GpuProgram& program, MiniSpline& spline, const vec4& color) {
    program.set_uniform_4f(stage.renderer, "tint", color.x, color.y, color.z, color.w);
    spline.render(stage.renderer, nullptr);
}

/// One spline, drawn while its middle key sinks.
void draw_moving_key(OffScreen& stage, GpuProgram& program, float x) {
    MiniSpline* const spline = make_spline(
        {vec4(x - 1.0f, middle_row - 0.4f, 0.0f, 0.0f), vec4(x - 0.5f, middle_row, 0.0f, 0.3f),
         vec4(x, middle_row, 0.0f, 0.5f), vec4(x + 0.5f, middle_row, 0.0f, 0.7f),
         vec4(x + 1.0f, middle_row - 0.4f, 0.0f, 1.0f)});
    for (int frame = 0; frame < 5; ++frame) {
        const float t = static_cast<float>(frame) / 4.0f;
        spline->set_keyframe(2, 0.5f, x, middle_row + 0.8f - 1.6f * t, 0.0f);
        draw_spline(stage, program, *spline, vec4(0.4f + 0.6f * t, 0.9f - 0.5f * t, 0.5f, 1.0f));
    }
    spline->kill(stage.renderer, nullptr);
}

void draw_splines(OffScreen& stage, GpuProgram& lines, GpuProgram& tinted) {
    MiniSpline* const through_keys = make_spline(path_keys(-3.6f, 1.0f));
    MiniSpline* const faster = make_spline(path_keys(-1.2f, 0.5f));
    MiniSpline* const closed = make_spline(closed_keys(1.2f));
    Object* const beside = new Object;
    beside->add_child(make_joints(path_keys(-3.6f, 1.0f)));
    beside->add_child(make_marks(path_keys(-3.6f, 1.0f)));
    beside->add_child(make_marks(places_in_time(*faster, 32)));

    tinted.bind(stage.renderer);
    draw_spline(stage, tinted, *through_keys, vec4(0.5f, 0.9f, 0.6f, 1.0f));
    draw_spline(stage, tinted, *faster, vec4(0.8f, 0.6f, 1.0f, 1.0f));
    draw_spline(stage, tinted, *closed, vec4(1.0f, 0.6f, 0.4f, 1.0f));
    draw_moving_key(stage, tinted, 3.6f);
    tinted.unbind(stage.renderer);
    lines.bind(stage.renderer);
    beside->render(stage.renderer, nullptr);
    lines.unbind(stage.renderer);

    for (Object* const object : {static_cast<Object*>(through_keys), static_cast<Object*>(faster),
                                 static_cast<Object*>(closed), beside})
        object->kill(stage.renderer, nullptr);
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
    line->set_start_position(0.0f, -3.45f, 0.0f);
    line->set_end_position(0.3f, -1.45f, 0.0f);
    line->set_start_color(1.0f, 0.8f, 0.2f, 1.0f);
    line->set_end_color(1.0f, 0.2f, 0.6f, 1.0f);
    return line;
}

void bind_camera(OffScreen& stage) {
    Camera* const camera = new Camera;
    camera->set_viewport(0, 0, width, height);
    camera->build_projection_ortho(-5.0f, 5.0f, -3.75f, 3.75f, 0.1f, 10.0f, true);
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
    GpuProgram* const lines = stage.make_colored_program("lines", 5.0f);
    GpuProgram* const tinted = stage.make_program("splines", spline_vertex, spline_pixel);
    draw_splines(stage, *lines, *tinted);
    lines->bind(stage.renderer);

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
