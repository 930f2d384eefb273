// The draw pipeline of an object: its matrices for the fixed pipeline and for a program, and the
// two helpers of a scene's author, axes and grid. Those draw through the fixed pipeline, with the
// active program put aside meanwhile.

#include "orvex/scene/object.h"

#include "orvex/renderer/records/gpu_program_data.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/private/node_data.h"
#include "orvex/scene/private/object_data.h"

namespace orvex {

void Object::_render(Renderer* renderer) {
    if (display_grid_state)
        display_grid(renderer, nullptr);
    if (object_data->display_tripod_state)
        display_tripod(renderer, nullptr);
    Node::_render(renderer);
}

void Object::render_geometry(Renderer*) {}

void Object::render_geometry_prepare(Renderer*) {}

void Object::render_geometry_draw(Renderer*) {}

void Object::render_geometry_finish(Renderer*) {}

namespace {

/// What one object's automatic uniforms are made of.
struct DrawMatrices {
    mat4 model;
    mat4 projection;
    mat4 view;
    mat4 model_view = view * model;
};

/// Sends each value the program has a name for. Products nobody named are not formed.
void send_matrices(GpuProgramData& program, const DrawMatrices& matrices) {
    if (const char* name = program.model_matrix_uniform_name.get())
        program.set_uniform_4x4f(name, matrices.model);
    if (const char* name = program.view_matrix_uniform_name.get())
        program.set_uniform_4x4f(name, matrices.view);
    if (const char* name = program.projection_matrix_uniform_name.get())
        program.set_uniform_4x4f(name, matrices.projection);
    if (const char* name = program.model_view_matrix_uniform_name.get())
        program.set_uniform_4x4f(name, matrices.model_view);
    if (const char* name = program.view_projection_matrix_uniform_name.get())
        program.set_uniform_4x4f(name, matrices.projection * matrices.view);
    if (const char* name = program.model_view_projection_matrix_uniform_name.get())
        program.set_uniform_4x4f(name, matrices.projection * matrices.model_view);
}

void send_viewport(GpuProgramData& program, Renderer& renderer) {
    const char* const name = program.viewport_uniform_name.get();
    const int* const viewport = name ? renderer.get_viewport_ptr() : nullptr;
    if (viewport)
        program.set_uniform_4f(name, static_cast<float>(viewport[0]),
                               static_cast<float>(viewport[1]), static_cast<float>(viewport[2]),
                               static_cast<float>(viewport[3]));
}

} // namespace

void Object::render_apply_automatic_uniforms(Renderer* renderer, GpuProgramData* program,
                                             bool use_fixed) {
    if (!renderer)
        return;

    // The fixed pipeline, then the program, each value under the name that the program has for it.
    DrawMatrices matrices{get_absolute_transform(), renderer->get_projection_matrix(),
                          renderer->get_view_matrix()};
    if (use_fixed || !program)
        renderer->gl2_matrix_load(matrices.projection.ptr(), matrices.model_view.ptr(), nullptr,
                                  nullptr);
    if (!program)
        return;
    send_matrices(*program, matrices);
    send_viewport(*program, *renderer);
}

namespace {

/// The fixed pipeline for as long as this lives; the program that was active comes back then.
class FixedPipeline {
public:
    explicit FixedPipeline(Renderer& renderer)
        : renderer(renderer)
        , previous(renderer.gpu_program_get_active_program()) {
        renderer.gpu_program_deactivate(nullptr);
    }
    FixedPipeline(const FixedPipeline&) = delete;
    FixedPipeline& operator=(const FixedPipeline&) = delete;
    ~FixedPipeline() {
        if (previous)
            renderer.gpu_program_activate(previous);
    }

private:
    Renderer& renderer;
    GpuProgramData* previous;
};

} // namespace

void Object::display_tripod(Renderer* renderer, Node* node) {
    if (!renderer)
        return;
    {
        const FixedPipeline fixed(*renderer);
        render_apply_automatic_uniforms(renderer, nullptr, true);
        render_tripod(renderer, get_tripod_size());
    }
    for_each_child_object(node,
                          [renderer](Object& child) { child.display_tripod(renderer, &child); });
}

void Object::render_tripod(Renderer* renderer, const vec4& size) {
    if (!renderer)
        return;
    const vec4 origin(0.0f, 0.0f, 0.0f, 1.0f);
    const vec4 red(1.0f, 0.0f, 0.0f, 1.0f);
    const vec4 green(0.0f, 1.0f, 0.0f, 1.0f);
    const vec4 blue(0.0f, 0.0f, 1.0f, 1.0f);
    renderer->set_line_width(2.0f);
    renderer->render_line(origin, red, vec4(size.x, 0.0f, 0.0f, 1.0f), red);
    renderer->render_line(origin, green, vec4(0.0f, size.y, 0.0f, 1.0f), green);
    renderer->render_line(origin, blue, vec4(0.0f, 0.0f, size.z, 1.0f), blue);
    renderer->set_line_width(1.0f);
}

void Object::set_display_tripod_state(bool state, Node* node) {
    object_data->display_tripod_state = state;
    for_each_child_object(
        node, [state](Object& child) { child.set_display_tripod_state(state, &child); });
}

bool Object::get_display_tripod_state() const {
    return object_data->display_tripod_state;
}

void Object::set_tripod_size(float x, float y, float z, Node* node) {
    object_data->tripod_size = vec4(x, y, z, 1.0f);
    for_each_child_object(node, [=](Object& child) { child.set_tripod_size(x, y, z, &child); });
}

const vec4& Object::get_tripod_size() const {
    return object_data->tripod_size;
}

void Object::set_display_grid_state(bool state, Node* node) {
    display_grid_state = state;
    for_each_child_object(node,
                          [state](Object& child) { child.set_display_grid_state(state, &child); });
}

bool Object::get_display_grid_state() const {
    return display_grid_state;
}

void Object::set_grid_params(float size_x, float size_z, int divisions_x, int divisions_z,
                             bool draw_lines, bool draw_frame) {
    grid_size_x = size_x;
    grid_size_z = size_z;
    grid_divisions_x = divisions_x;
    grid_divisions_z = divisions_z;
    grid_draw_lines = draw_lines;
    grid_draw_frame = draw_frame;
}

void Object::display_grid(Renderer* renderer, Node* node) {
    if (!renderer)
        return;
    {
        const FixedPipeline fixed(*renderer);
        render_apply_automatic_uniforms(renderer, nullptr, true);
        render_grid(renderer, grid_size_x, grid_size_z, grid_divisions_x, grid_divisions_z,
                    grid_draw_lines, grid_draw_frame);
    }
    for_each_child_object(node,
                          [renderer](Object& child) { child.display_grid(renderer, &child); });
}

namespace {

/// Draws lines in the plane y = 0, all of one colour.
class GridPen {
public:
    GridPen(Renderer& renderer, float width, const vec4& color)
        : renderer(renderer)
        , color(color) {
        renderer.set_line_width(width);
    }
    GridPen(const GridPen&) = delete;
    GridPen& operator=(const GridPen&) = delete;
    ~GridPen() { renderer.set_line_width(1.0f); }

