// Rays from a grid of pixels meet a rotated model, and a point is drawn at each hit, from yellow
// for the nearest to red for the farthest. Left: seen by the camera that picked, a perspective one
// above and an orthographic one below, so that the points form the grid. Right: the same points
// from the side; they lie on the surface. picking [gl2|gl3] [picture.jpg] [model.obj]

#include <algorithm>
#include <limits>
#include <vector>

#include "off_screen.h"

using namespace orvex;

namespace {

constexpr int size = 320; ///< of one of the four views, pixels
constexpr int step = 10;  ///< between two rays, pixels

const char* const surface_vertex = R"(
uniform mat4 orvex_ModelViewMatrix;
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec3 eye_normal;
void main() {
    eye_normal = mat3(orvex_ModelViewMatrix) * NORMAL;
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
}
)";
const char* const surface_pixel = R"(
IN vec3 eye_normal;
void main() { COLOR = vec4(vec3(0.25, 0.3, 0.35) + 0.4 * abs(normalize(eye_normal).z), 1.0); }
)";

// Drawn a little nearer than they are, or the surface would cover half of them.
const char* const point_vertex = R"(
uniform mat4 orvex_ModelViewProjectionMatrix;
OUT vec4 point_color;
void main() {
    gl_Position = orvex_ModelViewProjectionMatrix * POSITION;
    gl_Position.z -= 0.004 * gl_Position.w;
    gl_PointSize = 3.0;
    point_color = VERTEX_COLOR;
}
)";
const char* const point_pixel = R"(
IN vec4 point_color;
void main() { COLOR = point_color; }
)";

Camera* make_camera(int column, int row, const vec4& eye) {
    Camera* const camera = new Camera;
    camera->set_viewport(column * size, row * size, size, size);
    camera->build_projection_persp(34.0f, 1.0f, 8.0f, 60.0f, true);
    camera->set_view_params(eye, vec4(0, 2, 0, 1), vec4(0, 1, 0, 0), true);
    return camera;
}

/// A ray of an orthographic camera goes along -Z, which is where this camera looks.
Camera* make_ortho_camera(int column, int row) {
    Camera* const camera = make_camera(column, row, vec4(0, 2, 26, 1));
    camera->build_projection_ortho(-9.0f, 9.0f, -9.0f, 9.0f, 8.0f, 60.0f, true);
    return camera;
}

using Hits = std::vector<RayObjectIntersection>;

/// The nearest hit over all meshes of the model.
RayObjectIntersection nearest_hit(const Ray& ray, const Model& model) {
    RayObjectIntersection nearest;
    nearest.distance = std::numeric_limits<float>::max();
    for (unsigned long i = 0; i < model.get_num_children(); ++i) {
        RayObjectIntersection met;
        if (RayCaster().cast_ray_object(ray, dynamic_cast<Object*>(model.get_child(i)), met) &&
            met.distance < nearest.distance)
            nearest = met;
    }
    return nearest;
}

/// Casts a ray through every `step`th pixel of the camera's viewport.
Hits pick(Camera& camera, const Model& model) {
    const RayCaster caster;
    const Viewport& viewport = camera.get_viewport();
    Hits hits;
    for (int y = step / 2; y < size; y += step) {
        for (int x = step / 2; x < size; x += step) {
            Ray ray;
            if (camera.is_perspective_projection())
                caster.get_ray(&camera, viewport.x + x, viewport.y + y, ray);
            else
                caster.get_ray_ortho_cam(&camera, viewport.x + x, viewport.y + y, ray);
            const RayObjectIntersection hit = nearest_hit(ray, model);
            if (hit.hit)
                hits.push_back(hit);
        }
    }
    return hits;
}

VertexPool* make_points(const Hits& hits) {
    const auto nearer = [](const RayObjectIntersection& a, const RayObjectIntersection& b) {
        return a.distance < b.distance;
    };
    VertexPool* const points = new VertexPool;
    points->init_pool(hits.size(), false);
    const auto [first, last] = std::minmax_element(hits.begin(), hits.end(), nearer);
    for (unsigned long i = 0; i < hits.size(); ++i) {
        const float range = std::max(last->distance - first->distance, 0.001f);
        const float depth = (hits[i].distance - first->distance) / range;
        points->set_vertex_position(i, hits[i].position);
        points->set_vertex_color(i, 1.0f, 0.95f - 0.85f * depth, 0.2f, 1.0f);
    }
    return points;
}

/// The model with its points, as a camera sees them; ends the camera.
void draw(OffScreen& stage, Model& model, VertexPool& points, GpuProgram& program, Camera* camera) {
    camera->bind(stage.renderer, true, true, true, true, true);
    model.render(stage.renderer, nullptr);
    program.bind(stage.renderer);
    points.render(stage.renderer, nullptr);
    program.unbind(stage.renderer);
    camera->release(nullptr, nullptr);
}

void pick_and_draw(OffScreen& stage, Model& model, GpuProgram& program, Camera* camera) {
    const Hits hits = pick(*camera, model);
    VertexPool* const points = make_points(hits);
    const int row = camera->get_viewport().y / size;
    draw(stage, model, *points, program, camera);
    draw(stage, model, *points, program, make_camera(1, row, vec4(30, 9, 4, 1)));
    points->kill(stage.renderer, nullptr);
}

Model* load_model(OffScreen& stage, const char* path) {
    Model* const model = aux::load_model_from_file(path, "", "");
    if (!model) {
        std::fprintf(stderr, "can't load %s\n", path);
        return nullptr;
    }
    GpuProgram* const program = stage.make_program("surface", surface_vertex, surface_pixel);
    for (unsigned long i = 0; i < model->get_num_materials(); ++i)
        model->get_material_by_index(i)->set_gpu_program(program);
    model->set_opengl_2_3_rendering_states(!stage.gl3, model);
    model->update_bounding_sphere(model);
    model->set_orientation_euler_xyz(12.0f, 35.0f, 8.0f);
    return model;
}

} // namespace

int main(int argc, char** argv) {
    OffScreen stage(wants_gl3(argc, argv), 2 * size, 2 * size);
    if (!stage.started)
        return 1;
    Model* const model = load_model(stage, argc > 3 ? argv[3] : PICKING_MODEL);
    if (!model)
        return 1;
    GpuProgram* const program = stage.make_program("points", point_vertex, point_pixel);
    stage.renderer->clear_color_depth_buffers(0.1f, 0.12f, 0.15f, 1.0f, 1.0f);
    pick_and_draw(stage, *model, *program, make_camera(0, 1, vec4(9, 10, 25, 1)));
    pick_and_draw(stage, *model, *program, make_ortho_camera(0, 0));

    const bool ok = stage.write(argc > 2 ? argv[2] : "picking.jpg");
    model->kill(stage.renderer, nullptr);
    MaterialMgr::get()->release_all_resources(stage.renderer, nullptr);
    return ok ? 0 : 1;
}
