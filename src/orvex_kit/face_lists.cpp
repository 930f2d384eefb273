#include "orvex_kit/private/face_lists.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include <orvex/math/vec3.h>
#include <sys/mman.h>
#include <unistd.h>

namespace orvex::kit {

using orvex::MeshData;
using orvex::vec3;
using orvex::vec4;

namespace {

/// The vertices and faces of a mesh in separate arrays.
class Corners {
public:
    explicit Corners(const MeshData& mesh)
        : mesh(mesh) {}

    bool are_there() const {
        return mesh.position.data &&
               (mesh.index_bits == 16 ? mesh.faces_u16 != nullptr : mesh.faces_u32 != nullptr);
    }

    /// As the engine and its loaders compute it, but for the w.
    vec4 normal_of(unsigned long face, float w) const {
        const vec3 n =
            mesh.index_bits == 16 ? normal(mesh.faces_u16[face]) : normal(mesh.faces_u32[face]);
        return vec4(n.x, n.y, n.z, w);
    }

private:
    vec3 place_of(unsigned long vertex) const {
        return vertex < mesh.num_vertices ? mesh.position.data[vertex].get_vec3() : vec3();
    }

    template<class Face>
    vec3 normal(const Face& face) const {
        const vec3 middle = place_of(face.b);
        const vec3 ahead = place_of(face.c) - middle;
        return ahead.cross(place_of(face.a) - middle).normalize();
    }

    const MeshData& mesh;
};

template<class Value>
bool is_same(const Value& a, const Value& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// The value that all of a list have.
template<class Value>
std::optional<Value> one_value_of(const Value* list, unsigned long count) {
    const auto is_first = [list](const Value& value) { return is_same(value, *list); };
    return std::all_of(list, list + count, is_first) ? std::optional(*list) : std::nullopt;
}

bool are_normals_of(const Corners& corners, const vec4* normals, unsigned long count) {
    for (unsigned long i = 0; i < count; ++i)
        if (!is_same(normals[i], corners.normal_of(i, normals->w)))
            return false;
    return true;
}

/// The heap may keep a block that others stand around: its pages go back all the same.
template<class Value>
void end(Value*& list, unsigned long count) {
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(list);
    const std::uintptr_t first = (begin + page - 1) / page * page,
                         last = (begin + count * sizeof(Value)) / page * page;
    if (last > first)
        ::madvise(reinterpret_cast<void*>(first), last - first, MADV_DONTNEED);
    delete[] std::exchange(list, nullptr);
}

} // namespace

void FaceLists::put_away(MeshData& mesh) {
    if (mesh.num_faces == 0)
        return;
    if (mesh.face_normals) {
        const Corners corners(mesh);
        normal = one_value_of(mesh.face_normals, mesh.num_faces);
        if (!normal && corners.are_there() &&
            are_normals_of(corners, mesh.face_normals, mesh.num_faces))
            computed_w = mesh.face_normals->w;
        if (normal || computed_w)
            end(mesh.face_normals, mesh.num_faces);
    }
    if (mesh.face_materials) {
        material = one_value_of(mesh.face_materials, mesh.num_faces);
        if (material)
            end(mesh.face_materials, mesh.num_faces);
    }
}

void FaceLists::bring_back(MeshData& mesh) noexcept {
    if (normal || computed_w)
        mesh.face_normals = new (std::nothrow) vec4[mesh.num_faces];
    if (mesh.face_normals && normal)
        std::fill_n(mesh.face_normals, mesh.num_faces, *normal);
    if (mesh.face_normals && computed_w)
        for (unsigned long i = 0; i < mesh.num_faces; ++i)
            mesh.face_normals[i] = Corners(mesh).normal_of(i, *computed_w);
    if (material)
        mesh.face_materials = new (std::nothrow) int[mesh.num_faces];
    if (mesh.face_materials && material)
        std::fill_n(mesh.face_materials, mesh.num_faces, *material);
    *this = {};
}

} // namespace orvex::kit
