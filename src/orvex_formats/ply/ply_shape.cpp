#include "orvex_formats/ply/private/ply_shape.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "orvex_formats/private/refusal.h"

namespace orvex::formats {

namespace {

constexpr std::size_t most_triangles = UINT32_MAX / 3;
constexpr std::size_t most_names = 8; ///< in a note

void add_name(std::vector<std::string>& names, const std::string& name) {
    if (names.size() <= most_names && std::find(names.begin(), names.end(), name) == names.end())
        names.push_back(name);
}

std::string list_of(const std::vector<std::string>& names) {
    std::string list;
    for (std::size_t i = 0; i < names.size() && i < most_names; ++i)
        list += (i == 0 ? "" : ", ") + in_words(names[i]);
    return names.size() > most_names ? list + " and others" : list;
}

/// A unit vector; what has no direction looks along z.
vec3 direction_of(double x, double y, double z) {
    const double length = std::hypot(x, y, z);
    if (!(length > 0.0) || !std::isfinite(length))
        return vec3(0.0f, 0.0f, 1.0f);
    return {static_cast<float>(x / length), static_cast<float>(y / length),
            static_cast<float>(z / length)};
}

vec4 color_of(const PlyValues& values) {
    return vec4(values[column_red], values[column_red + 1], values[column_red + 2],
                values[column_alpha]);
}

/// Brings what goes beyond 1 back, as far as it is a byte.
void settle_part(std::vector<vec4>& colors, float vec4::*part, float largest) {
    const float scale = largest > 1.0f ? 1.0f / 255.0f : 1.0f;
    for (vec4& color : colors) {
        const float value = color.*part * scale;
        color.*part = value > 0.0f ? std::min(value, 1.0f) : 0.0f;
    }
}

/// The largest of a part; what is no number is no part.
float largest_of(const std::vector<vec4>& colors, float vec4::*part) {
    float largest = 0.0f;
    for (const vec4& color : colors)
        largest = color.*part > largest ? color.*part : largest;
    return largest;
}

} // namespace

PlyShape::PlyShape(const PlyHeader& header)
    : header(header) {}

void PlyShape::add_note(const std::string& note) {
    draft.notes.push_back(note);
}

void PlyShape::leave_out_element(const std::string& name) {
    add_name(unknown_elements, name);
}

void PlyShape::leave_out_properties(const PlyColumns& columns) {
    for (const std::string& name : columns.unknown())
        add_name(unknown_properties, name);
}

// ------------------------------------------------------------------------------- vertices

void PlyShape::begin_vertices(const PlyColumns& columns, std::uint64_t count) {
    if (!columns.has_positions())
        refuse("the vertices have no x, y and z");
    leave_out_properties(columns);
    has_normals = columns.has_normals();
    has_colors = columns.has_colors();
    has_uvs = columns.has_uvs();
    has_float_colors = has_float_colors || columns.has_float_colors();
    has_more_than_places = has_normals || has_colors || has_uvs;
    const auto size = static_cast<std::size_t>(count);
    positions.reserve(size);
    normals.reserve(has_normals ? size : 0);
    colors.reserve(has_colors ? size : 0);
    uvs.reserve(has_uvs ? size : 0);
}

void PlyShape::add_more(const PlyValues& values) {
    if (has_normals)
        normals.push_back(direction_of(static_cast<double>(values[column_nx]),
                                       static_cast<double>(values[column_nx + 1]),
                                       static_cast<double>(values[column_nx + 2])));
    if (has_colors)
        colors.push_back(color_of(values));
    if (has_uvs)
        uvs.emplace_back().set(values[column_u], values[column_v]);
}

void PlyShape::end_vertices() {
    settle(colors);
}

// ------------------------------------------------------------------------------- faces

void PlyShape::begin_faces(const PlyColumns& columns, bool has_coordinates, bool has_picture) {
    for (const std::string& name : columns.unknown())
        if (name != "vertex_indices" && name != "vertex_index" && name != "texcoord" &&
            name != "texnumber")
            add_name(unknown_properties, name);
    const bool had_corners = has_corners();
    has_face_colors = has_face_colors || columns.has_colors();
    has_face_uvs = has_face_uvs || has_coordinates;
    has_float_colors = has_float_colors || columns.has_float_colors();
    if (has_corners() && !had_corners)
        begin_corners();
    if (has_picture)
        triangle_materials.resize(triangles.size());
    has_pictures = has_pictures || has_picture;
}

/// What was made of vertices until now is made of corners from now on.
void PlyShape::begin_corners() {
    PlyFace face;
    for (Triangle& triangle : triangles) {
        face.corners.assign(triangle.begin(), triangle.end());
        for (std::size_t i = 0; i < 3; ++i)
            triangle[i] = joined(face, i);
    }
}

void PlyShape::add_face(const PlyFace& face) {
    const bool is_picture = face.picture >= 0.0 && face.picture < 65536.0;
    const std::uint32_t picture =
        is_picture ? static_cast<std::uint32_t>(face.picture) : no_material;
    cut_polygon(face.corners);
    for (const Triangle& places : cut)
        if (has_corners())
            add({joined(face, places[0]), joined(face, places[1]), joined(face, places[2])},
                picture);
        else
            add({face.corners[places[0]], face.corners[places[1]], face.corners[places[2]]},
                picture);
}

void PlyShape::cut_polygon(const std::vector<std::uint32_t>& polygon) {
    cut.clear();
    if (polygon.size() > 3 && !positions.empty()) {
        polygon_places.clear();
        for (const std::uint32_t corner : polygon)
            polygon_places.push_back(positions[corner]);
        has_turned_parts = !cutter.cut(polygon_places, cut) || has_turned_parts;
        return;
    }
    for (std::uint32_t i = 2; i < polygon.size(); ++i)
        cut.push_back({0, i - 1, i});
    has_fans = has_fans || polygon.size() > 3;
}

std::uint32_t PlyShape::joined(const PlyFace& face, std::size_t corner) {
    Corner key{face.corners[corner], 0, 0, 0, 0, 0, 0};
    if (has_face_uvs && 2 * corner + 1 < face.coordinates.size()) {
        key.u = face.coordinates[2 * corner];
        key.v = face.coordinates[2 * corner + 1];
    }
    if (has_face_colors) {
        key.red = face.values[column_red];
        key.green = face.values[column_red + 1];
        key.blue = face.values[column_red + 2];
        key.alpha = face.values[column_alpha];
    }
    bool is_new = false;
    return corners.add(key, is_new);
}

void PlyShape::add_triangle(const Triangle& triangle) {
    PlyFace face;
    if (!has_corners()) {
        add(triangle, 0);
        return;
    }
    face.corners.assign(triangle.begin(), triangle.end());
    add({joined(face, 0), joined(face, 1), joined(face, 2)}, 0);
}

void PlyShape::add(const Triangle& triangle, std::uint32_t picture) {
    if (triangles.size() >= most_triangles)
        refuse("more triangles than any that are read");
    triangles.push_back(triangle);
    if (has_pictures)
        triangle_materials.push_back(picture);
}

// ------------------------------------------------------------------------------- end

/// Some programs write bytes as floats.
void PlyShape::settle(std::vector<vec4>& values) {
    if (!has_float_colors || values.empty())
        return;
    const float largest = std::max(
        {largest_of(values, &vec4::x), largest_of(values, &vec4::y), largest_of(values, &vec4::z)});
    settle_part(values, &vec4::x, largest);
    settle_part(values, &vec4::y, largest);
    settle_part(values, &vec4::z, largest);
    settle_part(values, &vec4::w, largest_of(values, &vec4::w));
}

void PlyShape::add_materials() {
    for (const std::string& texture : header.textures) {
        SurfaceMaterial material;
        material.name = texture;
        material.diffuse = vec4(1.0f, 1.0f, 1.0f, 1.0f);
        material.textures.push_back(texture);
        draft.materials.push_back(material);
    }
}

void PlyShape::take_corners(Surface& surface) const {
    for (const Corner& corner : corners.all()) {
        surface.positions.push_back(positions[corner.vertex]);
        if (has_normals)
            surface.normals.push_back(normals[corner.vertex]);
        if (has_face_colors)
            surface.colors.emplace_back(corner.red, corner.green, corner.blue, corner.alpha);
        else if (has_colors)
            surface.colors.push_back(colors[corner.vertex]);
        if (has_face_uvs)
            surface.uvs[0].emplace_back().set(corner.u, corner.v);
        else if (has_uvs)
            surface.uvs[0].push_back(uvs[corner.vertex]);
    }
}

Surface PlyShape::finish_surface() {
    Surface surface;
    if (has_corners()) {
        take_corners(surface);
        if (has_face_colors)
            settle(surface.colors);
    } else {
        surface.positions = std::move(positions);
        surface.normals = std::move(normals);
        surface.colors = std::move(colors);
        surface.uvs[0] = std::move(uvs);
    }
    surface.triangles = std::move(triangles);
    add_materials();
    if (draft.materials.empty())
        return surface;
    surface.triangle_materials = std::move(triangle_materials);
    surface.triangle_materials.resize(surface.triangles.size());
    for (std::uint32_t& material : surface.triangle_materials)
        if (material >= draft.materials.size())
            material = no_material;
    return surface;
}

Cloud PlyShape::finish_cloud() {
    if (has_normals)
        draft.notes.emplace_back("the normals of the points were left out");
    Cloud cloud;
    cloud.positions = std::move(positions);
    cloud.colors = std::move(colors);
    return cloud;
}

Draft PlyShape::finish() {
    if (!unknown_elements.empty())
        draft.notes.push_back("elements that aren't known were left out: " +
                              list_of(unknown_elements));
    if (!unknown_properties.empty())
        draft.notes.push_back("properties that aren't known were left out: " +
                              list_of(unknown_properties));
    if (has_fans)
        draft.notes.emplace_back("polygons that stand before their vertices were cut as if convex");
    if (has_turned_parts)
        draft.notes.emplace_back(
            "polygons that cross themselves were cut as well as they could be");
    if (triangles.empty())
        draft.clouds.push_back(finish_cloud());
    else
        draft.surfaces.push_back(finish_surface());
    return std::move(draft);
}

} // namespace orvex::formats
