#pragma once

/// @file
/// From rows of vertices and polygons to a draft.

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/polygon.h"
#include "orvex_formats/private/vertex_joiner.h"

namespace orvex::formats {

/// The numbers of a vertex, by their places in the list of them.
enum ShapeColumn { column_x, column_nx = 3, column_red = 6, column_alpha = 9, column_u, column_v };
inline constexpr std::size_t num_shape_columns = 12;
using ShapeValues = std::array<float, num_shape_columns>;

/// Full cover, in fractions and in bytes.
inline constexpr float full_alpha = std::numeric_limits<float>::infinity();

/// Of a vertex that a file says nothing of.
inline constexpr ShapeValues no_shape_values = {0, 0, 0, 0, 0, 0, 0, 0, 0, full_alpha, 0, 0};

/// What vertices have beside their places.
struct ShapeParts {
    bool has_normals = false;
    bool has_colors = false;
    bool has_uvs = false;
};

/// A polygon.
struct ShapeFace {
    std::vector<std::uint32_t> corners; ///< places in the list of vertices
    std::vector<float> coordinates;     ///< two a corner, or fewer, or none
    bool has_color = false;
    vec4 color;
    double picture = 0.0; ///< its place in the list of pictures
};

/// Gathers vertices and faces. Where faces have colours or coordinates of their own, a vertex
/// becomes as many as it has looks. Colours are fractions; where one is larger than 1 all are taken
/// for bytes.
class PolygonShape {
public:
    /// The room for so many was checked.
    void begin_vertices(const ShapeParts& parts, std::uint64_t count);
    void add_vertex(const ShapeValues& values) {
        positions.emplace_back(values[column_x], values[column_x + 1], values[column_x + 2]);
        if (has_more_than_places)
            add_more(values);
    }

    /// Makes room for so many triangles, which was checked.
    void begin_faces(std::uint64_t count);
    /// Its corners are known to be vertices, which may come later. @throw Refusal
    void add_face(const ShapeFace& face);
    /// The same for three corners. @throw Refusal
    void add_triangle(const Triangle& triangle);

    void add_note(const std::string& note);

    /// A surface with a material for each picture, or a cloud if there are no faces.
    /// @param textures  names of pictures
    Draft finish(const std::vector<std::string>& textures);

private:
    /// How a vertex looks at the corner of a face. Less than no alpha says that it has no colour.
    struct Corner {
        std::uint32_t vertex;
        float u, v;
        float red, green, blue, alpha;
    };

    void add_more(const ShapeValues& values);
    void take_notice_of(const ShapeFace& face);
    void begin_corners();
    bool has_corners() const { return has_face_colors || has_face_uvs; }
    void cut_polygon(const std::vector<std::uint32_t>& polygon);
    std::uint32_t joined(const ShapeFace& face, std::size_t corner);
    void add(const Triangle& triangle, std::uint32_t picture);

    Surface finish_surface(const std::vector<std::string>& textures);
    Cloud finish_cloud();
    void take_corners(Surface& surface) const;
    void take_face_colors(Surface& surface) const;
    void add_materials(const std::vector<std::string>& textures);

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
    ShapeParts parts;
    bool has_more_than_places = false;
    bool has_face_colors = false, has_face_uvs = false, has_pictures = false;
    bool has_fans = false;         ///< for polygons whose vertices weren't known yet
    bool has_turned_parts = false; ///< polygons couldn't be cut without
};

} // namespace orvex::formats
