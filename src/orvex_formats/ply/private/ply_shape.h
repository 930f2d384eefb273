#pragma once

/// @file
/// From the rows of a PLY file to a draft.

#include <cstdint>
#include <string>
#include <vector>

#include "orvex_formats/ply/private/ply_columns.h"
#include "orvex_formats/ply/private/ply_header.h"
#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/polygon.h"
#include "orvex_formats/private/vertex_joiner.h"

namespace orvex::formats {

/// One row of the element "face".
struct PlyFace {
    std::vector<std::uint32_t> corners;
    std::vector<float> coordinates; ///< two a corner, or not
    PlyValues values = no_ply_values;
    double picture = 0.0;
};

/// Gathers vertices and faces. Where faces have colours or coordinates of their own, a vertex
/// becomes as many as it has looks.
class PlyShape {
public:
    explicit PlyShape(const PlyHeader& header);

    /// The room for so many was checked. @throw Refusal  where they have no places
    void begin_vertices(const PlyColumns& columns, std::uint64_t count);
    void add_vertex(const PlyValues& values) {
        positions.emplace_back(values[column_x], values[column_x + 1], values[column_x + 2]);
        if (has_more_than_places)
            add_more(values);
    }
    void end_vertices();

    void begin_faces(const PlyColumns& columns, bool has_coordinates, bool has_pictures);
    /// Of places in the list of vertices; the list itself may come later.
    void add_face(const PlyFace& face);
    void add_triangle(const Triangle& triangle);

    void leave_out_element(const std::string& name);
    void add_note(const std::string& note);

    Draft finish();

private:
    /// How a vertex looks at the corner of a face.
    struct Corner {
        std::uint32_t vertex;
        float u, v;
        float red, green, blue, alpha;
    };

    void add_more(const PlyValues& values);
    void leave_out_properties(const PlyColumns& columns);
    void begin_corners();
    bool has_corners() const { return has_face_colors || has_face_uvs; }
    void cut_polygon(const std::vector<std::uint32_t>& polygon);
    std::uint32_t joined(const PlyFace& face, std::size_t corner);
    void add(const Triangle& triangle, std::uint32_t picture);
    void take_corners(Surface& surface) const;
    Surface finish_surface();
    Cloud finish_cloud();
    void settle(std::vector<vec4>& values);
    void add_materials();

    const PlyHeader& header;
    Draft draft;
    std::vector<vec3> positions, normals;
    std::vector<vec4> colors;
    std::vector<vec2> uvs;
    std::vector<Triangle> triangles;
    PolygonCutter cutter;
    std::vector<vec3> polygon_places; ///< of the corners of one
    std::vector<Triangle> cut;        ///< places in the list of a polygon's corners
    std::vector<std::uint32_t> triangle_materials;
    VertexJoiner<Corner> corners; ///< empty where faces have nothing of their own
    std::vector<std::string> unknown_elements, unknown_properties; ///< a few of each
    bool has_more_than_places = false;
    bool has_normals = false, has_colors = false, has_uvs = false;
    bool has_face_colors = false, has_face_uvs = false, has_pictures = false;
    bool has_float_colors = false;
    bool has_fans = false;         ///< for polygons whose vertices weren't known yet
    bool has_turned_parts = false; ///< polygons couldn't be cut without
};

} // namespace orvex::formats
