// What is odd about a model, in sentences: mostly what keeps it from being seen.

#include <cmath>

#include <orvex/geometry/mesh/mesh.h>
#include <orvex/math/mat4.h>
#include <orvex/renderer/records/mesh_data.h>

#include "orvex_kit/private/model_data.h"

namespace orvex::kit {

namespace {

/// What the faces and vertices of all meshes amount to.
struct Census {
    std::size_t lost_vertices = 0; ///< without a place
    std::size_t lost_faces = 0;    ///< that name vertices which aren't there
    bool has_area = false;         ///< of any face
};

bool has_area(const vec4 (&corners)[3]) {
    const double ax = static_cast<double>(corners[1].x) - static_cast<double>(corners[0].x);
    const double ay = static_cast<double>(corners[1].y) - static_cast<double>(corners[0].y);
    const double az = static_cast<double>(corners[1].z) - static_cast<double>(corners[0].z);
    const double bx = static_cast<double>(corners[2].x) - static_cast<double>(corners[0].x);
    const double by = static_cast<double>(corners[2].y) - static_cast<double>(corners[0].y);
    const double bz = static_cast<double>(corners[2].z) - static_cast<double>(corners[0].z);
    return ay * bz != az * by || az * bx != ax * bz || ax * by != ay * bx;
}

/// Whether a face has an area; not if one of its corners has no place.
bool has_area(Mesh& mesh, const unsigned (&index)[3], const mat4& transform) {
    vec4 corners[3];
    for (int i = 0; i < 3; ++i)
        if (!place_of_vertex(mesh, index[i], transform, corners[i]))
            return false;
    return has_area(corners);
}

void count_faces(Mesh& mesh, Census& census) {
    const mat4 transform = mesh.get_absolute_transform();
    const MeshData& store = *mesh.get_mesh_data();
    for (unsigned long face = 0; face < store.num_faces; ++face) {
        unsigned index[3] = {};
        mesh.get_face_indexes(face, &index[0], &index[1], &index[2]);
        const bool is_there = index[0] < store.num_vertices && index[1] < store.num_vertices &&
                              index[2] < store.num_vertices;
        census.lost_faces += is_there ? 0 : 1;
        census.has_area = census.has_area || (is_there && has_area(mesh, index, transform));
    }
}

std::string number_of(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string part_of(std::size_t count, std::size_t all, const char* many) {
    return std::to_string(count) + " of its " + std::to_string(all) + " " + many;
}

bool is_point(const Bounds& bounds) {
    return !bounds.is_empty && bounds.min.x == bounds.max.x && bounds.min.y == bounds.max.y &&
           bounds.min.z == bounds.max.z;
}

bool is_origin(const Bounds& bounds) {
    return bounds.min.x == 0.0f && bounds.min.y == 0.0f && bounds.min.z == 0.0f;
}

std::string note_about_places(const ModelFacts& facts) {
    if (facts.num_vertices < 2 || !is_point(facts.bounds))
        return "";
    std::string note =
        "all " + std::to_string(facts.num_vertices) + " of its vertices lie at one point";
    // Loaders put what an index out of range names there.
    if (is_origin(facts.bounds))
        note += ", the origin, as they do where faces name vertices that the file doesn't have, or "
                "count them backwards";
    return note;
}

std::string note_about_faces(const ModelFacts& facts, const Census& census) {
    if (facts.num_faces == 0)
        return facts.num_vertices == 0
                   ? "it has no vertices"
                   : "it has no faces: its " + number_of(facts.num_vertices,
                                                         "vertex is a point, which isn't drawn",
                                                         "vertices are points, which aren't drawn");
    return census.has_area ? "" : "none of its faces has an area";
}

} // namespace

std::vector<std::string> notes_about(const std::vector<Mesh*>& meshes, const ModelFacts& facts) {
    Census census;
    census.lost_vertices = facts.num_vertices - facts.extent.points.size();
    for (Mesh* mesh : meshes)
        count_faces(*mesh, census);
    std::vector<std::string> notes;
    const auto add = [&notes](const std::string& note) {
        if (!note.empty())
            notes.push_back(note);
    };
    add(note_about_faces(facts, census));
    add(note_about_places(facts));
    if (census.lost_vertices > 0)
        add(part_of(census.lost_vertices, facts.num_vertices,
                    "vertices have coordinates that are no finite numbers"));
    if (census.lost_faces > 0)
        add(part_of(census.lost_faces, facts.num_faces, "faces name vertices that aren't there"));
    return notes;
}

} // namespace orvex::kit
