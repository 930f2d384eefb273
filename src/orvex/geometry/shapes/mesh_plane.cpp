#include "orvex/geometry/shapes/mesh_plane.h"

#include "orvex/geometry/shapes/private/mesh_shape.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

using namespace mesh_shape;

MeshPlane::MeshPlane()
    : MeshPlane(VERTEX_FORMAT_96) {}

MeshPlane::MeshPlane(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_PLANE);
    note_drawn_by_engine(*this);
    update_build_state(true);
}

bool MeshPlane::set_build_params(float new_width, float new_height, int new_wsegs, int new_hsegs) {
    width = new_width;
    height = new_height;
    wsegs = new_wsegs;
    hsegs = new_hsegs;
    update_build_state(true);
    return true;
}

float MeshPlane::get_width() const {
    return width;
}

float MeshPlane::get_height() const {
    return height;
}

int MeshPlane::get_wsegs() const {
    return wsegs;
}

int MeshPlane::get_hsegs() const {
    return hsegs;
}

bool MeshPlane::build(Node*) {
    return build_if_asked(*this, [this] { return _build_plane(); }) && Mesh::_build();
}

namespace {

void write_vertices(MeshData& store, const Grid& grid, float width, float height) {
    const float step_x = width / static_cast<float>(grid.columns);
    const float step_z = height / static_cast<float>(grid.rows);
    grid.for_each_vertex([&](unsigned long i, unsigned long row, unsigned long column) {
        const vec3 position(-width / 2.0f + static_cast<float>(column) * step_x, 0.0f,
                            -height / 2.0f + static_cast<float>(row) * step_z);
        set_vertex(store, i, position, vec3(0.0f, 1.0f, 0.0f),
                   texture_point(share(column, grid.columns), share(grid.rows - row, grid.rows)));
    });
}

/// Planes with wide indices turn the first triangle of each cell to -Y: hosts rely on it.
CellFaces wide_faces(const Cell& cell) {
    return {{cell.a, cell.a + 1, cell.b}, {cell.a + 1, cell.b, cell.b + 1}};
}

CellFaces narrow_faces(const Cell& cell) {
    return {{cell.a, cell.b, cell.a + 1}, {cell.a + 1, cell.b, cell.b + 1}};
}

} // namespace

bool MeshPlane::_build_plane() {
    free_mesh_data();
    const Grid grid = Grid::at_least(1, hsegs, 1, wsegs);
    const auto split = [this](const Cell& cell) {
        return get_mesh_data()->index_bits == 16 ? narrow_faces(cell) : wide_faces(cell);
    };
    return build_grid(
        *this, grid, [this, &grid](MeshData& store) { write_vertices(store, grid, width, height); },
        split, outline_along_first);
}

} // namespace orvex