    void line(float x0, float z0, float x1, float z1) const {
        renderer.render_line(vec4(x0, 0.0f, z0, 1.0f), color, vec4(x1, 0.0f, z1, 1.0f), color);
    }

private:
    Renderer& renderer;
    vec4 color;
};

// The lines move by repeated addition, so that a position carries the rounding of all before it.
// They are counted in 64 bits: the largest division count plus one is no int.
void draw_grid_lines(Renderer& renderer, float size_x, float size_z, int divisions_x,
                     int divisions_z) {
    const GridPen pen(renderer, 1.0f, vec4(0.7f, 0.7f, 0.7f, 1.0f));
    const float half_x = size_x / 2.0f;
    const float half_z = size_z / 2.0f;
    const float step_x = size_x / static_cast<float>(divisions_x);
    const float step_z = size_z / static_cast<float>(divisions_z);
    float x = -half_x;
    for (long long i = 0; i <= divisions_x; ++i, x += step_x)
        pen.line(x, -half_z, x, half_z);
    float z = -half_z;
    for (long long i = 0; i <= divisions_z; ++i, z += step_z)
        pen.line(-half_x, z, half_x, z);
}

void draw_grid_frame_and_axes(Renderer& renderer, float size_x, float size_z) {
    const GridPen pen(renderer, 2.0f, vec4(1.0f, 1.0f, 0.0f, 1.0f));
    const float half_x = size_x / 2.0f;
    const float half_z = size_z / 2.0f;
    pen.line(-half_x, -half_z, -half_x, half_z);
    pen.line(half_x, -half_z, half_x, half_z);
    pen.line(-half_x, -half_z, half_x, -half_z);
    pen.line(-half_x, half_z, half_x, half_z);
    pen.line(-half_x, 0.0f, half_x, 0.0f);
    pen.line(0.0f, -half_z, 0.0f, half_z);
}

} // namespace

// The frame follows the object's own switch for lines; the parameter for the frame is not read.
void Object::render_grid(Renderer* renderer, float size_x, float size_z, int divisions_x,
                         int divisions_z, bool draw_lines, bool) {
    if (!renderer)
        return;
    if (draw_lines)
        draw_grid_lines(*renderer, size_x, size_z, divisions_x, divisions_z);
    if (grid_draw_lines)
        draw_grid_frame_and_axes(*renderer, size_x, size_z);
}

} // namespace orvex
