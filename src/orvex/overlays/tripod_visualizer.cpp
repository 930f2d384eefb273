// The visualizers: three lines and a program, drawn with the rotation of a camera or with the
// transform of an object.

#include "orvex/overlays/tripod_visualizer.h"

#include "orvex/base/private/misuse.h"
#include "orvex/geometry/lines/polyline.h"
#include "orvex/gpu/gpu_program.h"
#include "orvex/gpu/gpu_program_mgr.h"
#include "orvex/math/mat4.h"
#include "orvex/math/vec4.h"
#include "orvex/overlays/private/overlay_program.h"
#include "orvex/renderer/renderer.h"
#include "orvex/scene/camera.h"
#include "orvex/scene/private/fresh_node.h"
#include "orvex/scene/private/weak_node.h"
#include "orvex/scene/tripod.h"

namespace orvex::aux {

/// The program is held by its manager, which may end it first.
struct TripodVisualizerData {
    WeakNode<GpuProgram> gpu_program;
    Polyline* polyline = nullptr;
    bool is_gl3 = false;

    bool make_program(Renderer& renderer);
    void make_polyline();
    bool is_ready() const { return gpu_program.get() && polyline; }
    /// Draws the axes by a matrix that takes them to the world.
    void draw(Renderer* renderer, const mat4& transform);
};

TripodVisualizer::TripodVisualizer()
    : data(std::make_unique<TripodVisualizerData>()) {}

TripodVisualizer::~TripodVisualizer() = default;

bool TripodVisualizerData::make_program(Renderer& renderer) {
    if (gpu_program.get())
        return true;

    // The texts that the context understands.
    int major = 0;
    int minor = 0;
    renderer.get_opengl_version(&major, &minor);
    is_gl3 = major >= 3;
    GpuProgram* const program =
        make_overlay_program(renderer, is_gl3 ? orvex_tripod_viz_vs_gl3 : orvex_tripod_viz_vs_gl2,
                             is_gl3 ? orvex_tripod_viz_ps_gl3 : orvex_tripod_viz_ps_gl2,
                             {nullptr, "- tripod visualizer GPU program",
                              "- unable to create the GPU program for the tripod visualizer."});
    if (!program)
        return false;
    program->deactivate(&renderer);
    gpu_program.set(program);
    return true;
}

namespace {

/// A line from the origin, of one colour.
void set_axis(Polyline& polyline, unsigned long line, const vec4& end, const vec4& color) {
    polyline.set_line_position(line, vec4(0.0f, 0.0f, 0.0f, 1.0f), end);
    polyline.set_line_color(line, color, color);
}

} // namespace

void TripodVisualizerData::make_polyline() {
    if (polyline)
        return;
    Fresh<Polyline> axes = make_fresh<Polyline>();
    axes->set_opengl_2_3_rendering_states(!is_gl3, nullptr);
    axes->initialize(6, LINE_RENDER_MODE_LINES);
    for (unsigned long line = 0; line < 3; ++line) {
        const vec4 direction(line == 0 ? 1.0f : 0.0f, line == 1 ? 1.0f : 0.0f,
                             line == 2 ? 1.0f : 0.0f, 1.0f);
        set_axis(*axes, line, direction, direction);
    }
    polyline = axes.release();
}

bool TripodVisualizer::init(Renderer* renderer) {
    if (!renderer)
        return misuse("TripodVisualizer::init", "a null renderer");
    if (!data->make_program(*renderer))
        return false;
    data->make_polyline();
    return true;
}

void TripodVisualizer::cleanup(Renderer* renderer) {
    GpuProgramMgr::get()->release_resource(renderer, data->gpu_program.take(), nullptr);
    if (data->polyline)
        data->polyline->release(renderer, nullptr);
    data->polyline = nullptr;
}

// The lines feed the program once more when they are rendered. With a gl3 program this is where the
// fixed pipeline gets the matrices, with a gl2 one the rendering hands them over.
void TripodVisualizerData::draw(Renderer* renderer, const mat4& transform) {
    polyline->get_tripod()->set_transform(transform);
    if (!gpu_program.get()->bind(renderer))
        return;
    polyline->render_apply_automatic_uniforms(renderer, renderer->gpu_program_get_active_program(),
                                              is_gl3);
    polyline->render(renderer, nullptr);
}

TripodVisualizerCamera::TripodVisualizerCamera()
    : own_camera(nullptr) {}

TripodVisualizerCamera::~TripodVisualizerCamera() = default;

bool TripodVisualizerCamera::init(Renderer* renderer) {
    if (!TripodVisualizer::init(renderer))
        return false;
    if (own_camera)
        return true;

    // Three units back: the axes, one unit long, stay inside its 45 degrees however they turn.
    own_camera = new Camera;
    own_camera->set_viewport(0, 0, 100, 100);
    own_camera->build_projection_persp(45.0f, 1.0f, 1.0f, 100.0f, true);
    own_camera->set_position(vec4(0.0f, 0.0f, 3.0f, 1.0f));
    own_camera->set_lookat(vec4(0.0f, 0.0f, 0.0f, 1.0f));
    own_camera->set_up(vec4(0.0f, 1.0f, 0.0f, 0.0f));
    return true;
}

void TripodVisualizerCamera::cleanup(Renderer* renderer) {
    TripodVisualizer::cleanup(renderer);
    if (own_camera)
        own_camera->release(renderer, nullptr);
    own_camera = nullptr;
}

void TripodVisualizerCamera::render(Renderer* renderer, Camera* camera, int x, int y, int width,
                                    int height) {
    if (!renderer || !camera || !own_camera || !data->is_ready())
        return;
    mat4 rotation = camera->get_view_matrix();
    rotation.set_translate(0.0f, 0.0f, 0.0f);
    own_camera->set_viewport(x, y, width, height);
    own_camera->bind(renderer, true, false, true, true, !data->is_gl3);
    data->draw(renderer, rotation);
}

TripodVisualizerObject::TripodVisualizerObject() = default;

TripodVisualizerObject::~TripodVisualizerObject() = default;

bool TripodVisualizerObject::init(Renderer* renderer) {
    return TripodVisualizer::init(renderer);
}

void TripodVisualizerObject::cleanup(Renderer* renderer) {
    TripodVisualizer::cleanup(renderer);
}

void TripodVisualizerObject::render(Renderer* renderer, Object* object) {
    if (renderer && object && data->is_ready())
        data->draw(renderer, object->get_transform());
}

} // namespace orvex::aux
