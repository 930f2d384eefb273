// The corners that name the same three entries are one vertex. Few vertices share a position: they
// are a chain that begins there, and need no table. Only where a file has a lot of vertices at one
// position a table finds them.

#include <algorithm>
#include <cmath>
#include <utility>

#include "orvex_formats/obj/private/obj_model.h"
#include "orvex_formats/private/large_lists.h"
#include "orvex_formats/private/refusal.h"
#include "orvex_formats/private/workers.h"

namespace orvex::formats {

namespace {

constexpr std::uint32_t none = UINT32_MAX;
constexpr int longest_chain = 8;
constexpr std::size_t most_triangles = UINT32_MAX / 3;

float share(float value) {
    return value > 0.0f ? std::min(value, 1.0f) : 0.0f;
}

/// A unit vector. One that is as long as its few digits allow stays as it is.
vec3 unit_normal(const vec3& normal) {
    const double x = double(normal.x), y = double(normal.y), z = double(normal.z);
    const double length = std::sqrt(x * x + y * y + z * z);
    if (std::abs(length - 1.0) < 0.01)
        return normal;
    if (!(length > 0.0) || !std::isfinite(length))
        return {0.0f, 0.0f, 1.0f};
    return {static_cast<float>(x / length), static_cast<float>(y / length),
            static_cast<float>(z / length)};
}

std::uint32_t begin_of(const ObjRun& run, std::uint32_t face) {
    return face == 0 ? 0 : run.block->faces[face - 1].end;
}

} // namespace

vec4 color_at(const ObjLists& lists, std::uint32_t place) {
    const vec3& color = lists.colors[place];
    const float scale = lists.color_scale;
    return {share(color.x * scale), share(color.y * scale), share(color.z * scale), 1.0f};
}

SurfaceMaker::SurfaceMaker(const ObjLists& lists, Notes& notes)
    : lists(lists)
    , notes(notes)
    , first_vertex(lists.positions.size(), none) {}

Surface SurfaceMaker::make(const ObjGroup& group) {
    surface = {};
    surface.name = group.name;
    vertices.clear();
    many.reset();
    smoothings.clear();
    is_any_told = is_any_untold = false;
    reserve(group);
    for (const ObjRun& run : group.runs)
        add_run(run);
    forget_vertices();
    fill_surface();
    fill_missing_normals();
    return std::move(surface);
}

/// Makes room for all triangles.
void SurfaceMaker::reserve(const ObjGroup& group) {
    std::size_t count = 0;
    bool has_material = false, has_smoothing = false;
    for (const ObjRun& run : group.runs) {
        const std::size_t num_corners =
            run.block->faces[run.end_face - 1].end - begin_of(run, run.first_face);
        count += num_corners - 2 * (run.end_face - run.first_face);
        has_material = has_material || run.material != no_material;
        has_smoothing = has_smoothing || run.smoothing != by_angle;
    }
    if (count > most_triangles)
        refuse("line %zu: more triangles than any that are read",
               group.runs.back().base->lines + 1);
    reserve_largely(surface.triangles, count);
    if (has_material)
        reserve_largely(surface.triangle_materials, count);
    if (has_smoothing)
        reserve_largely(smoothings, count);
}

// --- Faces

void SurfaceMaker::note_wrong(const ObjRun& run, std::uint32_t face, const char* what,
                              std::size_t num_entries) {
    notes.add(what,
              "line " + std::to_string(run.base->lines + run.block->faces[face].line) +
                  ": a face that names " + what + " beyond the " + std::to_string(num_entries) +
                  " that there are was left out",
              ", and so were others");
}

bool SurfaceMaker::take_corner(const ObjRun& run, std::uint32_t face, const ObjCorner& corner,
                               Key& key) {
    const ObjBase& base = *run.base;
    key.position = corner.position.place(base.positions, lists.positions.size());
    if (key.position == none) {
        note_wrong(run, face, "a vertex", lists.positions.size());
        return false;
    }
    // Some programs name texture coordinates and normals that they don't write.
    key.texcoord = none;
    if (corner.texcoord.is_given() && !lists.texcoords.empty()) {
        key.texcoord = corner.texcoord.place(base.texcoords, lists.texcoords.size());
        if (key.texcoord == none) {
            note_wrong(run, face, "a texture coordinate", lists.texcoords.size());
            return false;
        }
    }
    key.normal = none;
    if (corner.normal.is_given() && !lists.normals.empty()) {
        key.normal = corner.normal.place(base.normals, lists.normals.size());
        if (key.normal == none) {
            note_wrong(run, face, "a normal", lists.normals.size());
            return false;
        }
    }
    return true;
}

bool SurfaceMaker::take_corners(const ObjRun& run, std::uint32_t face) {
    const std::uint32_t begin = begin_of(run, face);
    const std::uint32_t end = run.block->faces[face].end;
    corners.resize(end - begin);
    for (std::uint32_t i = begin; i < end; ++i)
        if (!take_corner(run, face, run.block->corners[i], corners[i - begin]))
            return false;
    return true;
}

void SurfaceMaker::add_run(const ObjRun& run) {
    for (std::uint32_t face = run.first_face; face < run.end_face; ++face) {
        if (!take_corners(run, face))
            continue;
        if (corners.size() == 3)
            add_triangle(run, corners[0], corners[1], corners[2]);
        else
            add_polygon(run, face);
    }
}

void SurfaceMaker::add_polygon(const ObjRun& run, std::uint32_t face) {
    places.clear();
    for (const Key& corner : corners)
        places.push_back(lists.positions[corner.position]);
    triangles.clear();
    if (!cutter.cut(places, triangles))
        notes.add("polygon", "line " +
                                 std::to_string(run.base->lines + run.block->faces[face].line) +
                                 ": a polygon crosses itself, or winds too much, and may have been "
                                 "cut wrongly");
    for (const Triangle& triangle : triangles)
        add_triangle(run, corners[triangle[0]], corners[triangle[1]], corners[triangle[2]]);
}

void SurfaceMaker::add_triangle(const ObjRun& run, const Key& a, const Key& b, const Key& c) {
    surface.triangles.push_back({vertex_of(a), vertex_of(b), vertex_of(c)});
    if (surface.triangle_materials.capacity() > 0)
        surface.triangle_materials.push_back(run.material);
    if (smoothings.capacity() > 0)
        smoothings.push_back(run.smoothing);
}

// --- Vertices

void SurfaceMaker::add_vertex(const Key& key) {
    vertices.push_back({key.position, key.texcoord, key.normal, none});
    (key.normal == none ? is_any_untold : is_any_told) = true;
}

std::uint32_t SurfaceMaker::vertex_of(const Key& key) {
    std::uint32_t* link = &first_vertex[key.position];
    for (int length = 0; *link != none; ++length) {
        Vertex& known = vertices[*link];
        if (known.texcoord == key.texcoord && known.normal == key.normal)
            return *link;
        if (length == longest_chain)
            return vertex_of_many(key);
        link = &known.next;
    }
    // Adding one may move them all, and the link with them.
    const auto added = static_cast<std::uint32_t>(vertices.size());
    *link = added;
    add_vertex(key);
    return added;
}

std::uint32_t SurfaceMaker::vertex_of_many(const Key& key) {
    if (!many)
        many.emplace();
    bool is_new = false;
    const std::uint32_t number = many->keys.add(key, is_new);
    if (is_new) {
        many->vertices.push_back(static_cast<std::uint32_t>(vertices.size()));
        add_vertex(key);
    }
    return many->vertices[number];
}

/// Leaves no vertex at any position, as the next group begins with none.
void SurfaceMaker::forget_vertices() {
    for (const Vertex& vertex : vertices)
        first_vertex[vertex.position] = none;
}

void SurfaceMaker::fill_surface() {
    const bool has_uvs = std::any_of(vertices.begin(), vertices.end(),
                                     [](const Vertex& vertex) { return vertex.texcoord != none; });
    const auto fill_list = [this](bool is_there, auto& list, auto value_of) {
        reserve_largely(list, is_there ? vertices.size() : 0);
        for (std::size_t i = 0; is_there && i < vertices.size(); ++i)
            list.push_back(value_of(vertices[i]));
    };
    const auto fill = [&](std::size_t list) {
        if (list == 0)
            fill_list(true, surface.positions,
                      [&](const Vertex& vertex) { return lists.positions[vertex.position]; });
        else if (list == 1)
            fill_list(!lists.colors.empty(), surface.colors,
                      [&](const Vertex& vertex) { return color_at(lists, vertex.position); });
        else if (list == 2)
            fill_list(has_uvs, surface.uvs[0], [&](const Vertex& vertex) {
                return vertex.texcoord == none ? vec2() : lists.texcoords[vertex.texcoord];
            });
        else
            fill_list(has_normals(), surface.normals, [&](const Vertex& vertex) {
                return vertex.normal == none ? vec3(0.0f, 0.0f, 1.0f)
                                             : unit_normal(lists.normals[vertex.normal]);
            });
    };
    constexpr std::size_t num_lists = 4, few = 50'000;
    if (vertices.size() >= few)
        return share_out(num_lists, fill);
    for (std::size_t list = 0; list < num_lists; ++list)
        fill(list);
}

/// Whether any is there or is told how to be made; else whoever builds the model adds them.
bool SurfaceMaker::has_normals() const {
    return is_any_told || std::any_of(smoothings.begin(), smoothings.end(),
                                      [](Smoothing smoothing) { return smoothing != by_angle; });
}

void SurfaceMaker::fill_missing_normals() {
    if (!has_normals() || !is_any_untold)
        return;
    SurfaceSource source;
    source.smoothings = std::move(smoothings);
    smoothings.clear();
    for (const Vertex& vertex : vertices) {
        source.positions.push_back(vertex.position);
        source.has_normal.push_back(vertex.normal != none);
    }
    add_missing_normals(surface, source);
}

} // namespace orvex::formats
