/// @file
/// A ring: a section of a tube, turned around the Y axis.
///
/// The first ring is the section itself; the further ones are that section turned, positions and
/// directions alike, with the sine and cosine of each angle taken once.

#include "orvex/geometry/shapes/mesh_torus.h"

#include <cmath>

#include "orvex/geometry/shapes/private/mesh_shape.h"
#include "orvex/math/private/angle.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

using namespace mesh_shape;

MeshTorus::MeshTorus()
    : MeshTorus(VERTEX_FORMAT_96) {}

MeshTorus::MeshTorus(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_TORUS);
    note_drawn_by_engine(*this);
    update_build_state(true);
}

bool MeshTorus::set_build_params(float new_radius, float new_tube_radius, int new_slices) {
    radius = new_radius;
    tube_radius = new_tube_radius;
    slices = new_slices;
    update_build_state(true);
    return true;
}

float MeshTorus::get_radius() const {
    return radius;
}

float MeshTorus::get_tube_radius() const {
    return tube_radius;
}

int MeshTorus::get_slices() const {
    return slices;
}

bool MeshTorus::build(Node* node) {
    // Made here, since a node's build has no word for it; `_build` then finds nothing to do.
    const bool is_made = build_if_asked(*this, [this] { return _build_torus(); });
    return Mesh::build(node) && is_made;
}

bool MeshTorus::_build() {
    return build_if_asked(*this, [this] { return _build_torus(); }) && Mesh::_build();
}

namespace {

/// A vertex of the section, which lies in the plane XY.
struct SectionVertex {
    vec4 position;
    vec4 from_center; ///< to the position, w 0
    vec4 normal;      ///< unit length
    float v;
};

std::vector<SectionVertex> section_of(const vec4& center, float tube_radius, unsigned long slices) {
    std::vector<SectionVertex> section(slices + 1);
    for (unsigned long i = 0; i <= slices; ++i) {
        const float v = static_cast<float>(i) / static_cast<float>(slices);
        vec4 normal(tube_radius, 0.0f, 0.0f, 1.0f);
        normal.rotate_z(v * 360.0f);
        const vec4 position((normal + center).get_vec3());
        normal.w = 0.0f;
        normal.normalize();
        section[i] = {position, position - center, normal, v};
    }
    return section;
}

/// Turns about the Y axis as `vec4::rotate_y` does, with the functions of the angle taken once.
class TurnAboutY {
public:
    explicit TurnAboutY(float degrees)
        : angle{std::sin(degrees * degrees_to_radians), std::cos(degrees * degrees_to_radians)} {}

    vec3 operator()(const vec4& point) const {
        return vec3(point.x * angle.cos + point.z * angle.sin, point.y,
                    -point.x * angle.sin + point.z * angle.cos);
    }

private:
    SinCos angle;
};

void write_first_ring(MeshData& store, const std::vector<SectionVertex>& section) {
    for (unsigned long i = 0; i < section.size(); ++i)
        set_vertex(store, i, section[i].position.get_vec3(), section[i].normal.get_vec3(),
                   texture_point(0.0f, section[i].v));
}

/// The normals of the further rings are turned before they are made unit length.
void write_ring(MeshData& store, const std::vector<SectionVertex>& section, unsigned long ring) {
    const auto slices = static_cast<float>(section.size() - 1);
    const TurnAboutY turn(static_cast<float>(ring) / slices * 360.0f);
    const float u = static_cast<float>(ring * 2) / slices;
    unsigned long i = ring * section.size();
    for (const SectionVertex& vertex : section)
        set_vertex(store, i++, turn(vertex.position), turn(vertex.from_center).normalize(),
                   texture_point(u, vertex.v));
}

} // namespace

bool MeshTorus::_build_torus() {
    free_mesh_data();
    const Grid grid = Grid::at_least(0, slices, 0, slices);
    const auto write_vertices = [this, &grid](MeshData& store) {
        const vec4 center(radius - tube_radius, 0.0f, 0.0f, 1.0f);
        const std::vector<SectionVertex> section = section_of(center, tube_radius, grid.columns);
        write_first_ring(store, section);
        for (unsigned long ring = 1; ring <= grid.rows; ++ring)
            write_ring(store, section, ring);
    };
    const auto split = [](const Cell& cell) {
        return CellFaces{{cell.a, cell.b, cell.a + 1}, {cell.a + 1, cell.b, cell.b + 1}};
    };
    if (!build_grid(*this, grid, write_vertices, split))
        return false;
    bounding_sphere_use_inscribed_sphere(false);
    return true;
}

} // namespace orvex
