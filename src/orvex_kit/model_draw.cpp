// A model on its way to the GPU: textures once, then the runs of faces, each with its material.

#include <algorithm>
#include <string_view>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/base/plugin_mgr.h>
#include <orvex/geometry/lines/polyline.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/geometry/points/vertex_pool.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/renderer/records/mesh_data.h>
#include <orvex/renderer/renderer.h>

#include "orvex_kit/private/model_data.h"

namespace orvex::kit {

/// The renderer that drew it last, or else the one of the view that is current.
Renderer* Model::Data::living_renderer() const {
    const bool lives =
        last_renderer && PluginMgr::get()->get_plugin(last_renderer_id) == last_renderer;
    return lives ? static_cast<Renderer*>(last_renderer) : current_renderer();
}

/// To one context; the engine itself brings them to others.
void Model::Data::upload(Renderer& renderer) {
    is_uploaded = true;
    for (Texture* texture : uploads)
        TextureMgr::get()->upload_to_renderer(&renderer, texture, 0);
    put_away_face_lists();
}

/// Drawing doesn't read them: only hosts do who ask for the node, and updates that make normals.
void Model::Data::put_away_face_lists() {
    if (keeps_face_lists || (style && style->shading == Normals::smooth))
        return;
    face_lists.resize(meshes.size());
    for (std::size_t i = 0; i < meshes.size(); ++i)
        face_lists[i].put_away(*meshes[i]->get_mesh_data());
}

/// From now on they stay.
void Model::Data::bring_back_face_lists() noexcept {
    keeps_face_lists = true;
    for (std::size_t i = 0; i < face_lists.size(); ++i)
        face_lists[i].bring_back(*meshes[i]->get_mesh_data());
    face_lists.clear();
}

namespace {

void set_lights(GpuProgram& program, const Axes& axes) {
    struct Light {
        const char* name;
        float right, up, toward;
    };
    constexpr Light lights[] = {
        {"to_sun", -0.79f, 0.62f, 0.75f}, {"to_fill", 0.81f, 0.08f, 0.59f}, {"to_sky", 0, 1, 0}};
    for (const Light& light : lights) {
        const vec4 to = axes.right * light.right + axes.up * light.up + axes.toward * light.toward;
        program.set_uniform_4f(nullptr, light.name, to.x, to.y, to.z, 0.0f);
    }
}

/// What is blended shows what is behind it, which stays in the depth buffer.
void begin_blending(Renderer& renderer) {
    // Alpha is how much of a pixel is covered.
    if (!renderer.set_blend_factors_separate(BLEND_FACTOR_SRC_ALPHA,
                                             BLEND_FACTOR_ONE_MINUS_SRC_ALPHA, BLEND_FACTOR_ONE,
                                             BLEND_FACTOR_ONE_MINUS_SRC_ALPHA))
        renderer.set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    renderer.set_blend_state(true);
    renderer.set_depth_buffer_writing_state(false);
}

void end_blending(Renderer& renderer) {
    renderer.set_blend_state(false);
    renderer.set_depth_buffer_writing_state(true);
}

} // namespace

void Model::Data::begin_draw(Renderer& renderer, GpuProgram& program, Path path) {
    last_renderer = &renderer;
    last_renderer_id = renderer.get_id();
    if (!is_uploaded)
        upload(renderer);
    for (Mesh* mesh : meshes)
        mesh->set_opengl_2_3_rendering_states(path == Path::gl2, nullptr);
    if (path == Path::gl2 && pieces.empty())
        make_pieces();
    look_at_arrays();
    if (path == Path::gl2 && has_default_arrays())
        disable_client_arrays(renderer);
    program.set_uniform_1f(nullptr, "faceted", is_faceted ? 1.0f : 0.0f);
    end_blending(renderer);
}

void Model::Data::look_at_arrays() {
    default_arrays.resize(meshes.size());
    for (std::size_t i = 0; i < meshes.size(); ++i)
        default_arrays[i].look_at(*meshes[i]->get_mesh_data());
    for (Piece& piece : pieces)
        if (piece.mesh)
            piece.default_arrays.look_at(*piece.mesh->get_mesh_data());
}

bool Model::Data::has_default_arrays() const {
    const auto has_any = [](const DefaultArrays& arrays) { return arrays.are_there(); };
    return std::any_of(default_arrays.begin(), default_arrays.end(), has_any) ||
           std::any_of(pieces.begin(), pieces.end(),
                       [](const Piece& piece) { return piece.default_arrays.are_there(); });
}

namespace {

/// Binds that the next run of faces wants again stay, for as long as this lives.
class KeptBinds {
public:
    explicit KeptBinds(Renderer& renderer)
        : renderer(renderer)
        , was_keeping(renderer.keep_binds(true)) {}
    ~KeptBinds() { renderer.keep_binds(was_keeping); }
    KeptBinds(const KeptBinds&) = delete;
    KeptBinds& operator=(const KeptBinds&) = delete;

private:
    Renderer& renderer;
    bool was_keeping;
};

} // namespace

void Model::Data::draw(Renderer& renderer, GpuProgram& program, Path path, const Angle& lit_from) {
    begin_draw(renderer, program, path);
    set_lights(program, axes_of({lit_from.azimuth, 0.0f, lit_from.up}));
    const KeptBinds kept(renderer);
    bool is_blending = false;
    for (std::size_t i = 0; i < facts.runs.size(); ++i) {
        const FaceRun& run = facts.runs[i];
        if (run.is_blended && !is_blending)
            begin_blending(renderer);
        is_blending = run.is_blended;
        draw_run(renderer, program, run, path == Path::gl2 ? &pieces[i] : nullptr, 100'000);
    }
    if (is_blending)
        end_blending(renderer);
}

namespace {

/// Draws objects that need no material.
template<class Drawn>
void draw_each(const std::vector<Drawn*>& objects, Renderer& renderer, GpuProgram& program) {
    program.bind(&renderer);
    for (Drawn* object : objects) {
        object->render_apply_automatic_uniforms(&renderer,
                                                renderer.gpu_program_get_active_program(),
                                                object->get_use_fixed_mvp_matrices_state());
        object->render_geometry(&renderer);
    }
    program.unbind(&renderer);
}

} // namespace

void Model::Data::draw_points(Renderer& renderer, GpuProgram& program) {
    last_renderer = &renderer;
    last_renderer_id = renderer.get_id();
    draw_each(clouds, renderer, program);
}

void Model::Data::draw_lines(Renderer& renderer, GpuProgram& program) {
    last_renderer = &renderer;
    last_renderer_id = renderer.get_id();
    draw_each(lines, renderer, program);
}

namespace {

/// Whether the processor draws.
bool is_software(Renderer& renderer) {
    const char* const text = renderer.get_renderer_model();
    const std::string_view model = text ? text : "";
    return model.find("llvmpipe") != model.npos || model.find("softpipe") != model.npos;
}

void draw_faces(Renderer& renderer, Mesh& mesh, std::size_t first, std::size_t count) {
    MaterialSubset subset;
    subset.first_face = static_cast<unsigned>(first);
    subset.last_face = static_cast<unsigned>(first + count - 1);
    MeshData* const store = mesh.get_mesh_data();
    store->current_subset = &subset;
    mesh.render_geometry(&renderer);
    store->current_subset = nullptr;
}

/// Draws so many faces at a time, and waits in between.
void draw_portions(Renderer& renderer, Mesh& mesh, const FaceRun& run, std::size_t portion) {
    for (std::size_t first = 0; first < run.num_faces; first += portion) {
        if (first > 0)
            renderer.finish_pipeline();
        draw_faces(renderer, mesh, run.first_face + first,
                   std::min(portion, run.num_faces - first));
    }
}

} // namespace

/// @param piece  null on path gl3
void Model::Data::draw_geometry(Renderer& renderer, const FaceRun& run, const Piece* piece,
                                std::size_t portion) {
    const bool is_own = piece && piece->mesh;
    Mesh& mesh = is_own ? *piece->mesh : *meshes[run.mesh];
    const WithoutDefaults lean(*mesh.get_mesh_data(),
                               is_own ? piece->default_arrays : default_arrays[run.mesh],
                               piece ? Path::gl2 : Path::gl3);
    if (piece) {
        mesh.render_geometry(&renderer);
        return;
    }
    const bool has_portions = run.num_faces > portion && is_software(renderer);
    draw_portions(renderer, mesh, run, has_portions ? portion : run.num_faces);
}

/// @param portion  what software drivers get at once: they keep what they are told to draw, with
///                 all that vertices come to, until they have drawn it
void Model::Data::draw_run(Renderer& renderer, GpuProgram& program, const FaceRun& run,
                           const Piece* piece, std::size_t portion) {
    Mesh& mesh = *meshes[run.mesh];
    Material* const material =
        run.material < 0 ? nullptr : materials[static_cast<std::size_t>(run.material)];
    set_material(program, material, has_colors[run.mesh]);
    program.bind(&renderer);
    if (material)
        material->bind_textures(&renderer);
    mesh.render_apply_automatic_uniforms(&renderer, renderer.gpu_program_get_active_program(),
                                         mesh.get_use_fixed_mvp_matrices_state());
    draw_geometry(renderer, run, piece, portion);
    program.unbind(&renderer);
    if (material)
        material->unbind_textures(&renderer);
}

void Model::Data::set_material(GpuProgram& program, const Material* material,
                               bool is_colored) const {
    // Vertices that have colours of their own need no other.
    const vec4 bare = is_colored ? vec4(1.0f, 1.0f, 1.0f, 1.0f) : vec4(0.7f, 0.7f, 0.8f, 1.0f);
    const vec4 diffuse = material ? material->get_diffuse() : bare;
    const vec4 specular = material ? material->get_specular() : vec4(0.2f, 0.2f, 0.2f, 1.0f);
    const float opacity = material ? material->get_opacity() : 1.0f;
    const float shininess = material ? material->get_shininess() : 16.0f;
    const bool textured = material && material->get_num_textures() > 0;
    program.set_uniform_4f(nullptr, "diffuse_color", diffuse.x, diffuse.y, diffuse.z, opacity);
    program.set_uniform_4f(nullptr, "specular_color", specular.x, specular.y, specular.z,
                           shininess);
    program.set_uniform_1f(nullptr, "textured", textured ? 1.0f : 0.0f);
    program.set_uniform_1f(nullptr, "colored", is_colored ? 1.0f : 0.0f);
    program.set_uniform_1i(nullptr, "diffuse_map", 0);
}

} // namespace orvex::kit
