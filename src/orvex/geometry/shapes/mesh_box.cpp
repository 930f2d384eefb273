/// @file
/// A box of six sides, each a grid of cells of its own.
///
/// No vertex is shared, as hosts rely on face k having the corners 3k to 3k + 2. The order in
/// which a cell's corners follow each other differs from side to side, and a table for each side
/// keeps it.

#include "orvex/geometry/shapes/mesh_box.h"

#include <algorithm>

#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/geometry/shapes/private/mesh_shape.h"
#include "orvex/math/private/sizes.h"
#include "orvex/scene/private/node_data.h"

namespace orvex {

using namespace mesh_shape;

MeshBox::MeshBox()
    : MeshBox(VERTEX_FORMAT_96) {}

MeshBox::MeshBox(VERTEX_FORMAT format)
    : Mesh(format) {
    set_type(NODE_TYPE_MESH_BOX);
    note_drawn_by_engine(*this);
    update_build_state(true);
}

bool MeshBox::set_build_params(float new_width, float new_height, float new_depth, int new_wsegs,
                               int new_hsegs, int new_dsegs) {
    width = new_width;
    height = new_height;
    depth = new_depth;
    wsegs = new_wsegs;
    hsegs = new_hsegs;
    dsegs = new_dsegs;
    update_build_state(true);
    return true;
}

bool MeshBox::build(Node*) {
    return build_if_asked(*this, [this] { return _build_box(); }) && Mesh::_build();
}

namespace {

/// One extent of the box.
struct Extent {
    float vec3::*axis;
    float length;
    int segments;

    float at(int step) const {
        return length * static_cast<float>(step) * (1.0f / static_cast<float>(segments)) -
               length / 2.0f;
    }
};

/// A grid point of a cell, as steps from its own.
struct Corner {
    int column;
    int row;
};

/// The corners of a cell's two triangles. The first order is for sides whose rows, columns and
/// normal are right-handed in this order; the others, which differ in where they begin, are for the
/// rest.
constexpr Corner row_by_column[6] = {{0, 0}, {0, 1}, {1, 1}, {0, 0}, {1, 1}, {1, 0}};
constexpr Corner column_by_row[6] = {{1, 1}, {0, 1}, {0, 0}, {1, 1}, {0, 0}, {1, 0}};
constexpr Corner column_by_row_turned[6] = {{1, 1}, {0, 1}, {0, 0}, {1, 0}, {1, 1}, {0, 0}};

/// One side of the box: a grid of cells at a fixed place on one axis.
struct Side {
    float vec3::*fixed_axis;
    float fixed;
    float sign; ///< of the normal
    Extent columns;
    Extent rows;
    const Corner* corners; ///< six
    bool mirror_u;
    bool mirror_v;
};

float texture_coordinate(int step, int segments, bool mirrored) {
    const float coordinate = static_cast<float>(step) * (1.0f / static_cast<float>(segments));
    return mirrored ? 1.0f - coordinate : coordinate;
}

/// Writes a box side by side.
class BoxWriter {
public:
    explicit BoxWriter(MeshData& store)
        : store(store)
        , next(0) {}

    void add(const Side& side) {
        for (int row = 0; row < side.rows.segments; ++row)
            for (int column = 0; column < side.columns.segments; ++column)
                for (int i = 0; i < 6; ++i)
                    add(side, column + side.corners[i].column, row + side.corners[i].row);
    }

private:
    MeshData& store;
    unsigned long next;

    void add(const Side& side, int column, int row) {
        vec3 position;
        position.*side.fixed_axis = side.fixed;
        position.*side.columns.axis = side.columns.at(column);
        position.*side.rows.axis = side.rows.at(row);
        vec3 normal;
        normal.*side.fixed_axis = side.sign;
        store.set_position(next, position);
        store.set_normal(next, normal);
        store.set_uv0(
            next, texture_point(texture_coordinate(column, side.columns.segments, side.mirror_u),
                                texture_coordinate(row, side.rows.segments, side.mirror_v)));
        ++next;
    }
};

unsigned long num_box_faces(int wsegs, int hsegs, int dsegs) {
    const auto w = static_cast<unsigned long>(wsegs);
    const auto h = static_cast<unsigned long>(hsegs);
    const auto d = static_cast<unsigned long>(dsegs);
    return saturating_product(4, d * (w + h) + w * h);
}

} // namespace

bool MeshBox::_build_box() {
    free_mesh_data();
    wsegs = std::max(wsegs, 1);
    hsegs = std::max(hsegs, 1);
    dsegs = std::max(dsegs, 1);
    const unsigned long num_faces = num_box_faces(wsegs, hsegs, dsegs);
    if (!allocate(*this, saturating_product(3, num_faces), num_faces))
        return false;
    MeshData& store = *get_mesh_data();

    const Extent x{&vec3::x, width, wsegs};
    const Extent y{&vec3::y, height, hsegs};
    const Extent z{&vec3::z, depth, dsegs};
    const float w = width / 2.0f;
    const float h = height / 2.0f;
    const float d = depth / 2.0f;
    BoxWriter box(store);
    box.add({&vec3::x, w, 1.0f, y, z, column_by_row, false, true});
    box.add({&vec3::x, -w, -1.0f, y, z, row_by_column, false, false});
    box.add({&vec3::y, h, 1.0f, x, z, row_by_column, false, true});
    box.add({&vec3::y, -h, -1.0f, x, z, column_by_row_turned, false, false});
    box.add({&vec3::z, d, 1.0f, x, y, column_by_row_turned, false, false});
    box.add({&vec3::z, -d, -1.0f, x, y, row_by_column, true, false});

    FaceWriter faces(store);
    for (unsigned long i = 0; i < num_faces; ++i) {
        const auto first = static_cast<unsigned int>(3 * i);
        faces.add({first, first + 1, first + 2});
    }
    set_vertices_color(1.0f, 1.0f, 1.0f, 1.0f, nullptr);
    mesh_contents::mark_for_upload(store);
    return true;
}

} // namespace orvex
