// Lines of all kinds. Above: one ring of corners as separate lines, as a strip and as a loop. In
// the middle: a measured value, and a spline with its keys (large) and its places at equal steps of
// time (small). Below: a line that grows from its start, then shrinks towards its end: curves [gl2]

#include <cmath>
#include <cstdio>

#include <orvex/orvex.h>
#include <orvex_kit/kit.h>

using namespace orvex;

// A spline has no colours of its own, and no transform moves it.
static const char paint_text[] = R"([Vertex_Shader]
uniform mat4 orvex_ModelViewProjectionMatrix;
uniform float dot_size;
OUT vec4 paint;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
    gl_PointSize = dot_size;
    paint = VERTEX_COLOR;
}
[Pixel_Shader]
uniform vec4 tint;
IN vec4 paint;
void main() { COLOR = tint.a > 0.0 ? tint : paint; }
)";

struct Pen {
    kit::View& view;
    kit::Program program;

    void draw(Object& object, const vec4& tint = vec4(0, 0, 0, 0), float dot_size = 1.0f) {
        program.set("tint", tint);
        program.set("dot_size", dot_size);
        program.gpu()->bind(view.renderer());
        object.render(view.renderer(), nullptr);
        program.gpu()->unbind(view.renderer());
    }
};

static void draw_ring(Pen& pen, LINE_RENDER_MODE mode, float x) {
    constexpr unsigned long corners = 10;
    const auto ring = kit::make<Polyline>();
    ring->initialize(corners, mode);
    for (unsigned long i = 0; i < corners; ++i) {
        const float turn = static_cast<float>(i) / corners;
        const float angle = 6.2831853f * turn;
        ring->set_vertex_position(i, std::cos(angle), std::sin(angle), 0.0f);
        ring->set_vertex_color(i, vec4(1.0f - 0.6f * turn, 0.4f + 0.5f * turn, 0.4f, 1.0f));
    }
    ring->set_position(x, 2.4f, 0.0f);
    pen.draw(*ring);
}

static void draw_curve(Pen& pen) {
    constexpr unsigned long samples = 240;
    const auto curve = kit::make<Curve>();
    curve->alloc(samples);
    for (unsigned long i = 0; i < samples; ++i) {
        const float t = static_cast<float>(i) / samples;
        curve->set_value(i, vec3(4.0f * t - 4.2f, 0.9f * std::sin(50.0f * t * t) * (1.0f - t), 0));
    }
    curve->set_vertices_color(0.4f, 0.8f, 1.0f, 1.0f);
    pen.draw(*curve);
}

static void draw_spline(Pen& pen) {
    constexpr int keys = 6;
    constexpr int steps = 40;
    const float heights[keys] = {-0.7f, 0.8f, -0.2f, 0.7f, -0.8f, 0.3f};
    const auto spline = kit::make<MiniSpline>();
    const auto marks = kit::make<VertexPool>();
    const auto places = kit::make<VertexPool>();
    marks->init_pool(keys, false);
    places->init_pool(steps + 1, false);
    for (int i = 0; i < keys; ++i) {
        const float t = static_cast<float>(i) / (keys - 1);
        spline->add_keyframe(std::sqrt(t), 0.3f + 3.9f * t, heights[i], 0.0f);
        marks->set_vertex_position(static_cast<unsigned long>(i),
                                   vec3(0.3f + 3.9f * t, heights[i], 0.0f));
    }
    for (int i = 0; i <= steps; ++i) {
        vec3 place;
        spline->get_value(static_cast<float>(i) / steps, &place.x);
        places->set_vertex_position(static_cast<unsigned long>(i), place);
    }
    pen.draw(*spline, vec4(0.5f, 0.9f, 0.6f, 1.0f));
    pen.draw(*places, vec4(0.8f, 1.0f, 0.85f, 1.0f), 12.0f);
    pen.draw(*marks, vec4(1.0f, 0.8f, 0.4f, 1.0f), 24.0f);
}

static void draw_growing_line(Pen& pen) {
    constexpr int frames = 20;
    const auto line = kit::make<Line>();
    line->set_start_position(-0.1f, -3.3f, 0.0f);
    line->set_end_position(0.1f, -1.5f, 0.0f);
    line->set_start_color(1.0f, 0.8f, 0.2f, 1.0f);
    line->set_end_color(1.0f, 0.3f, 0.6f, 1.0f);
    for (int frame = 0; frame < frames; ++frame) {
        const float t = (static_cast<float>(frame) + 0.5f) / frames;
        line->set_end_factor(std::fmax(1.0f - 2.0f * t, 0.0f));
        line->set_start_factor(std::fmax(2.0f * t - 1.0f, 0.0f));
        line->set_position(vec4(8.8f * t - 4.4f, 0.0f, 0.0f, 1.0f));
        pen.draw(*line);
    }
}

int main(int argc, char**) {
    const kit::Engine engine;
    kit::View view(640, 480, {argc > 1 ? kit::Path::gl2 : kit::Path::gl3, 0, 4});
    Pen pen{view, kit::Program::from_text(view, paint_text, "paint")};
    if (!pen.program) {
        std::fprintf(stderr, "%s%s\n", view.reason().c_str(), pen.program.reason().c_str());
        return 1;
    }
    kit::Camera camera;
    camera.set_parallel(7.5f);
    view.set_background({0.1f, 0.12f, 0.15f, 1.0f});
    view.begin(camera);
    view.renderer()->set_line_width(6.0f); // of the pixels that four by four become one
    draw_ring(pen, LINE_RENDER_MODE_LINES, -3.1f);
    draw_ring(pen, LINE_RENDER_MODE_LINE_STRIP, 0.0f);
    draw_ring(pen, LINE_RENDER_MODE_LINE_LOOP, 3.1f);
    draw_curve(pen);
    draw_spline(pen);
    draw_growing_line(pen);
    view.end();

    const kit::Outcome written = view.write("curves.jpg");
    if (!written)
        std::fprintf(stderr, "%s\n", written.reason().c_str());
    return written ? 0 : 1;
}
