// From lib3ds's file to the record of a load: materials, then each mesh as each node shows it,
// placed as at frame 0. The file's own vertices move with that.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <unordered_set>
#include <utility>

#include <lib3ds.h>

#include "orvex/assets/models/3ds/loader_3d_lib3ds.h"
#include "orvex/assets/models/3ds/private/lib3ds_memory.h"
#include "orvex/assets/models/3ds/private/lib3ds_normals.h"
#include "orvex/assets/models/3ds/private/lib3ds_records.h"
#include "orvex/platform/private/large_pages.h"

namespace orvex {

namespace {

template<std::size_t size>
void copy_text(char (&field)[size], const char* text) {
    std::strncpy(field, text, size - 1);
}

// --- Materials -------------------------------------------------------------------------------

bool names_differ(const Lib3dsFile& file) {
    std::unordered_set<std::string_view> names;
    for (int i = 0; i < file.nmaterials; ++i)
        if (!names.insert(file.materials[i]->name).second)
            return false;
    return true;
}

/// Names are keys in `MaterialMgr`: of two materials with one name, one would be lost.
void make_names_differ(Lib3dsFile& file) {
    if (names_differ(file))
        return;
    for (int i = 0; i < file.nmaterials; ++i) {
        auto& name = file.materials[i]->name;
        std::snprintf(name, sizeof(name), "orvex_mat_%d", i);
    }
}

Lib3dsFloat4 to_float4(const float (&color)[3]) {
    return {color[0], color[1], color[2], 1.0f};
}

void copy_material(const Lib3dsMaterial& from, orvexLib3dsMaterial& to) {
    copy_text(to.name, from.name);
    to.ambient = to_float4(from.ambient);
    to.diffuse = to_float4(from.diffuse);
    to.specular = to_float4(from.specular);
    to.shininess =
        static_cast<float>(std::pow(2.0, 10.0 * static_cast<double>(from.shininess) + 1.0));
    to.opacity = static_cast<float>(1.0 - static_cast<double>(from.transparency));
    copy_text(to.texture_filename, from.texture1_map.name);
}

} // namespace

bool Loader3D_Lib3ds::read_materials(Lib3dsFile* file) {
    if (!file || file->nmaterials <= 0)
        return false;
    make_names_differ(*file);
    const auto count = static_cast<std::size_t>(file->nmaterials);
    lib3ds_data->materials = std::make_unique<orvexLib3dsMaterial[]>(count);
    lib3ds_data->num_materials = count;
    for (std::size_t i = 0; i < count; ++i)
        copy_material(*file->materials[i], lib3ds_data->materials[i]);
    return true;
}

// --- Meshes ----------------------------------------------------------------------------------

bool Loader3D_Lib3ds::read_meshes(Lib3dsFile* file) {
    if (!file)
        return false;
    write_nodes(file, file->nodes);
    return true;
}

void Loader3D_Lib3ds::write_nodes(Lib3dsFile* file, Lib3dsNode* node) {
    for (; node; node = node->next) {
        if (node->type != LIB3DS_NODE_MESH_INSTANCE)
            continue;
        write_mesh(file, reinterpret_cast<Lib3dsMeshInstanceNode*>(node));
        write_nodes(file, node->childs);
    }
}

namespace {

/// Writes the result back, so that the next node that shows the mesh starts from it.
void place_vertices(Lib3dsMesh& mesh, Lib3dsMeshInstanceNode& node) {
    float placement[4][4];
    float inverse[4][4];
    lib3ds_matrix_copy(placement, node.base.matrix);
    lib3ds_matrix_translate(placement, -node.pivot[0], -node.pivot[1], -node.pivot[2]);
    lib3ds_matrix_copy(inverse, mesh.matrix);
    lib3ds_matrix_inv(inverse);
    lib3ds_matrix_mult(placement, placement, inverse);
    for (int i = 0; i < mesh.nvertices; ++i) {
        float placed[3];
        lib3ds_vector_transform(placed, placement, mesh.vertices[i]);
        lib3ds_vector_copy(mesh.vertices[i], placed);
    }
}

bool is_smoothed(const Lib3dsMesh& mesh) {
    return std::any_of(mesh.faces, mesh.faces + mesh.nfaces,
                       [](const Lib3dsFace& face) { return face.smoothing_group != 0; });
}

/// Normals are asked for by the number of a vertex or of a face, so that those of the first corners
/// are enough where each depends on its own face alone.
std::uint32_t num_faces_with_normals(const Lib3dsMesh& mesh, bool smoothed) {
    if (smoothed)
        return mesh.nfaces;
    const std::uint32_t num_corners = std::max(mesh.nvertices, mesh.nfaces);
    return std::min<std::uint32_t>(mesh.nfaces, (num_corners + 2) / 3);
}

/// Hands out the parts of a block one after another, those with the strictest alignment first.
class Parts {
public:
    explicit Parts(std::byte* block)
        : next(block) {}

