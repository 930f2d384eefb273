/// @file
/// The drawing of a mesh, as a whole or one run of faces of a material at a time.
///
/// A draw is prepare, draw, finish, each forwarded to the renderer with the store. A subset is
/// drawn by naming it in the store for the length of the draw.

#include "orvex/geometry/mesh/mesh.h"

#include <unordered_map>

#include "orvex/base/private/misuse.h"
#include "orvex/geometry/mesh/private/render_with_material.h"
#include "orvex/renderer/private/debug_name.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex {

void Mesh::_render(Renderer* renderer) {
    if (!renderer)
        return;
    const MaterialSubset* subset = mesh_data ? mesh_data->current_subset : nullptr;
    render_with_material(*this, *renderer, get_material_by_index(subset ? subset->material : 0));
}

void Mesh::render_geometry(Renderer* renderer) {
    render_geometry_prepare(renderer);
    render_geometry_draw(renderer);
    render_geometry_finish(renderer);
}

void Mesh::render_geometry_prepare(Renderer* renderer) {
    if (!renderer || !mesh_data)
        return;
    GpuProgramData* const program = renderer->gpu_program_get_active_program();
    if (program) {
        mesh_data->use_generic_vertex_attribs = program->get_use_generic_vertex_attribs_state();
        renderer->gpu_program_update_user_vertex_attrib_locations_mesh(program, mesh_data);
        renderer->gpu_program_bind_uniforms(program);
    } else {
        mesh_data->use_generic_vertex_attribs = false;
    }
    const DebugName name(*this);
    renderer->vertex_buffer_prepare(mesh_data);
}

void Mesh::render_geometry_draw(Renderer* renderer) {
    if (renderer && mesh_data)
        renderer->vertex_buffer_draw(mesh_data);
}

void Mesh::render_geometry_finish(Renderer* renderer) {
    if (renderer && mesh_data)
        renderer->vertex_buffer_finish(mesh_data);
}

namespace {

/// First and last face of a material, both 0 if it has none.
struct FaceRun {
    unsigned int first = 0;
    unsigned int last = 0;
};

/// Calls `use(material, face)` for each face that has the id of one.
template<class Use>
void for_each_face_material(const MeshData& store, Use use) {
    const unsigned long count = store.face_materials ? store.num_faces : 0;
    for (unsigned long face = 0; face < count; ++face)
        use(store.face_materials[face], static_cast<unsigned int>(face));
}

FaceRun find_face_run(const MeshData& store, int wanted) {
    FaceRun run;
    bool found = false;
    for_each_face_material(store, [&](int material, unsigned int face) {
        if (material != wanted)
            return;
        run.last = face;
        if (!found)
            run.first = face;
        found = true;
    });
    return run;
}

/// The runs of all materials at once: a mesh may have as many of those as faces.
std::unordered_map<int, FaceRun> find_face_runs(const MeshData& store) {
    std::unordered_map<int, FaceRun> runs;
    for_each_face_material(store, [&runs](int material, unsigned int face) {
        runs.try_emplace(material, FaceRun{face, face}).first->second.last = face;
    });
    return runs;
}

/// @return false for fewer than two faces; the subset keeps its default run then
bool fill_subset(MaterialSubset& subset, int material, const FaceRun& run) {
    subset.material = static_cast<unsigned int>(material);
    if (run.first >= run.last)
        return false;
    subset.first_face = run.first;
    subset.last_face = run.last;
    return true;
}

} // namespace

void Mesh::init_subsets() {
    if (!mesh_data)
        return;
    const auto runs = find_face_runs(*mesh_data); // may find no memory: first of all
    delete[] mesh_data->subsets;
    mesh_data->subsets = nullptr;
    mesh_data->current_subset = nullptr;
    mesh_data->num_subsets = get_num_materials();
    if (mesh_data->num_subsets == 0)
        return;
    mesh_data->subsets = new MaterialSubset[mesh_data->num_subsets];
    for (unsigned long i = 0; i < mesh_data->num_subsets; ++i) {
        const int material = get_material_by_index(i)->get_id();
        const auto run = runs.find(material);
        fill_subset(mesh_data->subsets[i], material, run == runs.end() ? FaceRun() : run->second);
    }
}

bool Mesh::_init_material_subset(unsigned long i, MaterialSubset* subset) {
    Material* const material = get_material_by_index(i);
    if (!subset || !material || !mesh_data)
        return misuse("Mesh::_init_material_subset",
                      "a null subset, no material at that index, or a mesh without a store");
    return fill_subset(*subset, material->get_id(), find_face_run(*mesh_data, material->get_id()));
}

unsigned long Mesh::get_num_subsets() const {
    return mesh_data ? mesh_data->num_subsets : 0;
}

namespace {

/// Makes a subset the current one; false if there is none at that index.
bool enter_subset(MeshData* store, unsigned long i) {
    if (!store || !store->subsets || i >= store->num_subsets)
        return false;
    store->current_subset = &store->subsets[i];
    return true;
}

void leave_subset(MeshData* store) {
    if (store)
        store->current_subset = nullptr;
}

} // namespace

void Mesh::render_subset(Renderer* renderer, unsigned long i) {
    if (!enter_subset(mesh_data, i))
        return;
    _render(renderer);
    leave_subset(mesh_data);
}

void Mesh::render_subset_geometry(Renderer* renderer, unsigned long i) {
    if (!enter_subset(mesh_data, i))
        return;
    render_geometry(renderer);
    leave_subset(mesh_data);
}

void Mesh::render_subset_geometry_draw(Renderer* renderer, unsigned long i) {
    if (!enter_subset(mesh_data, i))
        return;
    render_geometry_draw(renderer);
    leave_subset(mesh_data);
}

} // namespace orvex
