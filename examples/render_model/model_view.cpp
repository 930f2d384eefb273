#include "model_view.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <orvex/assets/material.h>
#include <orvex/assets/material_mgr.h>
#include <orvex/assets/texture.h>
#include <orvex/assets/texture_mgr.h>
#include <orvex/geometry/mesh.h>
#include <orvex/geometry/mesh_data.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/math/mat4.h>
#include <orvex/math/vec4.h>
#include <orvex/renderer/renderer.h>
#include <orvex/scene/camera.h>
#include <orvex/scene/model.h>

using namespace orvex;

ModelView::ModelView(Renderer* renderer, Model* model)
    : renderer(renderer)
    , model(model) {
    for (unsigned long i = 0; i < model->get_num_children(); ++i) {
        auto* const mesh = dynamic_cast<Mesh*>(model->get_child(i));
        if (!mesh)
            continue;
        meshes.push_back(mesh);
        faces += mesh->get_num_faces(nullptr);
        add_runs(mesh);
        measure(mesh);
    }
}

ModelView::~ModelView() {
    // Objects keep their program when they end, materials give theirs back.
    model->kill(renderer, nullptr);
    MaterialMgr::get()->release_all_resources(renderer, nullptr);
    TextureMgr::get()->release_all_resources(renderer, nullptr);
}

void ModelView::add_runs(Mesh* mesh) {
    const MeshData* const data = mesh->get_mesh_data();
    const unsigned count = static_cast<unsigned>(data->num_faces);
    for (unsigned first = 0; first < count;) {
        const int id = data->face_materials[first];
        unsigned last = first;
        while (last + 1 < count && data->face_materials[last + 1] == id)
            ++last;
        Material* const material = mesh->get_material(id);
        const bool is_opaque = !material || material->get_opacity() >= 1.0f;
        (is_opaque ? opaque : blended).push_back({mesh, material, first, last});
        first = last + 1;
    }
}

unsigned long ModelView::num_materials() const {
    return model->get_num_materials();
}

void ModelView::load_textures(std::string const& folder, std::FILE* lines) {
    for (unsigned long i = 0; i < model->get_num_materials(); ++i) {
        Material* const material = model->get_material_by_index(i);
        const unsigned long queued = material->async_loading_get_num_texture_filenames();
        for (unsigned long t = 0; lines && t < queued; ++t)
            std::fprintf(lines, "  texture %s\n", material->async_loading_get_texture_filename(t));
        const unsigned long before = material->get_num_textures();
        // Without a renderer the pixels stay here, so that the sampler can be set before upload.
        material->async_loading_process_all_texture_filenames(nullptr, folder.c_str(),
                                                              static_cast<PIXEL_FORMAT>(0), false);
        missing_textures += before + queued - material->get_num_textures();
        for (unsigned long t = before; t < material->get_num_textures(); ++t) {
            Texture* const texture = material->get_texture_by_index(t);
            texture->set_filtering_mode(nullptr, FILTERING_TRILINEAR);
            texture->set_anisotropy(nullptr, 8.0f);
            TextureMgr::get()->upload_to_renderer(renderer, texture, 0);
        }
    }
}

void ModelView::smooth_normals() {
    for (Mesh* mesh : meshes) {
        mesh->compute_faces_normal(nullptr);
        mesh->compute_vertices_normal(nullptr);
    }
}

void ModelView::use_program(GpuProgram* new_program, bool gl3) {
    program = new_program;
    for (Mesh* mesh : meshes)
        mesh->set_opengl_2_3_rendering_states(!gl3, nullptr);
    for (unsigned long i = 0; i < model->get_num_materials(); ++i)
        model->get_material_by_index(i)->set_gpu_program(program);
    // A default material of a 3DS file is known to its mesh alone.
    for (std::vector<Run> const* runs : {&opaque, &blended})
        for (Run const& run : *runs)
            if (run.material)
                run.material->set_gpu_program(program);
}

