#include "orvex/geometry/shapes/mesh_cylinder.h"

#include "orvex/geometry/shapes/private/mesh_shape.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

using namespace mesh_shape;

MeshCylinder::MeshCylinder()
    : MeshCylinder(VERTEX_FORMAT_96) {}

MeshCylinder::MeshCylinder(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_CYLINDER);
    note_drawn_by_engine(*this);
    update_build_state(true);
}

bool MeshCylinder::set_build_params(float new_radius, float new_height, int new_stacks,
                                    int new_slices) {
    radius = new_radius;
    height = new_height;
    stacks = new_stacks;
    slices = new_slices;
    update_build_state(true);
    return true;
}

bool MeshCylinder::build(Node*) {
    return build_if_asked(*this, [this] { return _build_cylinder(); }) && Mesh::_build();
}

namespace {

/// The clamped parameters.
struct Tube {
    float radius;
    float height;
    Grid grid;
};

void write_vertices(MeshData& store, const Tube& tube) {
    const Grid& grid = tube.grid;
    const std::vector<SinCos> turn = full_turn(grid.columns);
    const float step = tube.height / static_cast<float>(grid.rows);
    grid.for_each_vertex([&](unsigned long i, unsigned long row, unsigned long column) {
        const SinCos& angle = turn[column];
        const float z = -tube.height / 2.0f + static_cast<float>(row) * step;
        set_vertex(store, i, vec3(tube.radius * angle.sin, tube.radius * angle.cos, z),
                   vec3(angle.sin, angle.cos, 0.0f),
                   texture_point(share(column, grid.columns), share(row, grid.rows)));
    });
}

} // namespace

bool MeshCylinder::_build_cylinder() {
    const Tube tube{radius < 0.0f ? 1.0f : radius, height < 0.0f ? 0.0f : height,
                    Grid::at_least(3, stacks, 3, slices)};
    return build_grid(
        *this, tube.grid, [&tube](MeshData& store) { write_vertices(store, tube); },
        [](const Cell& cell) {
            return CellFaces{{cell.b, cell.a + 1, cell.a}, {cell.b + 1, cell.a + 1, cell.b}};
        });
}

} // namespace orvex
