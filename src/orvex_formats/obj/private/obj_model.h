#pragma once

/// @file
/// What an OBJ file holds, put together from its pieces.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "orvex_formats/obj/private/mtl_reader.h"
#include "orvex_formats/obj/private/obj_block.h"
#include "orvex_formats/private/draft.h"
#include "orvex_formats/private/polygon.h"
#include "orvex_formats/private/vertex_joiner.h"

namespace orvex::formats {

/// The entries that faces name.
struct ObjLists {
    std::vector<vec3> positions;
    std::vector<vec3> colors; ///< one a position, or none
    float color_scale = 1.0f; ///< what brings colours to 0 to 1: some files have them up to 255
    std::vector<vec2> texcoords;
    std::vector<vec3> normals;
};

/// The colour of a position, with alpha.
vec4 color_at(const ObjLists& lists, std::uint32_t place);

/// How many entries, and lines, a piece has before it.
struct ObjBase {
    std::size_t positions = 0, texcoords = 0, normals = 0, lines = 0;
};

/// How normals are smoothed where a file has none.
using Smoothing = std::uint32_t;
inline constexpr Smoothing by_angle = 0;      ///< nothing is said
inline constexpr Smoothing flat = UINT32_MAX; ///< "s off"; else the number of a group

/// Faces that stand one behind the other, with nothing between.
struct ObjRun {
    const ObjBlock* block = nullptr;
    const ObjBase* base = nullptr;
    std::uint32_t first_face = 0, end_face = 0;
    std::uint32_t material = no_material;
    Smoothing smoothing = by_angle;
};

/// A group: what becomes a surface.
struct ObjGroup {
    std::string name;
    std::vector<ObjRun> runs;
};

/// Makes surfaces of groups. One object serves all groups of a file.
class SurfaceMaker {
public:
    SurfaceMaker(const ObjLists& lists, Notes& notes);

    /// @throw Refusal  where a group has more triangles than any that are read
    Surface make(const ObjGroup& group);

private:
    /// A corner with its places in the lists.
    struct Vertex {
        std::uint32_t position, texcoord, normal;
        std::uint32_t next; ///< another vertex at the same position
    };
    struct Key {
        std::uint32_t position, texcoord, normal;
    };
    /// The vertices of positions that have a lot of them.
    struct Many {
        VertexJoiner<Key> keys;
        std::vector<std::uint32_t> vertices; ///< by the keys' numbers
    };

    /// Takes the places of a face's corners. @return false for one that is left out
    bool take_corners(const ObjRun& run, std::uint32_t face);
    bool take_corner(const ObjRun& run, std::uint32_t face, const ObjCorner& corner, Key& key);
    void note_wrong(const ObjRun& run, std::uint32_t face, const char* what,
                    std::size_t num_entries);
    void reserve(const ObjGroup& group);
    void add_run(const ObjRun& run);
    void add_polygon(const ObjRun& run, std::uint32_t face);
    void add_triangle(const ObjRun& run, const Key& a, const Key& b, const Key& c);
    std::uint32_t vertex_of(const Key& key);
    std::uint32_t vertex_of_many(const Key& key);
    void add_vertex(const Key& key);
    void fill_surface();
    bool has_normals() const;
    void fill_missing_normals();
    void forget_vertices();

    const ObjLists& lists;
    Notes& notes;
    std::vector<std::uint32_t> first_vertex; ///< by position
    std::vector<Vertex> vertices;
    std::optional<Many> many;
    PolygonCutter cutter;
    std::vector<Key> corners;        ///< of the polygon at hand
    std::vector<vec3> places;        ///< likewise
    std::vector<Triangle> triangles; ///< likewise
    Surface surface;
    std::vector<Smoothing> smoothings; ///< one a triangle
    bool is_any_told = false, is_any_untold = false;
};

/// Where the vertices of a surface come from.
struct SurfaceSource {
    std::vector<std::uint32_t> positions; ///< of each vertex its place in the file's list
    std::vector<bool> has_normal;         ///< of each vertex
    std::vector<Smoothing> smoothings;    ///< of each triangle; may be empty: `by_angle`
};

/// Gives normals to the vertices of a surface that have none while others do, or whose smoothing is
/// told. Vertices part where their triangles' normals do.
void add_missing_normals(Surface& surface, const SurfaceSource& source);

} // namespace orvex::formats
