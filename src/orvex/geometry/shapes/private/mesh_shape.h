#pragma once

/// @file
/// What the parametric shapes share: vertices in any format, faces in either width, and the grid
/// that most of them are made of.
///
/// A shape keeps its parameters as they were set and looks at their range only when it builds. Its
/// `build`, or `_build` where children are to be reached, goes through `build_if_asked`; one that
/// is a grid hands `build_grid` a `Grid`, how its vertices lie and how a cell falls into two faces,
/// and is done. The order of the operations on a coordinate decides its last bit and is never
/// changed.

#include <algorithm>
#include <vector>

#include "orvex/geometry/mesh/mesh.h"
#include "orvex/geometry/mesh/private/logging_failures.h"
#include "orvex/geometry/mesh/private/mesh_contents.h"
#include "orvex/renderer/records/mesh_data.h"

namespace orvex::mesh_shape {

inline constexpr vec4 white(1.0f, 1.0f, 1.0f, 1.0f);

/// What each shape does first in its build: makes the geometry if the build state asks for it, and
/// takes the state back. False, with a log line, without memory for what the making needs.
template<class Generator>
bool build_if_asked(Mesh& mesh, Generator generator) {
    if (!mesh.get_build_state())
        return true;
    mesh.update_build_state(false);
    return logging_failures(generator);
}

/// Room for a shape, vertices first: they decide the width of the faces.
inline bool allocate(Mesh& mesh, unsigned long num_vertices, unsigned long num_faces) {
    return mesh.alloc_vertex_data(num_vertices) && mesh.alloc_face_data(num_faces, false);
}

/// Room for the outline of every cell, a cell being two faces.
inline bool allocate_quad_edges(MeshData& store) {
    return store.alloc_quad_edge_data(store.num_faces / 2 * 8);
}

/// Sine and cosine of one angle.
struct SinCos {
    float sin;
    float cos;
};

/// Those of all grid points of a full turn in `slices` steps, the first and the last included.
std::vector<SinCos> full_turn(unsigned long slices);

/// step/count as the product that decides the last bit.
inline float share(unsigned long step, unsigned long count) {
    return static_cast<float>(step) * (1.0f / static_cast<float>(count));
}

inline vec4 texture_point(float u, float v) {
    return vec4(u, v, 0.0f, 1.0f);
}

inline void set_vertex(MeshData& store, unsigned long i, const vec3& position, const vec3& normal,
                       const vec4& uv0) {
    store.set_position(i, position);
    store.set_color(i, white);
    store.set_normal(i, normal);
    store.set_uv0(i, uv0);
}

/// Writes faces one after the other, in the width of the store. Expects room for them.
class FaceWriter {
public:
    explicit FaceWriter(MeshData& store)
        : narrow(store.faces_u16)
        , wide(store.faces_u32) {}

    void add(const FaceU32& face) {
        if (wide)
            *wide++ = face;
        else
            *narrow++ = {static_cast<unsigned short>(face.a), static_cast<unsigned short>(face.b),
                         static_cast<unsigned short>(face.c)};
    }

private:
    FaceU16* narrow;
    FaceU32* wide;
};

/// Writes outlines one after the other, four lines each. Expects room for them.
class OutlineWriter {
public:
    explicit OutlineWriter(MeshData& store)
        : next(store.quad_edges) {}

    void add(unsigned int a, unsigned int b, unsigned int c, unsigned int d) {
        for (const unsigned int index : {a, b, b, c, c, d, d, a})
            *next++ = index;
    }

private:
    unsigned int* next;
};

/// A cell of a grid: the index of its corner of lowest row and column, and of the corner one row
/// further. The other two corners are the next indices.
struct Cell {
    unsigned int a;
    unsigned int b;
};

/// The two faces of a cell.
struct CellFaces {
    FaceU32 first;
    FaceU32 second;
};

/// Rows and columns of cells; vertices lie at their corners, row after row.
///
///     a     a + 1
///     b     b + 1
struct Grid {
    unsigned long rows;
    unsigned long columns;

    /// A grid of counts that hosts set, each raised to the least that its shape can be made of.
    static Grid at_least(int least_rows, int rows, int least_columns, int columns) {
        return {static_cast<unsigned long>(std::max(rows, least_rows)),
                static_cast<unsigned long>(std::max(columns, least_columns))};
    }

    unsigned long num_vertices() const { return (rows + 1) * (columns + 1); }
    unsigned long num_faces() const { return 2 * rows * columns; }

    /// Calls action(index, row, column) for each vertex in order.
    template<class Action>
    void for_each_vertex(Action action) const {
        unsigned long i = 0;
        for (unsigned long row = 0; row <= rows; ++row)
            for (unsigned long column = 0; column <= columns; ++column)
                action(i++, row, column);
    }

    /// Calls action(cell) for each cell in order.
    template<class Action>
    void for_each_cell(Action action) const {
        const auto stride = static_cast<unsigned int>(columns + 1);
        for (unsigned long row = 0; row < rows; ++row) {
            const unsigned int first = static_cast<unsigned int>(row) * stride;
            for (unsigned int a = first; a < first + static_cast<unsigned int>(columns); ++a)
                action(Cell{a, a + stride});
        }
    }
};

/// Writes the outline of a cell, to the next row first: what most grids have.
inline constexpr auto outline_down_first = [](OutlineWriter& outlines, const Cell& cell) {
    outlines.add(cell.a, cell.b, cell.b + 1, cell.a + 1);
};

/// Writes the outline of a cell, along the row first.
inline constexpr auto outline_along_first = [](OutlineWriter& outlines, const Cell& cell) {
    outlines.add(cell.a, cell.a + 1, cell.b + 1, cell.b);
};

/// Makes a shape that is a grid: room in the store, then its vertices, faces and outlines, and
/// marks them for upload.
/// @param write_vertices  called with the store: writes all vertices of the grid, row after row
/// @param split           called with each cell: its two faces
/// @param outline         called with the writer and each cell: one of the two above
/// @return false, with a log line, if memory runs out
template<class WriteVertices, class Split, class Outline = decltype(outline_down_first)>
bool build_grid(Mesh& mesh, const Grid& grid, WriteVertices write_vertices, Split split,
                Outline outline = outline_down_first) {
    // Vertices first: they decide the width of the faces.
    if (!allocate(mesh, grid.num_vertices(), grid.num_faces()))
        return false;
    MeshData& store = *mesh.get_mesh_data();
    if (!allocate_quad_edges(store))
        return false;
    store.prepare_to_fill(store.color);
    store.prepare_to_fill(store.uv0);
    write_vertices(store);

    FaceWriter faces(store);
    grid.for_each_cell([&](const Cell& cell) {
        const CellFaces both = split(cell);
        faces.add(both.first);
        faces.add(both.second);
    });
    OutlineWriter outlines(store);
    grid.for_each_cell([&](const Cell& cell) { outline(outlines, cell); });
    mesh_contents::mark_for_upload(store);
    return true;
}

} // namespace orvex::mesh_shape
