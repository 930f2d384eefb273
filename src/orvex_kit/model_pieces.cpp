// Runs of faces as meshes of their own, with the vertices that they use.

#include <new>
#include <unordered_map>
#include <utility>
#include <vector>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/renderer/records/mesh_data.h>

#include "orvex_kit/private/model_data.h"

namespace orvex::kit {

namespace {

/// The corners of a run, three a face, as places in `used`, where the mesh's own vertices stand.
std::vector<unsigned> corners_of(const Mesh& mesh, const FaceRun& run,
                                 std::vector<unsigned>& used) {
    std::unordered_map<unsigned, unsigned> places;
    std::vector<unsigned> corners;
    for (std::size_t face = run.first_face; face < run.first_face + run.num_faces; ++face) {
        unsigned vertices[3] = {};
        mesh.get_face_indexes(face, &vertices[0], &vertices[1], &vertices[2]);
        for (const unsigned vertex : vertices) {
            const auto [place, is_new] = places.emplace(vertex, static_cast<unsigned>(used.size()));
            if (is_new)
                used.push_back(vertex);
            corners.push_back(place->second);
        }
    }
    return corners;
}

void fill_colors(const Mesh& mesh, const std::vector<unsigned>& used, Mesh& piece) {
    MeshData& store = *piece.get_mesh_data();
    if (const std::optional<vec4> one = constant_of(mesh.get_mesh_data()->color)) {
        piece.set_vertices_color(one->x, one->y, one->z, one->w, nullptr);
        return;
    }
    store.prepare_to_fill(store.color);
    for (std::size_t i = 0; i < used.size(); ++i)
        piece.set_vertex_color(i, mesh.get_vertex_color(used[i]));
}

void fill_uvs(const Mesh& mesh, const std::vector<unsigned>& used, Mesh& piece) {
    MeshData& store = *piece.get_mesh_data();
    if (is_default(mesh.get_mesh_data()->uv0))
        return;
    store.prepare_to_fill(store.uv0);
    for (std::size_t i = 0; i < used.size(); ++i)
        piece.set_vertex_uv(i, mesh.get_vertex_uv(used[i], 0), 0);
}

/// @throw std::bad_alloc  also where the engine finds no memory: without its piece a run would be
///                        drawn as its whole mesh
Ref<Mesh> piece_of(const Mesh& mesh, const FaceRun& run) {
    std::vector<unsigned> used;
    const std::vector<unsigned> corners = corners_of(mesh, run, used);
    Ref<Mesh> piece = make<Mesh>(mesh.get_mesh_data()->vertex_format);
    if (!piece->alloc_vertex_data(used.size()) || !piece->alloc_face_data(run.num_faces, false))
        throw std::bad_alloc();
    for (std::size_t i = 0; i < used.size(); ++i) {
        piece->set_vertex_position(i, mesh.get_vertex_position(used[i]));
        piece->set_vertex_normal(i, mesh.get_vertex_normal(used[i]));
    }
    fill_colors(mesh, used, *piece);
    fill_uvs(mesh, used, *piece);
    for (std::size_t face = 0; face < run.num_faces; ++face)
        piece->set_face_indexes(face, corners[face * 3], corners[face * 3 + 1],
                                corners[face * 3 + 2]);
    piece->set_opengl_2_3_rendering_states(true, nullptr);
    return piece;
}

} // namespace

void Model::Data::make_pieces() {
    std::vector<Piece> all(facts.runs.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        const FaceRun& run = facts.runs[i];
        if (run.num_faces < facts.meshes[run.mesh].num_faces)
            all[i].mesh = piece_of(*meshes[run.mesh], run);
    }
    pieces = std::move(all);
}

} // namespace orvex::kit
