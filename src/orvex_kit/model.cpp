// A model, its textures and the runs of faces that share a material, drawn by one program. The
// scene owns all that the load brought in, and gives it back at its end.

#include "orvex_kit/model.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>
#include <string_view>

#include <orvex/assets/materials/material.h>
#include <orvex/assets/materials/material_mgr.h>
#include <orvex/assets/textures/texture.h>
#include <orvex/assets/textures/texture_mgr.h>
#include <orvex/geometry/mesh/mesh.h>
#include <orvex/geometry/mesh/model.h>
#include <orvex/gpu/gpu_program.h>
#include <orvex/kernel/aux.h>
#include <orvex/math/mat4.h>
#include <orvex/renderer/records/mesh_data.h>
#include <orvex/renderer/renderer.h>

#include "orvex_kit/files.h"

namespace orvex::kit {

std::unique_ptr<Model> Model::load(const std::string& path, Renderer* renderer) {
    // The loaders put the folder right before each name, with nothing between them.
    const std::string folder = folder_of(path);
    orvex::Model* const model =
        aux::load_model_from_file(path.c_str() + folder.size(), folder.c_str(), folder.c_str());
    if (!model)
        return nullptr;
    std::unique_ptr<Model> scene(new Model(renderer, model, path));
    scene->load_textures(folder);
    return scene;
}

Model::Model(Renderer* renderer, orvex::Model* model, const std::string& path)
    : renderer(renderer)
    , model(model)
    , path(path)
    , is_3ds(has_suffix(path, ".3ds")) {
    gather(model);
    for (Mesh* mesh : meshes)
        add_runs(mesh);
    measure();
    if (is_3ds)
        up = standing_axis(bounds);
}

Model::~Model() {
    // Objects keep their program when they end, materials give theirs back.
    model->kill(renderer, nullptr);
    MaterialMgr::get()->release_all_resources(renderer, nullptr);
    TextureMgr::get()->release_all_textures(renderer, nullptr);
}

void Model::gather(Node* node) {
    for (unsigned long i = 0; i < node->get_num_children(); ++i) {
        Node* const child = node->get_child(i);
        if (auto* const mesh = dynamic_cast<Mesh*>(child))
            meshes.push_back(mesh);
        gather(child);
    }
}

void Model::add_runs(Mesh* mesh) {
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

namespace {

/// A box that grows around points.
class Box {
public:
    void add(const vec4& point) {
        low.set(std::min(low.x, point.x), std::min(low.y, point.y), std::min(low.z, point.z), 1);
        high.set(std::max(high.x, point.x), std::max(high.y, point.y), std::max(high.z, point.z),
                 1);
    }
    vec4 middle() const {
        return vec4(low.x / 2 + high.x / 2, low.y / 2 + high.y / 2, low.z / 2 + high.z / 2, 1.0f);
    }

private:
    static constexpr float largest = std::numeric_limits<float>::max();
    vec4 low{largest, largest, largest, 1.0f};
    vec4 high{-largest, -largest, -largest, 1.0f};
};

bool is_finite(const vec4& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

} // namespace

void Model::measure() {
    Box box;
    for (Mesh* mesh : meshes) {
        const mat4 transform = mesh->get_absolute_transform();
        for (unsigned long i = 0; i < mesh->get_mesh_data()->num_vertices; ++i) {
            const vec4 position = transform * mesh->get_vertex_position(i);
            if (!is_finite(position))
                continue;
            bounds.points.push_back(position);
            box.add(position);
        }
    }
    bounds.middle = bounds.points.empty() ? vec4(0.0f, 0.0f, 0.0f, 1.0f) : box.middle();
}

void Model::stand_up() {
    if (up != UpAxis::minus_z)
        return;
    model->set_orientation_euler_xyz(90.0f, 0.0f, 0.0f);
    up = UpAxis::y;
    bounds = {};
    measure();
}

std::vector<Material*> Model::all_materials() const {
    std::vector<Material*> result;
    for (unsigned long i = 0; i < model->get_num_materials(); ++i)
        result.push_back(model->get_material_by_index(i));
    return result;
}

unsigned long Model::num_vertices() const {
    unsigned long sum = 0;
    for (Mesh* mesh : meshes)
        sum += mesh->get_num_vertices(nullptr);
    return sum;
}

unsigned long Model::num_faces() const {
    unsigned long sum = 0;
    for (Mesh* mesh : meshes)
        sum += mesh->get_num_faces(nullptr);
    return sum;
}

Texture* Model::texture_from(const std::string& path) {
    const auto [known, is_new] = texture_by_path.emplace(path, textures.size());
    if (!is_new)
        return textures[known->second].texture;
    Texture* const texture = TextureMgr::get()->create_texture_2d_from_file(path.c_str(), false);
    textures.push_back({path, texture});
    if (texture && renderer) {
        texture->set_filtering_mode(nullptr, FILTERING_TRILINEAR);
        texture->set_anisotropy(nullptr, 8.0f);
        TextureMgr::get()->upload_to_renderer(renderer, texture, 0);
    }
    return texture;
}

void Model::load_textures(const std::string& folder) {
    for (Material* material : all_materials()) {
        for (unsigned long i = 0; i < material->async_loading_get_num_texture_filenames(); ++i) {
            const char* const name = material->async_loading_get_texture_filename(i);
            if (Texture* const texture = texture_from(folder + name))
                material->add_texture(texture);
        }
        material->async_loading_clear_texture_filenames_list();
    }
}

namespace {

/// What the lines "mtllib name" of an OBJ file name.
std::vector<std::string> libraries_named_in(const std::string& path) {
    constexpr std::string_view word = "mtllib";
    std::vector<std::string> names;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with(word))
            continue;
        std::istringstream rest(line.substr(word.size()));
        for (std::string name; rest >> name;)
            if (std::find(names.begin(), names.end(), name) == names.end())
                names.push_back(name);
    }
    return names;
}

} // namespace

std::vector<std::string> Model::files() const {
    std::vector<std::string> names{path};
    if (!is_3ds)
        for (const std::string& library : libraries_named_in(path))
            names.push_back(folder_of(path) + library);
    for (const TextureFile& texture : textures)
        names.push_back(texture.path);
    return names;
}

void Model::smooth_normals() {
    for (Mesh* mesh : meshes) {
        mesh->compute_faces_normal(nullptr);
        mesh->compute_vertices_normal(nullptr);
    }
}

/// Whether smooth normals don't fit: they look away from their faces by 25 degrees and more in the
/// mean, as those of a box do.
bool Model::is_angular() const {
    double likeness = 0.0;
    double corners = 0.0;
    for (Mesh* mesh : meshes) {
        const MeshData& store = *mesh->get_mesh_data();
        for (unsigned long face = 0; face < store.num_faces; ++face) {
            unsigned index[3] = {};
            mesh->get_face_indexes(face, &index[0], &index[1], &index[2]);
            vec4 normal = store.face_normals[face];
            for (const unsigned i : index)
                likeness += static_cast<double>(normal.dot(mesh->get_vertex_normal(i)));
            corners += 3.0;
        }
    }
    constexpr double cosine_of_25_degrees = 0.9063;
    return corners > 0.0 && likeness < corners * cosine_of_25_degrees;
}

bool Model::is_faceted(Normals normals) const {
    return normals == Normals::flat || (normals == Normals::by_file && is_3ds && is_angular());
}

void Model::use_program(GpuProgram* new_program, bool gl3, Normals normals) {
    program = new_program;
    for (Mesh* mesh : meshes)
        mesh->set_opengl_2_3_rendering_states(!gl3, nullptr);
    for (Material* material : all_materials())
        material->set_gpu_program(program);
    // A default material of a 3DS file is known to its mesh alone.
    for (const std::vector<Run>* runs : {&opaque, &blended})
        for (const Run& run : *runs)
            if (run.material)
                run.material->set_gpu_program(program);
    if (normals == Normals::smooth || (normals == Normals::by_file && is_3ds))
        smooth_normals();
    program->set_uniform_1f(nullptr, "faceted", is_faceted(normals) ? 1.0f : 0.0f);
}

void Model::draw(const Angle& lit_from) {
    set_lights(axes_of({lit_from.azimuth, 0.0f, lit_from.up}));
    renderer->set_blend_state(false);
    renderer->set_depth_buffer_writing_state(true);
    for (const Run& run : opaque)
        draw_run(run);
    if (blended.empty())
        return;
    renderer->set_blend_factors(BLEND_FACTOR_SRC_ALPHA, BLEND_FACTOR_ONE_MINUS_SRC_ALPHA);
    renderer->set_blend_state(true);
    renderer->set_depth_buffer_writing_state(false);
    for (const Run& run : blended)
        draw_run(run);
    renderer->set_blend_state(false);
    renderer->set_depth_buffer_writing_state(true);
}

void Model::draw_run(const Run& run) {
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

void Model::set_lights(const Axes& axes) {
    struct Light {
        const char* name;
        float right, up, toward;
    };
    constexpr Light lights[] = {
        {"to_sun", -0.79f, 0.62f, 0.75f}, {"to_fill", 0.81f, 0.08f, 0.59f}, {"to_sky", 0, 1, 0}};
    for (const Light& light : lights) {
        const vec4 to = axes.right * light.right + axes.up * light.up + axes.toward * light.toward;
        program->set_uniform_4f(nullptr, light.name, to.x, to.y, to.z, 0.0f);
    }
}

void Model::set_colors(Material* material) {
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

} // namespace orvex::kit