    template<class T>
    T* take(std::uint32_t count) {
        T* const part = reinterpret_cast<T*>(next);
        std::uninitialized_default_construct_n(part, count);
        next += count * sizeof(T);
        return part;
    }

private:
    std::byte* next;
};

/// Sets the counts, and makes the arrays. Plain numbers in them are not set.
void make_arrays(const Lib3dsMesh& from, bool smoothed, bool has_materials, sLib3dsMesh& to) {
    to.num_vertices = from.nvertices;
    to.num_texcoords = from.texcos ? to.num_vertices : 0;
    to.num_faces = from.faces ? from.nfaces : 0;
    to.num_normals = to.num_faces > 0 ? 3 * num_faces_with_normals(from, smoothed) : 0;
    const std::uint32_t num_face_materials = has_materials ? to.num_faces : 0;
    to.memory = new_large_block(
        to.num_vertices * sizeof(Lib3dsFloat3) + to.num_texcoords * sizeof(Lib3dsFloat2) +
        to.num_normals * sizeof(Lib3dsFloat3) + num_face_materials * sizeof(sLib3dsFaceMaterial) +
        to.num_faces * sizeof(Lib3dsIndices));
    Parts parts(to.memory.get());
    to.vertices = parts.take<Lib3dsFloat3>(to.num_vertices);
    if (from.texcos)
        to.texcoords = parts.take<Lib3dsFloat2>(to.num_texcoords);
    to.normals = parts.take<Lib3dsFloat3>(to.num_normals);
    if (has_materials)
        to.face_materials = parts.take<sLib3dsFaceMaterial>(num_face_materials);
    to.faces = parts.take<Lib3dsIndices>(to.num_faces);
}

void copy_vertices(const Lib3dsMesh& from, sLib3dsMesh& to) {
    std::memcpy(to.vertices, from.vertices, to.num_vertices * sizeof(Lib3dsFloat3));
    if (to.texcoords)
        std::memcpy(to.texcoords, from.texcos, to.num_texcoords * sizeof(Lib3dsFloat2));
}

/// Throws `std::bad_alloc` where lib3ds finds no memory to work with, instead of leaving the
/// normals as they are.
void fill_smoothed_normals(const Lib3dsMesh& whole, Lib3dsFloat3* normals) {
    Lib3dsMesh mesh = whole;
    std::fill_n(normals, 3 * std::size_t{mesh.nfaces}, Lib3dsFloat3{});
    const bool is_done = run_lib3ds([&] {
        lib3ds_mesh_calculate_vertex_normals(&mesh, reinterpret_cast<float(*)[3]>(normals));
        return true;
    });
    if (!is_done)
        throw std::bad_alloc();
}

void compute_normals(const Lib3dsMesh& mesh, bool smoothed, sLib3dsMesh& to) {
    if (smoothed)
        fill_smoothed_normals(mesh, to.normals);
    else
        lib3ds::fill_unsmoothed_normals(mesh, to.num_normals / 3, to.normals);
}

void copy_faces(const Lib3dsMesh& from, sLib3dsMesh& to) {
    for (std::uint32_t i = 0; i < to.num_faces; ++i) {
        const Lib3dsFace& face = from.faces[i];
        to.faces[i] = {face.index[0], face.index[1], face.index[2]};
    }
}

/// A face without material keeps its zeros, that is, gets the first material.
void copy_face_materials(const Lib3dsMesh& from, sLib3dsMesh& to) {
    if (!to.face_materials)
        return;
    for (std::uint32_t i = 0; i < to.num_faces; ++i) {
        const int material = from.faces[i].material;
        if (material != -1)
            to.face_materials[i] = {static_cast<std::uint16_t>(i),
                                    static_cast<std::uint32_t>(material)};
    }
}

} // namespace

void Loader3D_Lib3ds::write_mesh(Lib3dsFile* file, Lib3dsMeshInstanceNode* node) {
    Lib3dsMesh* const mesh = lib3ds_file_mesh_for_node(file, &node->base);
    if (!mesh || !mesh->vertices)
        return;
    sLib3dsMesh& record = *lib3ds_data->meshes.emplace_back(std::make_unique<sLib3dsMesh>());
    copy_text(record.name, node->instance_name[0] != '\0' ? node->instance_name : node->base.name);
    place_vertices(*mesh, *node);
    const bool smoothed = is_smoothed(*mesh);
    make_arrays(*mesh, smoothed, file->nmaterials > 0, record);
    copy_vertices(*mesh, record);
    compute_normals(*mesh, smoothed, record);
    copy_faces(*mesh, record);
    copy_face_materials(*mesh, record);
}

} // namespace orvex