namespace {

float dot(vec4 const& a, vec4 const& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

vec4 difference(vec4 const& a, vec4 const& b) {
    return vec4(a.x - b.x, a.y - b.y, a.z - b.z, 0.0f);
}

vec4 cross(vec4 const& a, vec4 const& b) {
    vec4 result(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x, 0.0f);
    result.normalize();
    return result;
}

} // namespace

/// The engine's sphere lies around the bounding box. It is tightened around the vertices here, and
/// taken to the world by the whole transform: reading an object's absolute position would count its
/// own translation twice.
void ModelView::measure(Mesh* mesh) {
    mesh->update_bounding_sphere(nullptr);
    const mat4 transform = mesh->get_absolute_transform();
    vec4 center = mesh->get_bounding_sphere_center();
    center.w = 1.0f;
    const vec4 at = transform * center;
    float farthest = 0.0f;
    for (unsigned long i = 0; i < mesh->get_mesh_data()->num_vertices; ++i) {
        const vec4 arm = difference(transform * mesh->get_vertex_position(i), at);
        farthest = std::max(farthest, dot(arm, arm));
    }
    spheres.push_back({at, std::sqrt(farthest)});
}

vec4 ModelView::center() const {
    constexpr float largest = std::numeric_limits<float>::max();
    vec4 low(largest, largest, largest, 1.0f);
    vec4 high(-largest, -largest, -largest, 1.0f);
    for (Sphere const& sphere : spheres) {
        low.set(std::min(low.x, sphere.center.x - sphere.radius),
                std::min(low.y, sphere.center.y - sphere.radius),
                std::min(low.z, sphere.center.z - sphere.radius), 1.0f);
        high.set(std::max(high.x, sphere.center.x + sphere.radius),
                 std::max(high.y, sphere.center.y + sphere.radius),
                 std::max(high.z, sphere.center.z + sphere.radius), 1.0f);
    }
    return vec4((low.x + high.x) / 2, (low.y + high.y) / 2, (low.z + high.z) / 2, 1.0f);
}

/// A sphere touches a side of the view's pyramid when its centre is `radius` away from it. With the
/// eye on the axis at `away`, the centre at `aside` from the axis and `toward` along it, and half
/// the opening h: (away - toward) * sin(h) - aside * cos(h) = radius.
void ModelView::frame(Camera& camera, int width, int height) const {
    constexpr float opening_degrees = 35.0f;
    constexpr float degree = 0.017453292f;
    const float aspect = static_cast<float>(width) / static_cast<float>(height);
    const float half_height = opening_degrees * degree / 2;
    const float half_width = std::atan(std::tan(half_height) * aspect);

    vec4 toward(0.45f, 0.35f, 1.0f, 0.0f);
    toward.normalize();
    const vec4 right = cross(vec4(0, 1, 0, 0), toward);
    const vec4 up = cross(toward, right);
    const vec4 target = center();

    float away = 0.0f;
    float nearest = std::numeric_limits<float>::lowest();
    float farthest = std::numeric_limits<float>::max();
    for (Sphere const& sphere : spheres) {
        const vec4 arm = difference(sphere.center, target);
        const float depth = dot(arm, toward);
        const auto fit = [&](float aside, float half) {
            away = std::max(away, depth + (sphere.radius + std::abs(aside) * std::cos(half)) /
                                              std::sin(half));
        };
        fit(dot(arm, right), half_width);
        fit(dot(arm, up), half_height);
        nearest = std::max(nearest, depth + sphere.radius);
        farthest = std::min(farthest, depth - sphere.radius);
    }
    away = std::max(away, 1e-6f);

    const vec4 eye(target.x + toward.x * away, target.y + toward.y * away,
                   target.z + toward.z * away, 1.0f);
    camera.set_viewport(0, 0, width, height);
    camera.build_projection_persp(opening_degrees, aspect, std::max(away - nearest, away * 0.01f),
                                  away - farthest + away * 0.001f, true);
    camera.set_view_params(eye, target, vec4(0, 1, 0, 0), true);
}

void ModelView::draw() {
    renderer->set_blend_state(false);
    renderer->set_depth_buffer_writing_state(true);
    for (Run const& run : opaque)
        draw(run);
    if (blended.empty())
        return;
    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    renderer->set_blend_state(true);
    renderer->set_depth_buffer_writing_state(false);
    for (Run const& run : blended)
        draw(run);
    renderer->set_blend_state(false);
    renderer->set_depth_buffer_writing_state(true);
}

void ModelView::draw(Run const& run) {
    set_colors(run.material);
    if (run.material)
        run.material->bind(renderer);
    else
        program->bind(renderer);
    run.mesh->render_apply_automatic_uniforms(renderer, renderer->gpu_program_get_active_program(),
                                              run.mesh->get_use_fixed_mvp_matrices_state());
    MaterialSubset subset;
    subset.first_face = run.first_face;
    subset.last_face = run.last_face;
    MeshData* const data = run.mesh->get_mesh_data();
    data->current_subset = &subset;
    run.mesh->render_geometry(renderer);
    data->current_subset = nullptr;
    if (run.material)
        run.material->unbind(renderer);
    else
        program->unbind(renderer);
}

void ModelView::set_colors(Material* material) {
    const vec4 diffuse = material ? material->get_diffuse() : vec4(0.7f, 0.7f, 0.8f, 1.0f);
    const vec4 specular = material ? material->get_specular() : vec4(0.2f, 0.2f, 0.2f, 1.0f);
    const float opacity = material ? material->get_opacity() : 1.0f;
    const float shininess = material ? material->get_shininess() : 16.0f;
    const bool textured = material && material->get_num_textures() > 0;
    program->set_uniform_4f(nullptr, "diffuse_color", diffuse.x, diffuse.y, diffuse.z, opacity);
    program->set_uniform_4f(nullptr, "specular_color", specular.x, specular.y, specular.z,
                            shininess);
    program->set_uniform_1f(nullptr, "textured", textured ? 1.0f : 0.0f);
    program->set_uniform_1i(nullptr, "diffuse_map", 0);
}
