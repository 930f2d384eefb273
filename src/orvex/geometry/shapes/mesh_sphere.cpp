#include "orvex/geometry/shapes/mesh_sphere.h"

#include <cmath>
#include <numbers>

#include "orvex/geometry/shapes/private/mesh_shape.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

using namespace mesh_shape;

MeshSphere::MeshSphere()
    : MeshSphere(VERTEX_FORMAT_96) {}

MeshSphere::MeshSphere(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_SPHERE);
    note_drawn_by_engine(*this);
    update_build_state(true);
}

bool MeshSphere::set_build_params(float new_radius, int new_slices, int new_stacks) {
    radius = new_radius;
    slices = new_slices;
    stacks = new_stacks;
    update_build_state(true);
    return true;
}

float MeshSphere::get_radius() const {
    return radius;
}

int MeshSphere::get_slices() const {
    return slices;
}

int MeshSphere::get_stacks() const {
    return stacks;
}

bool MeshSphere::build(Node* node) {
    // Made here, since a node's build has no word for it; `_build` then finds nothing to do.
    const bool is_made = build_if_asked(*this, [this] { return _build_sphere(); });
    return Mesh::build(node) && is_made;
}

bool MeshSphere::_build() {
    return build_if_asked(*this, [this] { return _build_sphere(); }) && Mesh::_build();
}

namespace {

SinCos polar_angle(unsigned long row, unsigned long rows) {
    const float angle =
        static_cast<float>(row) / static_cast<float>(rows) * std::numbers::pi_v<float>;
    return {std::sin(angle), std::cos(angle)};
}

void write_ring(MeshData& store, const Grid& grid, float radius, const std::vector<SinCos>& turn,
                unsigned long row) {
    const SinCos polar = polar_angle(row, grid.rows);
    const float v = share(row, grid.rows);
    unsigned long i = row * (grid.columns + 1);
    for (unsigned long column = 0; column <= grid.columns; ++column, ++i) {
        const SinCos& around = turn[column];
        set_vertex(store, i,
                   vec3(radius * polar.sin * around.sin, radius * polar.sin * around.cos,
                        radius * polar.cos),
                   vec3(polar.sin * around.sin, polar.sin * around.cos, polar.cos),
                   texture_point(share(column, grid.columns), v));
    }
}

} // namespace

bool MeshSphere::_build_sphere() {
    free_mesh_data();
    const Grid grid = Grid::at_least(2, stacks, 3, slices);
    const auto write_vertices = [this, &grid](MeshData& store) {
        const std::vector<SinCos> turn = full_turn(grid.columns);
        for (unsigned long row = 0; row <= grid.rows; ++row)
            write_ring(store, grid, radius, turn, row);
    };
    const auto split = [](const Cell& cell) {
        return CellFaces{{cell.a, cell.a + 1, cell.b}, {cell.b, cell.a + 1, cell.b + 1}};
    };
    if (!build_grid(*this, grid, write_vertices, split))
        return false;
    bounding_sphere_use_inscribed_sphere(true);
    return true;
}

} // namespace orvex
